#include "reports/common/LineReader.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "reports/common/Excerpt.h"

namespace reports {
namespace {

constexpr std::size_t kPiece = 64 * 1024;

}  // namespace

LineReader::LineReader(std::istream& in, std::string file, std::size_t longest)
    : m_in(in), m_file(std::move(file)), m_longest(longest) {}

std::string LineReader::where() const {
  return excerpt(m_file) + ", line " + std::to_string(m_number);
}

bool LineReader::fill() {
  m_position = 0;
  m_buffer.resize(kPiece);
  m_in.read(m_buffer.data(), static_cast<std::streamsize>(kPiece));
  if (m_in.bad()) throw std::runtime_error(excerpt(m_file) + " cannot be read");
  m_buffer.resize(static_cast<std::size_t>(m_in.gcount()));
  return !m_buffer.empty();
}

void LineReader::append(std::size_t count) {
  const std::size_t room = m_longest - m_line.size();
  m_isTooLong = m_isTooLong || count > room;
  m_line.append(m_buffer, m_position, std::min(count, room));
}

bool LineReader::next() {
  m_line.clear();
  m_isWhole = false;
  m_isTooLong = false;
  bool any = false;
  const auto isEnough = [this] { return m_isWhole || (m_stopsAtTooLong && m_isTooLong); };
  while (!isEnough() && (m_position < m_buffer.size() || fill())) {
    any = true;
    const std::size_t found = m_buffer.find('\n', m_position);
    m_isWhole = found != std::string::npos;
    const std::size_t stop = m_isWhole ? found : m_buffer.size();
    append(stop - m_position);
    const std::size_t next = m_isWhole ? stop + 1 : stop;
    m_end += next - m_position;
    m_position = next;
  }
  if (any) ++m_number;
  return any;
}

}  // namespace reports
