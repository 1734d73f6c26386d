#include "text/Columns.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "text/Utf8.h"

namespace text {
namespace {

struct Range {
  std::uint32_t first;
  std::uint32_t last;
};

/// Characters that take two columns, in some terminals at least.
constexpr Range kWide[] = {
    {0x1100, 0x11FF},    // Korean letters
    {0x231A, 0x23FF},    // pictures among technical signs
    {0x25A0, 0x27BF},    // shapes and pictures
    {0x2B00, 0x2BFF},    // further shapes
    {0x2E80, 0xA4CF},    // Chinese, Japanese, Yi
    {0xA960, 0xA97F},    // Korean letters
    {0xAC00, 0xD7FF},    // Korean
    {0xF900, 0xFAFF},    // Chinese
    {0xFE10, 0xFE1F},    // upright signs
    {0xFE30, 0xFE6F},    // forms of Chinese signs
    {0xFF00, 0xFFEF},    // wide Latin
    {0x16FE0, 0x18CFF},  // Tangut
    {0x1AFF0, 0x1B2FF},  // Japanese
    {0x1F000, 0x1FAFF},  // pictures
    {0x20000, 0x3FFFF},  // Chinese
};

/// Marks over the character before, and what joins or keeps apart.
constexpr Range kWithout[] = {
    {0x0300, 0x036F}, {0x0483, 0x0489}, {0x0591, 0x05BD}, {0x064B, 0x065F},
    {0x1AB0, 0x1AFF}, {0x1DC0, 0x1DFF}, {0x200C, 0x200D}, {0x20D0, 0x20FF},
};

template <std::size_t count>
bool isIn(const Range (&ranges)[count], std::uint32_t code) {
  const auto range =
      std::lower_bound(std::begin(ranges), std::end(ranges), code,
                       [](const Range& one, std::uint32_t c) { return one.last < c; });
  return range != std::end(ranges) && range->first <= code;
}

std::size_t columnsOf(std::uint32_t code) {
  if (isIn(kWithout, code)) return 0;
  return isIn(kWide, code) ? 2 : 1;
}

/// Where the text has taken `columns`, or its end: the length of what fits.
std::size_t lengthWithin(std::string_view text, std::size_t columns) {
  std::size_t at = 0;
  std::size_t taken = 0;
  while (at < text.size()) {
    const Character character = characterAt(text, at);
    taken += character.length == 0 ? 1 : columnsOf(character.code);
    if (taken > columns) return at;
    at += std::max<std::size_t>(character.length, 1);
  }
  return at;
}

/// The length of the first line; not 0, so that there is an end.
std::size_t lineLength(std::string_view text, std::size_t columns) {
  const std::size_t length = lengthWithin(text, columns);
  if (length == text.size()) return length;
  if (text[length] == ' ') return length;
  const std::size_t blank = text.substr(0, length).rfind(' ');
  if (blank != std::string_view::npos && blank > 0) return blank;
  return std::max(length, std::max<std::size_t>(characterAt(text, 0).length, 1));
}

}  // namespace

std::size_t columnsOf(std::string_view text) {
  std::size_t columns = 0;
  for (std::size_t at = 0; at < text.size();) {
    const Character character = characterAt(text, at);
    columns += character.length == 0 ? 1 : columnsOf(character.code);
    at += std::max<std::size_t>(character.length, 1);
  }
  return columns;
}

std::string fitted(std::string_view text, std::size_t columns) {
  if (lengthWithin(text, columns) == text.size()) return std::string(text);
  if (columns == 0) return {};
  return std::string(text.substr(0, lengthWithin(text, columns - 1))) + "\xE2\x80\xA6";
}

std::vector<std::string> wrapped(std::string_view text, std::size_t columns) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t length = lineLength(text, columns);
    const std::string_view line = text.substr(0, length);
    lines.emplace_back(line.substr(0, line.find_last_not_of(' ') + 1));
    text.remove_prefix(length);
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  }
  return lines;
}

}  // namespace text
