#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace text {

/// What stands for bytes that are no character.
constexpr std::uint32_t kReplacement = 0xFFFD;

/// One character of UTF-8; `length` 0 where the bytes are none.
struct Character {
  std::uint32_t code = 0;
  std::size_t length = 0;  ///< in bytes
};

/// The one that begins at `at`, which lies within the text.
Character characterAt(std::string_view text, std::size_t at);

/// The first one of a text that is not empty. Where it has none, U+FFFD: of as many bytes as a
/// character begins with that is cut off, or of one. Nothing of an overlong form, a surrogate or
/// what lies beyond Unicode begins a character.
Character firstCharacter(std::string_view text);

void appendUtf8(std::string& text, std::uint32_t code);

/// The text with U+FFFD for what is no UTF-8.
std::string asUtf8(std::string_view text);

}  // namespace text
