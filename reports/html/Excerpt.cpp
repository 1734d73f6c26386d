#include "reports/html/Excerpt.h"

#include <utility>

namespace reports::html {
namespace {

std::size_t memoryOf(const Line& line) { return sizeof line + line.text.size(); }

}  // namespace

void Excerpt::add(Line line) {
  m_bytes += memoryOf(line);
  if (m_first.size() < m_lines) {
    m_first.push_back(std::move(line));
    return;
  }
  m_last.push_back(std::move(line));
  if (m_last.size() <= m_lines) return;
  m_bytes -= memoryOf(m_last.front());
  m_last.pop_front();
  ++m_leftOut;
}

}  // namespace reports::html
