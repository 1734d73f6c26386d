#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace reports {

/// What stands for bytes that are no character.
constexpr char32_t kReplacement = 0xFFFD;

struct Character {
  char32_t code;
  std::size_t length;  ///< in bytes
};

/// The first character of a text that is not empty. A byte that begins none, an overlong form, a
/// surrogate or what lies beyond Unicode is U+FFFD of one byte.
Character firstCharacter(std::string_view text) noexcept;

void appendUtf8(std::string& text, char32_t code);

/// The text with U+FFFD for each byte that is no UTF-8.
std::string asUtf8(std::string_view text);

}  // namespace reports
