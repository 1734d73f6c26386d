#include "substitute/vorcore/values/ValueMap.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <string_view>

#include "substitute/vorcore/values/TypeNames.h"

namespace vorcore {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

/// Any 64-bit integer, signed or not, mapped so that the numbers keep their order.
struct Integer {
  bool isNegative = false;
  std::uint64_t bits = 0;

  bool operator<(const Integer& other) const {
    return isNegative != other.isNegative ? isNegative : bits < other.bits;
  }
  bool operator<=(const Integer& other) const { return !(other < *this); }
  bool operator==(const Integer& other) const {
    return isNegative == other.isNegative && bits == other.bits;
  }
};

Integer integerOf(const TCIMValue& value) {
  if (!isSignedType(value.GetType())) return {false, value.ToUint64()};
  const std::int64_t number = value.ToSint64();
  return {number < 0, static_cast<std::uint64_t>(number)};
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

bool readInteger(std::string_view text, Integer& number) {
  text = trimmed(text);
  const bool isNegative = !text.empty() && text.front() == '-';
  if (!text.empty() && (isNegative || text.front() == '+')) text.remove_prefix(1);
  const bool isHex = text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
  if (isHex) text.remove_prefix(2);
  std::uint64_t magnitude = 0;
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, magnitude, isHex ? 16 : 10);
  if (result.ec != std::errc() || result.ptr != end) return false;
  number = {isNegative && magnitude != 0, isNegative ? 0 - magnitude : magnitude};
  return true;
}

/// How closely an entry fits; the closest one wins.
enum Fit { kExact, kClosedRange, kOpenRange, kEverythingElse, kNoFit };

Fit fitOf(std::string_view entry, const Integer& number) {
  entry = trimmed(entry);
  const std::size_t dots = entry.find("..");
  Integer low;
  Integer high;
  if (dots == std::string_view::npos) {
    return readInteger(entry, low) && low == number ? kExact : kNoFit;
  }
  const std::string_view from = trimmed(entry.substr(0, dots));
  const std::string_view to = trimmed(entry.substr(dots + 2));
  if (from.empty() && to.empty()) return kEverythingElse;
  const bool isAbove = from.empty() || (readInteger(from, low) && low <= number);
  const bool isBelow = to.empty() || (readInteger(to, high) && number <= high);
  if (!isAbove || !isBelow) return kNoFit;
  return from.empty() || to.empty() ? kOpenRange : kClosedRange;
}

bool isText(const TCIMValue& entry) {
  return !entry.IsNull() && !entry.IsArray() && entry.GetType() == ECIMType::eString;
}

std::size_t findInteger(const std::vector<TCIMValue>& valueMap, const Integer& number) {
  std::array<std::size_t, kNoFit> best;
  best.fill(kUnmapped);
  for (std::size_t position = 0; position < valueMap.size(); ++position) {
    if (!isText(valueMap[position])) continue;
    const Fit fit = fitOf(valueMap[position].GetText(), number);
    if (fit == kExact) return position;
    if (fit != kNoFit && best[fit] == kUnmapped) best[fit] = position;
  }
  const auto found = std::find_if(best.begin(), best.end(),
                                  [](std::size_t position) { return position != kUnmapped; });
  return found != best.end() ? *found : kUnmapped;
}

std::size_t findText(const std::vector<TCIMValue>& valueMap, const std::string& text) {
  for (std::size_t position = 0; position < valueMap.size(); ++position) {
    if (isText(valueMap[position]) && valueMap[position].GetText() == text) return position;
  }
  return kUnmapped;
}

}  // namespace

std::size_t findInValueMap(const std::vector<TCIMValue>& valueMap, const TCIMValue& value) {
  const ECIMType type = value.GetType();
  if (isUnsignedType(type) || isSignedType(type)) return findInteger(valueMap, integerOf(value));
  if (type == ECIMType::eString) return findText(valueMap, value.GetText());
  return findText(valueMap, value.ToString(10));
}

}  // namespace vorcore
