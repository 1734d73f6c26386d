#include "engine/protocol/Text.h"

#include <cstdint>

namespace engine {
namespace {

/// The length of the character that begins with `first`; 0 where none does.
std::size_t lengthFrom(unsigned char first) {
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first <= 0xDF) return 2;
  if (first >= 0xE0 && first <= 0xEF) return 3;
  return first >= 0xF0 && first <= 0xF4 ? 4 : 0;
}

bool isCharacter(std::string_view bytes) {
  static const std::uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  const std::size_t length = bytes.size();
  std::uint32_t code = static_cast<unsigned char>(bytes[0]);
  if (length > 1) code &= 0x7FU >> length;
  for (std::size_t i = 1; i < length; ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    if ((byte & 0xC0) != 0x80) return false;
    code = code << 6 | (byte & 0x3FU);
  }
  const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
  return code >= kLeast[length] && code <= 0x10FFFF && !isSurrogate;
}

int digit(char text) {
  if (text >= '0' && text <= '9') return text - '0';
  return text >= 'a' && text <= 'f' ? text - 'a' + 10 : -1;
}

}  // namespace

bool isUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = lengthFrom(static_cast<unsigned char>(text[0]));
    if (length == 0 || length > text.size() || !isCharacter(text.substr(0, length))) return false;
    text.remove_prefix(length);
  }
  return true;
}

std::string hexOf(std::string_view bytes) {
  static const char* const kDigits = "0123456789abcdef";
  std::string hex;
  for (const char byte : bytes) {
    hex += kDigits[static_cast<unsigned char>(byte) >> 4];
    hex += kDigits[static_cast<unsigned char>(byte) & 15];
  }
  return hex;
}

bool bytesFrom(std::string_view hex, std::string& bytes) {
  if (hex.size() % 2 != 0) return false;
  bytes.clear();
  for (std::size_t i = 0; i < hex.size(); i += 2) {
    const int high = digit(hex[i]);
    const int low = digit(hex[i + 1]);
    if (high < 0 || low < 0) return false;
    bytes += static_cast<char>(high << 4 | low);
  }
  return true;
}

}  // namespace engine
