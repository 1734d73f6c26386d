#include "reports/recover/Recovery.h"

#include <fstream>
#include <memory>
#include <stdexcept>
#include <system_error>

#include "reports/common/Excerpt.h"
#include "reports/common/LineReader.h"
#include "reports/common/LineWriter.h"
#include "reports/ocp/OcpReader.h"
#include "reports/recover/StreamEnd.h"

namespace reports {
namespace {

[[noreturn]] void fail(const std::string& where, const std::string& what) {
  throw std::runtime_error(where + ": " + what);
}

/// By the first line, which must be one.
std::unique_ptr<StreamEnd> endFor(const std::string& line, const std::string& where) {
  nlohmann::json first;
  try {
    first = readOcpLine(line).value;
  } catch (const NoJson& fault) {
    fail(where, fault.what());
  }
  if (first.is_object() && first.contains("schemaVersion")) return makeOcpEnd();
  if (first.is_object() && first.contains("sequence")) return makeEventsEnd();
  fail(where, "the file is neither a stream of events nor an OCP stream");
}

/// Goes through the lines; one that makes no sense is an error only if others follow.
class Walk {
 public:
  Walk(std::istream& in, const std::string& file) : m_lines(in, file) {}

  std::unique_ptr<StreamEnd> toTheEnd() {
    while (m_lines.next() && m_lines.isWhole()) {
      if (!m_fault.empty()) throw std::runtime_error(m_fault);
      take();
    }
    return std::move(m_end);
  }

  std::uint64_t kept() const { return m_kept; }
  std::uint64_t size() const { return m_lines.end(); }

 private:
  void take() {
    if (m_lines.isTooLong()) fail(m_lines.where(), "the line is too long");
    if (!m_end) m_end = endFor(m_lines.line(), m_lines.where());
    try {
      m_end->take(m_lines.line());
      m_kept = m_lines.end();
    } catch (const std::runtime_error& fault) {
      m_fault = m_lines.where() + ": " + excerpt(fault.what());
    }
  }

  LineReader m_lines;
  std::unique_ptr<StreamEnd> m_end;
  std::uint64_t m_kept = 0;
  std::string m_fault;
};

}  // namespace

Recovery recoveryOf(std::istream& in, const std::string& file) {
  Walk walk(in, file);
  const std::unique_ptr<StreamEnd> end = walk.toTheEnd();
  if (!end || walk.kept() == 0) fail(excerpt(file), "there is no whole line to go on from");
  Recovery recovery;
  recovery.kept = walk.kept();
  recovery.dropped = walk.size() - walk.kept();
  end->close(recovery);
  return recovery;
}

Recovery recoverFile(const std::filesystem::path& path) {
  const std::string name = path.u8string();
  std::ifstream in(path, std::ios::binary);
  if (!in) fail(excerpt(name), "cannot be opened");
  Recovery recovery = recoveryOf(in, name);
  in.close();
  if (recovery.dropped == 0 && recovery.closing.empty()) return recovery;
  std::error_code fault;
  std::filesystem::resize_file(path, recovery.kept, fault);
  if (fault) fail(excerpt(name), "cannot be shortened: " + fault.message());
  std::ofstream out(path, std::ios::binary | std::ios::app);
  if (!out) fail(excerpt(name), "cannot be written");
  LineWriter lines(out, name);
  for (const std::string& line : recovery.closing) lines.write(line);
  return recovery;
}

}  // namespace reports
