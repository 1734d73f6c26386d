#include "reports/common/LineWriter.h"

#include <cerrno>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "text/SafeText.h"

namespace reports {

LineWriter::LineWriter(std::ostream& out, std::string file) : m_out(out), m_file(std::move(file)) {}

void LineWriter::write(std::string line) {
  line += '\n';
  writeAll(line);
}

void LineWriter::writeAll(std::string_view lines) {
  errno = 0;
  m_out.write(lines.data(), static_cast<std::streamsize>(lines.size()));
  m_out.flush();
  if (m_out) return;
  const std::string reason = errno == 0 ? "" : ": " + std::generic_category().message(errno);
  throw std::runtime_error(text::visible(m_file) + " cannot be written" + reason);
}

}  // namespace reports
