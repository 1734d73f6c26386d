#include "substitute/vorcore/values/Utf8.h"

#include <cstdint>

namespace vorcore {
namespace {

bool isSurrogate(std::uint32_t unit) { return unit >= 0xD800 && unit <= 0xDFFF; }

/// The six bits of a continuation byte, or -1.
int continuationBits(const std::string& text, std::size_t position) {
  if (position >= text.size()) return -1;
  const auto byte = static_cast<unsigned char>(text[position]);
  return (byte & 0xC0U) == 0x80U ? byte & 0x3F : -1;
}

}  // namespace

std::string utf8Of(char16_t unit) {
  std::uint32_t code = unit;
  if (isSurrogate(code)) code = 0xFFFD;
  std::string text;
  if (code < 0x80) {
    text += static_cast<char>(code);
  } else if (code < 0x800) {
    text += static_cast<char>(0xC0U | (code >> 6U));
    text += static_cast<char>(0x80U | (code & 0x3FU));
  } else {
    text += static_cast<char>(0xE0U | (code >> 12U));
    text += static_cast<char>(0x80U | ((code >> 6U) & 0x3FU));
    text += static_cast<char>(0x80U | (code & 0x3FU));
  }
  return text;
}

bool singleUnitOf(const std::string& text, char16_t& unit) {
  if (text.empty() || text.size() > 3) return false;
  const auto lead = static_cast<unsigned char>(text[0]);
  const int second = continuationBits(text, 1);
  const int third = continuationBits(text, 2);
  if (text.size() == 1 && lead < 0x80) {
    unit = static_cast<char16_t>(lead);
    return true;
  }
  if (text.size() == 2 && (lead & 0xE0U) == 0xC0U && second >= 0) {
    unit = static_cast<char16_t>(((lead & 0x1F) << 6) | second);
    return unit >= 0x80;
  }
  if (text.size() == 3 && (lead & 0xF0U) == 0xE0U && second >= 0 && third >= 0) {
    unit = static_cast<char16_t>(((lead & 0x0F) << 12) | (second << 6) | third);
    return unit >= 0x800 && !isSurrogate(unit);
  }
  return false;
}

}  // namespace vorcore
