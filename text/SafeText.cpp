#include "text/SafeText.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <iterator>

#include "text/Utf8.h"

namespace text {
namespace {

struct Range {
  std::uint32_t first;
  std::uint32_t last;
};

/// Characters that do something instead of being seen.
constexpr Range kUnseen[] = {
    {0x0000, 0x001F},    // control characters
    {0x007F, 0x009F},    // DEL, and the second set of control characters: U+009B begins a sequence
    {0x00AD, 0x00AD},    // soft hyphen
    {0x034F, 0x034F},    // a joiner that joins nothing
    {0x061C, 0x061C},    // direction of writing
    {0x115F, 0x1160},    // fillers for letters that are missing
    {0x17B4, 0x17B5},    // vowels that are not written
    {0x180B, 0x180F},    // variants, and a separator without width
    {0x200B, 0x200B},    // a blank without width
    {0x200E, 0x200F},    // direction of writing
    {0x2028, 0x202E},    // line and paragraph separator, direction of writing
    {0x2060, 0x206F},    // signs without width, direction of writing
    {0x3164, 0x3164},    // a filler
    {0xFEFF, 0xFEFF},    // byte order mark
    {0xFFA0, 0xFFA0},    // a filler
    {0xFFF9, 0xFFFB},    // annotations
    {0xFFFE, 0xFFFF},    // no characters
    {0xE0000, 0xE0FFF},  // tags and variants
};

void spell(std::string& out, std::uint32_t code) {
  const char* const form = code < 0x80 ? "\\x%02x" : code < 0x10000 ? "\\u%04x" : "\\U%08x";
  char text[16];
  std::snprintf(text, sizeof text, form, static_cast<unsigned>(code));
  out += text;
}

void spellByte(std::string& out, char c) {
  char text[8];
  std::snprintf(text, sizeof text, "\\x%02x", static_cast<unsigned>(static_cast<unsigned char>(c)));
  out += text;
}

/// Adds the character at `at` to `out`; the position behind it.
std::size_t show(std::string_view text, std::size_t at, std::string& out) {
  const Character character = characterAt(text, at);
  if (character.length == 0) {
    spellByte(out, text[at]);
    return at + 1;
  }
  if (actsUnseen(character.code)) {
    spell(out, character.code);
  } else {
    out += text.substr(at, character.length);
  }
  return at + character.length;
}

/// The length of the line break at `at`; 0 where there is none.
std::size_t lineBreakAt(std::string_view text, std::size_t at) {
  if (text[at] == '\n') return 1;
  return text.substr(at, 2) == "\r\n" ? 2 : 0;
}

}  // namespace

bool actsUnseen(std::uint32_t code) noexcept {
  const auto range =
      std::lower_bound(std::begin(kUnseen), std::end(kUnseen), code,
                       [](const Range& one, std::uint32_t c) { return one.last < c; });
  return range != std::end(kUnseen) && range->first <= code;
}

std::string visible(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) at = show(text, at, out);
  return out;
}

std::string setApart(std::string_view text, const std::string& margin) {
  std::string out;
  out.reserve(text.size());
  bool atStart = false;
  for (std::size_t at = 0; at < text.size();) {
    if (const std::size_t length = lineBreakAt(text, at)) {
      out += '\n';
      at += length;
      atStart = true;
      continue;
    }
    if (atStart) out += margin;
    atStart = false;
    if (text[at] == '\t') {
      out += text[at++];
    } else {
      at = show(text, at, out);
    }
  }
  return out;
}

}  // namespace text
