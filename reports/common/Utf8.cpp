#include "reports/common/Utf8.h"

namespace reports {
namespace {

struct Lead {
  std::size_t length;
  char32_t bits;
  char32_t least;  ///< what needs that many bytes
};

Lead leadOf(unsigned char byte) {
  if (byte >= 0xC2 && byte <= 0xDF) return {2, byte & 0x1FU, 0x80};
  if (byte >= 0xE0 && byte <= 0xEF) return {3, byte & 0x0FU, 0x800};
  if (byte >= 0xF0 && byte <= 0xF4) return {4, byte & 0x07U, 0x10000};
  return {0, 0, 0};
}

bool isScalar(char32_t code) { return code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF); }

}  // namespace

Character firstCharacter(std::string_view text) noexcept {
  const auto first = static_cast<unsigned char>(text.front());
  if (first < 0x80) return {first, 1};
  const Lead lead = leadOf(first);
  if (lead.length == 0 || text.size() < lead.length) return {kReplacement, 1};
  char32_t code = lead.bits;
  for (std::size_t i = 1; i < lead.length; ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if ((byte & 0xC0U) != 0x80) return {kReplacement, 1};
    code = (code << 6) | (byte & 0x3FU);
  }
  if (code < lead.least || !isScalar(code)) return {kReplacement, 1};
  return {code, lead.length};
}

void appendUtf8(std::string& text, char32_t code) {
  const auto put = [&](char32_t byte) { text += static_cast<char>(byte); };
  if (code < 0x80) {
    put(code);
  } else if (code < 0x800) {
    put(0xC0 | (code >> 6));
    put(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    put(0xE0 | (code >> 12));
    put(0x80 | ((code >> 6) & 0x3F));
    put(0x80 | (code & 0x3F));
  } else {
    put(0xF0 | (code >> 18));
    put(0x80 | ((code >> 12) & 0x3F));
    put(0x80 | ((code >> 6) & 0x3F));
    put(0x80 | (code & 0x3F));
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

}  // namespace reports
