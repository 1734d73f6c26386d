#include "text/SafeJson.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "text/SafeText.h"
#include "text/Utf8.h"

namespace text {
namespace {

constexpr unsigned char kDelete = 0x7F;

/// All below has a meaning in JSON, or has been escaped by now.
bool mayAct(char byte) { return static_cast<unsigned char>(byte) >= kDelete; }

void appendUnit(std::string& json, std::uint32_t unit) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  json += "\\u";
  for (const unsigned shift : {12U, 8U, 4U, 0U}) json += kDigits[(unit >> shift) & 0xFU];
}

}  // namespace

void appendJsonEscape(std::string& json, std::uint32_t code) {
  if (code < 0x10000) return appendUnit(json, code);
  appendUnit(json, 0xD800 + ((code - 0x10000) >> 10U));
  appendUnit(json, 0xDC00 + ((code - 0x10000) & 0x3FFU));
}

std::string safeJson(std::string json) {
  std::size_t at = 0;
  const auto nextFrom = [&](std::size_t from) {
    const auto first = json.begin() + static_cast<std::ptrdiff_t>(from);
    return static_cast<std::size_t>(std::find_if(first, json.end(), mayAct) - json.begin());
  };
  std::size_t next = nextFrom(0);
  if (next == json.size()) return json;
  std::string safe;
  safe.reserve(json.size() + json.size() / 8);
  while (next < json.size()) {
    safe.append(json, at, next - at);
    const Character character = characterAt(json, next);
    at = next + std::max<std::size_t>(character.length, 1);
    if (character.length != 0 && actsUnseen(character.code)) {
      appendJsonEscape(safe, character.code);
    } else {
      safe.append(json, next, at - next);
    }
    next = nextFrom(at);
  }
  return safe.append(json, at, std::string::npos);
}

}  // namespace text
