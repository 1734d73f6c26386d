#include "text/Utf8.h"

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

}  // namespace

Character characterAt(std::string_view text, std::size_t at) {
  const auto lead = static_cast<unsigned char>(text[at]);
  const std::size_t length = lengthFrom(lead);
  if (length <= 1) return {lead, length};
  if (length > text.size() - at) return {};
  std::uint32_t code = lead & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const auto byte = static_cast<unsigned char>(text[at + i]);
    if ((byte & 0xC0U) != 0x80U) return {};
    code = (code << 6U) | (byte & 0x3FU);
  }
  return isOverlongOrNoCharacter(code, length) ? Character() : Character{code, length};
}

}  // namespace text
