#include "text/ArrayText.h"

#include <cstddef>

namespace text {

std::string arrayText(const std::vector<std::string>& elements) {
  std::string text;
  for (std::size_t i = 0; i < elements.size(); ++i) {
    if (i > 0) text += ',';
    for (const char letter : elements[i]) {
      if (letter == ',' || letter == '\\') text += '\\';
      text += letter;
    }
  }
  return text;
}

std::vector<std::string> arrayElements(std::string_view text) {
  std::vector<std::string> elements;
  if (text.empty()) return elements;
  elements.emplace_back();
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char next = i + 1 < text.size() ? text[i + 1] : '\0';
    if (text[i] == ',') {
      elements.emplace_back();
    } else {
      const bool isEscape = text[i] == '\\' && (next == ',' || next == '\\');
      elements.back() += text[isEscape ? ++i : i];
    }
  }
  return elements;
}

}  // namespace text
