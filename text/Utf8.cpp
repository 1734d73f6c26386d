#include "text/Utf8.h"

#include <algorithm>

namespace text {
namespace {

/// How many bytes a character has that begins with `lead`; 0 where none does.
std::size_t lengthFrom(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead < 0xE0) return 2;
  if (lead >= 0xE0 && lead < 0xF0) return 3;
  return lead >= 0xF0 && lead < 0xF5 ? 4 : 0;
}

bool isOverlongOrNoCharacter(std::uint32_t code, std::size_t length) {
  return (length == 3 && code < 0x800) || (length == 4 && code < 0x10000) ||
         (code >= 0xD800 && code <= 0xDFFF) || code > 0x10FFFF;
}

bool isContinuation(unsigned char byte) { return (byte & 0xC0U) == 0x80U; }

/// Whether a character may have them as its first two bytes.
bool mayFollow(unsigned char lead, unsigned char second) {
  switch (lead) {
    case 0xE0:
      return second >= 0xA0;
    case 0xED:
      return second < 0xA0;
    case 0xF0:
      return second >= 0x90;
    case 0xF4:
      return second < 0x90;
    default:
      return true;
  }
}

/// Of a text that begins with no whole character: how many bytes one could begin with; at least 1.
std::size_t lengthOfBeginning(std::string_view text) {
  const auto byteAt = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
  const std::size_t most = std::min(lengthFrom(byteAt(0)), text.size());
  if (most < 2 || !isContinuation(byteAt(1)) || !mayFollow(byteAt(0), byteAt(1))) return 1;
  std::size_t length = 2;
  while (length < most && isContinuation(byteAt(length))) ++length;
  return length;
}

}  // namespace

Character characterAt(std::string_view text, std::size_t at) {
  const auto lead = static_cast<unsigned char>(text[at]);
  const std::size_t length = lengthFrom(lead);
  if (length <= 1) return {lead, length};
  if (length > text.size() - at) return {};
  std::uint32_t code = lead & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const auto byte = static_cast<unsigned char>(text[at + i]);
    if (!isContinuation(byte)) return {};
    code = (code << 6U) | (byte & 0x3FU);
  }
  return isOverlongOrNoCharacter(code, length) ? Character() : Character{code, length};
}

Character firstCharacter(std::string_view text) {
  const Character character = characterAt(text, 0);
  if (character.length != 0) return character;
  return {kReplacement, lengthOfBeginning(text)};
}

void appendUtf8(std::string& text, std::uint32_t code) {
  const auto put = [&](std::uint32_t byte) { text += static_cast<char>(byte); };
  if (code < 0x80) {
    put(code);
  } else if (code < 0x800) {
    put(0xC0U | (code >> 6U));
    put(0x80U | (code & 0x3FU));
  } else if (code < 0x10000) {
    put(0xE0U | (code >> 12U));
    put(0x80U | ((code >> 6U) & 0x3FU));
    put(0x80U | (code & 0x3FU));
  } else {
    put(0xF0U | (code >> 18U));
    put(0x80U | ((code >> 12U) & 0x3FU));
    put(0x80U | ((code >> 6U) & 0x3FU));
    put(0x80U | (code & 0x3FU));
  }
}

std::string asUtf8(std::string_view text) {
  std::string clean;
  clean.reserve(text.size());
  while (!text.empty()) {
    const Character character = firstCharacter(text);
    appendUtf8(clean, character.code);
    text.remove_prefix(character.length);
  }
  return clean;
}

}  // namespace text
