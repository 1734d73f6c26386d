#include "engine/process/LineSplitter.h"

#include <utility>

namespace engine {
namespace {

bool continuesCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

/// Where the first part of `line` ends: at `limit`, or in front of the character that is cut there.
std::size_t partEnd(const std::string& line, std::size_t limit) {
  std::size_t end = limit;
  while (end > limit - 4 && end > 0 && continuesCharacter(line[end])) --end;
  return continuesCharacter(line[end]) || end == 0 ? limit : end;  // no UTF-8: anywhere will do
}

}  // namespace

LineSplitter::LineSplitter(std::size_t limit, Take take)
    : m_limit(limit), m_take(std::move(take)) {}

void LineSplitter::add(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t lineEnd = bytes.find('\n');
    const bool isWhole = lineEnd != std::string_view::npos;
    m_line.append(bytes.substr(0, lineEnd));
    takeParts();
    if (!isWhole) return;
    takeLine();
    bytes.remove_prefix(lineEnd + 1);
  }
}

void LineSplitter::finish() {
  if (!m_line.empty()) takeLine();
}

void LineSplitter::takeLine() {
  if (!m_line.empty() && m_line.back() == '\r') m_line.pop_back();
  m_take(std::move(m_line), false);
  m_line.clear();
}

/// One byte more than the limit has to be there, so that a line of just that length is no part.
void LineSplitter::takeParts() {
  std::size_t start = 0;
  while (m_line.size() - start > m_limit) {
    const std::size_t length = partEnd(m_line.substr(start, m_limit + 1), m_limit);
    m_take(m_line.substr(start, length), true);
    start += length;
  }
  m_line.erase(0, start);
}

}  // namespace engine
