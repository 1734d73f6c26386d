#include "tests/host/display/Screen.h"

#include <algorithm>
#include <cstdlib>

namespace host {

void Screen::write(std::string_view text) {
  while (!text.empty()) {
    if (text.front() == '\x1b') {
      text.remove_prefix(sequence(text));
      continue;
    }
    put(text.front());
    text.remove_prefix(1);
  }
}

std::size_t Screen::sequence(std::string_view text) {
  const std::size_t end = text.find_first_not_of("0123456789;", 2);
  const std::string number(text.substr(2, end - 2));
  const std::size_t count = number.empty() ? 1 : std::strtoul(number.c_str(), nullptr, 10);
  switch (end == std::string_view::npos ? '\0' : text[end]) {
    case 'A':
      m_row -= std::min(m_row, count);
      break;
    case 'J':
      m_lines.resize(m_row + 1);
      m_lines[m_row].resize(std::min(m_column, m_lines[m_row].size()));
      break;
    case 'm':
      break;
    default:
      m_unknown += text.substr(1, 8);
  }
  return std::min(end, text.size() - 1) + 1;
}

void Screen::put(char c) {
  Line& line = m_lines[m_row];
  if (c == '\r') {
    m_column = 0;
  } else if (c == '\n') {
    goOn();
  } else if ((static_cast<unsigned char>(c) & 0xC0U) == 0x80U && m_column > 0) {
    line[m_column - 1] += c;
  } else if (m_column == m_columns) {
    m_hasWrapped = true;
    goOn();
    put(c);
  } else {
    if (line.size() <= m_column) line.resize(m_column + 1, " ");
    line[m_column++] = c;
  }
}

void Screen::goOn() {
  ++m_row;
  m_column = 0;
  if (m_lines.size() <= m_row) m_lines.resize(m_row + 1);
}

std::vector<std::string> Screen::lines() const {
  std::vector<std::string> lines;
  for (const Line& line : m_lines) {
    std::string text;
    for (const std::string& character : line) text += character;
    lines.push_back(text.substr(0, text.find_last_not_of(' ') + 1));
  }
  if (lines.back().empty()) lines.pop_back();
  return lines;
}

}  // namespace host
