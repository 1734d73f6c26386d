#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace cmpinsp {

/// A blank-separated word of a line, with the column it starts at, counted from 1.
struct Word {
  std::string text;
  unsigned long column = 1;
};

constexpr std::string_view kBlanks = " \t\r\f\v";

/// `line` without the blanks at its ends.
inline std::string_view trimmed(std::string_view line) {
  const std::size_t start = line.find_first_not_of(kBlanks);
  if (start == std::string_view::npos) return {};
  return line.substr(start, line.find_last_not_of(kBlanks) + 1 - start);
}

/// The words of `line`; `first` is the column of its first character.
inline std::vector<Word> wordsOf(std::string_view line, std::size_t first = 1) {
  std::vector<Word> words;
  std::size_t at = line.find_first_not_of(kBlanks);
  while (at != std::string_view::npos) {
    const std::size_t end = line.find_first_of(kBlanks, at);
    words.push_back(
        {std::string(line.substr(at, end - at)), static_cast<unsigned long>(first + at)});
    at = line.find_first_not_of(kBlanks, end);
  }
  return words;
}

/// Calls `take(line, number)` for each line of `text`, counted from 1, without its line end.
template <typename Take>
void forEachLine(std::string_view text, Take take) {
  unsigned long number = 0;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    take(text.substr(0, end), ++number);
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
  }
}

}  // namespace cmpinsp
