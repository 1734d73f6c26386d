#include "engine/plan/CimText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

#include "engine/plan/CimDateTime.h"
#include "engine/plan/PlanError.h"
#include "text/ArrayText.h"

namespace engine {
namespace {

/// One value: its spelling, or nothing where the type does not take it.
using Read = std::optional<std::string> (*)(std::string_view text);

template <typename Number>
std::optional<std::string> integer(std::string_view text) {
  const bool isNegative = !text.empty() && text.front() == '-';
  std::string_view digits = text;
  if (!text.empty() && (isNegative || text.front() == '+')) digits.remove_prefix(1);
  const bool isHex = digits.substr(0, 2) == "0x" || digits.substr(0, 2) == "0X";
  if (isHex) digits.remove_prefix(2);
  std::uint64_t magnitude = 0;
  const char* const end = digits.data() + digits.size();
  const auto result = std::from_chars(digits.data(), end, magnitude, isHex ? 16 : 10);
  if (digits.empty() || result.ec != std::errc() || result.ptr != end) return std::nullopt;

  const auto most = static_cast<std::uint64_t>(std::numeric_limits<Number>::max());
  const std::uint64_t least = std::numeric_limits<Number>::is_signed ? most + 1 : 0;
  if (magnitude > (isNegative ? least : most)) return std::nullopt;
  return (isNegative && magnitude != 0 ? "-" : "") + std::to_string(magnitude);
}

template <typename Number>
std::optional<std::string> real(std::string_view text) {
  Number number = 0;
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, number);
  if (text.empty() || result.ec != std::errc() || result.ptr != end || !std::isfinite(number)) {
    return std::nullopt;
  }
  char buffer[64];
  return std::string(buffer, std::to_chars(buffer, std::end(buffer), number).ptr);
}

std::optional<std::string> boolean(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  if (lower != "true" && lower != "false") return std::nullopt;
  return lower;
}

/// A text can be handed to any provider: it ends at its first zero.
std::optional<std::string> string(std::string_view text) {
  if (text.find('\0') != std::string_view::npos) return std::nullopt;
  return std::string(text);
}

/// The one sign of the text, where 16 bits hold it.
std::optional<std::string> char16(std::string_view text) {
  if (text.empty() || text.size() > 3) return std::nullopt;
  const auto first = static_cast<unsigned char>(text[0]);
  const std::size_t length = first == 0     ? 0
                             : first < 0x80 ? 1
                             : first < 0xC2 ? 0
                             : first < 0xE0 ? 2
                                            : 3;
  if (length != text.size() || first >= 0xF0) return std::nullopt;
  std::uint32_t sign = length == 1 ? first : length == 2 ? first & 0x1Fu : first & 0x0Fu;
  for (const char next : text.substr(1)) {
    if ((static_cast<unsigned char>(next) & 0xC0) != 0x80) return std::nullopt;
    sign = (sign << 6) | (static_cast<unsigned char>(next) & 0x3Fu);
  }
  const bool isTooLong = length == 3 && sign < 0x800;
  if (isTooLong || (sign >= 0xD800 && sign < 0xE000)) return std::nullopt;
  return std::string(text);
}

struct Type {
  const char* name;
  Read read;
  const char* takes;
};

const Type kTypes[] = {
    {"uint8", integer<std::uint8_t>, "a whole number from 0 to 255"},
    {"uint16", integer<std::uint16_t>, "a whole number from 0 to 65535"},
    {"uint32", integer<std::uint32_t>, "a whole number from 0 to 4294967295"},
    {"uint64", integer<std::uint64_t>, "a whole number from 0 to 18446744073709551615"},
    {"sint8", integer<std::int8_t>, "a whole number from -128 to 127"},
    {"sint16", integer<std::int16_t>, "a whole number from -32768 to 32767"},
    {"sint32", integer<std::int32_t>, "a whole number from -2147483648 to 2147483647"},
    {"sint64", integer<std::int64_t>,
     "a whole number from -9223372036854775808 to 9223372036854775807"},
    {"real32", real<float>, "a number up to 3.4e38"},
    {"real64", real<double>, "a number up to 1.7e308"},
    {"boolean", boolean, "true or false"},
    {"string", string, "a text without a zero byte"},
    {"char16", char16, "one character of at most 16 bits"},
    {"datetime", dateTimeText,
     "a time like 2026-11-22T02:00:00Z, a duration like 1h30m, or the 25 characters of a CIM "
     "datetime"},
};

bool isArray(const std::string& type) {
  return type.size() > 2 && type.compare(type.size() - 2, 2, "[]") == 0;
}

std::string canonicalValue(const Type& type, std::string_view text) {
  if (const auto value = type.read(text)) return *value;
  throw PlanError("\"" + std::string(text) + "\" is no " + type.name + ": expected " + type.takes);
}

}  // namespace

std::string canonicalText(const std::string& type, std::string_view text) {
  const std::string element = isArray(type) ? type.substr(0, type.size() - 2) : type;
  const auto* found = std::find_if(std::begin(kTypes), std::end(kTypes),
                                   [&](const Type& known) { return element == known.name; });
  if (found == std::end(kTypes)) {
    throw PlanError("\"" + std::string(text) + "\" cannot be set: values of type " + type +
                    " have no text");
  }
  if (!isArray(type)) return canonicalValue(*found, text);
  std::vector<std::string> elements = text::arrayElements(text);
  for (std::string& each : elements) each = canonicalValue(*found, each);
  return text::arrayText(elements);
}

}  // namespace engine
