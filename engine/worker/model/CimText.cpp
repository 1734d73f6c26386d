#include "engine/worker/model/CimText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "text/Words.h"

namespace engine::worker {
namespace {

using NZELVOR20::ECIMType;

struct TypeRow {
  ECIMType type;
  const char* name;
};

constexpr std::array<TypeRow, 15> kTypes{{{ECIMType::eBoolean, "boolean"},
                                          {ECIMType::eChar16, "char16"},
                                          {ECIMType::eUint8, "uint8"},
                                          {ECIMType::eUint16, "uint16"},
                                          {ECIMType::eUint32, "uint32"},
                                          {ECIMType::eUint64, "uint64"},
                                          {ECIMType::eSint8, "sint8"},
                                          {ECIMType::eSint16, "sint16"},
                                          {ECIMType::eSint32, "sint32"},
                                          {ECIMType::eSint64, "sint64"},
                                          {ECIMType::eReal32, "real32"},
                                          {ECIMType::eReal64, "real64"},
                                          {ECIMType::eString, "string"},
                                          {ECIMType::eDateTime, "datetime"},
                                          {ECIMType::eReference, "ref"}}};

char lower(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

unsigned bitsOf(ECIMType type) {
  switch (type) {
    case ECIMType::eUint8:
    case ECIMType::eSint8:
      return 8;
    case ECIMType::eUint16:
    case ECIMType::eSint16:
      return 16;
    case ECIMType::eUint32:
    case ECIMType::eSint32:
      return 32;
    default:
      return 64;
  }
}

/// The number that is the whole of the text. A plus sign is good CIM, and unknown to the library.
template <typename Number>
std::optional<Number> wholeNumber(std::string_view text) {
  text = text::trimmed(text);
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  Number number{};
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number);
  if (text.empty() || read.ec != std::errc() || read.ptr != end) return std::nullopt;
  return number;
}

}  // namespace

const char* typeName(ECIMType type) {
  const auto* const found = std::find_if(kTypes.begin(), kTypes.end(),
                                         [type](const TypeRow& row) { return row.type == type; });
  return found == kTypes.end() ? "" : found->name;
}

std::optional<ECIMType> typeNamed(std::string_view name) {
  const auto* const found = std::find_if(kTypes.begin(), kTypes.end(), [name](const TypeRow& row) {
    return sameName(row.name, name);
  });
  if (found == kTypes.end()) return std::nullopt;
  return found->type;
}

bool isUnsigned(ECIMType type) { return type >= ECIMType::eUint8 && type <= ECIMType::eUint64; }
bool isSigned(ECIMType type) { return type >= ECIMType::eSint8 && type <= ECIMType::eSint64; }
bool isReal(ECIMType type) { return type == ECIMType::eReal32 || type == ECIMType::eReal64; }

std::optional<std::uint64_t> readUnsigned(std::string_view text, ECIMType type) {
  const auto number = wholeNumber<std::uint64_t>(text);
  const unsigned bits = bitsOf(type);
  if (!number || (bits < 64 && (*number >> bits) != 0)) return std::nullopt;
  return number;
}

std::optional<std::int64_t> readSigned(std::string_view text, ECIMType type) {
  const auto number = wholeNumber<std::int64_t>(text);
  if (!number) return std::nullopt;
  const std::int64_t most = static_cast<std::int64_t>(~std::uint64_t{0} >> (65 - bitsOf(type)));
  if (*number > most || *number < -most - 1) return std::nullopt;
  return number;
}

std::optional<double> readReal(std::string_view text) {
  const auto number = wholeNumber<double>(text);
  if (!number || !std::isfinite(*number)) return std::nullopt;
  return number;
}

std::optional<bool> readBoolean(std::string_view text) {
  text = text::trimmed(text);
  if (sameName(text, "true")) return true;
  if (sameName(text, "false")) return false;
  return std::nullopt;
}

bool sameName(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return lower(a) == lower(b); });
}

std::string lowered(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), lower);
  return result;
}

std::string shortened(std::string_view text) {
  constexpr std::size_t kMost = 60;
  if (text.size() <= kMost) return std::string(text);
  std::size_t end = kMost;
  const auto isInside = [&](std::size_t at) {
    return (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
  };
  while (end > kMost - 4 && isInside(end)) --end;
  return std::string(text.substr(0, end)) + "...";
}

}  // namespace engine::worker
