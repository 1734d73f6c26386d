#include "substitute/cmpi.nsp/broker/text/Text.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "substitute/cmpi.nsp/broker/lifetime/ThreadState.h"

namespace cmpinsp::broker {
namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;

bool isSurrogate(std::uint32_t code) { return code >= 0xD800 && code <= 0xDFFF; }

std::uint32_t byteAt(std::string_view text, std::size_t position) {
  return static_cast<unsigned char>(text[position]);
}

/// Reads one character; its length in bytes, or 0 where there is none.
std::size_t readCharacter(std::string_view text, std::uint32_t& code) noexcept {
  static constexpr std::uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  const std::uint32_t lead = byteAt(text, 0);
  code = lead;
  if (lead < 0x80) return 1;
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return 0;
  code = lead & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if ((byteAt(text, i) & 0xC0U) != 0x80U) return 0;
    code = (code << 6U) | (byteAt(text, i) & 0x3FU);
  }
  return code < kLeast[length] || code > 0x10FFFF || isSurrogate(code) ? 0 : length;
}

void appendCharacter(std::string& text, std::uint32_t code) {
  const auto trail = [&](unsigned shift) {
    text += static_cast<char>(0x80U | ((code >> shift) & 0x3FU));
  };
  if (code < 0x80) {
    text += static_cast<char>(code);
  } else if (code < 0x800) {
    text += static_cast<char>(0xC0U | (code >> 6U));
    trail(0);
  } else if (code < 0x10000) {
    text += static_cast<char>(0xE0U | (code >> 12U));
    trail(6);
    trail(0);
  } else {
    text += static_cast<char>(0xF0U | (code >> 18U));
    trail(12);
    trail(6);
    trail(0);
  }
}

/// How many bytes of ASCII `text` starts with, in steps of eight.
std::size_t asciiPrefix(std::string_view text) noexcept {
  constexpr std::uint64_t kHighBits = 0x8080808080808080U;
  std::size_t length = 0;
  for (std::uint64_t word = 0; length + sizeof word <= text.size(); length += sizeof word) {
    std::memcpy(&word, text.data() + length, sizeof word);
    if ((word & kHighBits) != 0) break;
  }
  return length;
}

}  // namespace

bool isUtf8(std::string_view text) noexcept {
  text.remove_prefix(asciiPrefix(text));
  std::uint32_t code = 0;
  while (!text.empty()) {
    if (byteAt(text, 0) < 0x80) {
      text.remove_prefix(1);
      continue;
    }
    const std::size_t length = readCharacter(text, code);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

std::string repaired(std::string_view text) {
  if (isUtf8(text)) return std::string(text);
  threadState().isTextRepaired = true;
  std::string result;
  while (!text.empty()) {
    std::uint32_t code = 0;
    const std::size_t length = readCharacter(text, code);
    appendCharacter(result, length == 0 ? byteAt(text, 0) : code);
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return result;
}

std::u16string utf16Of(std::string_view text) {
  std::u16string result;
  while (!text.empty()) {
    std::uint32_t code = 0;
    const std::size_t length = readCharacter(text, code);
    if (length == 0) code = kReplacement;
    text.remove_prefix(length == 0 ? 1 : length);
    if (code < 0x10000) {
      result += static_cast<char16_t>(code);
    } else {
      result += static_cast<char16_t>(0xD800U + ((code - 0x10000U) >> 10U));
      result += static_cast<char16_t>(0xDC00U + ((code - 0x10000U) & 0x3FFU));
    }
  }
  return result;
}

std::string utf8Of(std::u16string_view text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    std::uint32_t code = text[i];
    const bool isPair = code >= 0xD800 && code < 0xDC00 && i + 1 < text.size() &&
                        text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000;
    if (isPair) {
      code = 0x10000U + ((code - 0xD800U) << 10U) + (text[++i] - 0xDC00U);
    } else if (isSurrogate(code)) {
      code = kReplacement;
    }
    appendCharacter(result, code);
  }
  return result;
}

}  // namespace cmpinsp::broker
