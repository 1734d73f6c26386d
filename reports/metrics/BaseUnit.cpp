#include "reports/metrics/BaseUnit.h"

#include <optional>

namespace reports {
namespace {

struct Exact {
  const char* unit;
  const char* suffix;
  double shift;
  double times;
  double over;
};

constexpr Exact kExact[] = {
    {"seconds", "seconds", 0, 1, 1},
    {"min", "seconds", 0, 60, 1},
    {"h", "seconds", 0, 3600, 1},
    {"hours", "seconds", 0, 3600, 1},
    {"bytes", "bytes", 0, 1, 1},
    {"degree C", "celsius", 0, 1, 1},
    {"degrees C", "celsius", 0, 1, 1},
    {"\xC2\xB0"
     "C",
     "celsius", 0, 1, 1},
    {"K", "celsius", -273.15, 1, 1},
    {"degree F", "celsius", -32, 5, 9},
    {"\xC2\xB0"
     "F",
     "celsius", -32, 5, 9},
    {"%", "ratio", 0, 1, 100},
    {"1/min", "rpm", 0, 1, 1},
    {"rpm", "rpm", 0, 1, 1},
    {"RPM", "rpm", 0, 1, 1},
    {"1/s", "per_second", 0, 1, 1},
    {"/s", "per_second", 0, 1, 1},
    {"IOPS", "per_second", 0, 1, 1},
};

/// What prefixes stand before a symbol.
enum class Prefixes { kSmall, kAny, kLarge, kBinaryToo };

struct Symbol {
  const char* symbol;
  const char* suffix;
  Prefixes prefixes;
  double over;
};

// Bits are told in bytes, as every other amount of data.
constexpr Symbol kSymbols[] = {
    {"s", "seconds", Prefixes::kSmall, 1},
    {"B", "bytes", Prefixes::kBinaryToo, 1},
    {"B/s", "bytes_per_second", Prefixes::kBinaryToo, 1},
    {"bit", "bytes", Prefixes::kBinaryToo, 8},
    {"bit/s", "bytes_per_second", Prefixes::kBinaryToo, 8},
    {"T/s", "transfers_per_second", Prefixes::kLarge, 1},
    {"Hz", "hertz", Prefixes::kAny, 1},
    {"V", "volts", Prefixes::kAny, 1},
    {"A", "amperes", Prefixes::kAny, 1},
    {"W", "watts", Prefixes::kAny, 1},
    {"J", "joules", Prefixes::kAny, 1},
};

struct Prefix {
  const char* prefix;
  Prefixes kind;  ///< kSmall, kLarge or kBinaryToo
  double times;
  double over;
};

constexpr Prefix kPrefixes[] = {
    {"n", Prefixes::kSmall, 1, 1e9},
    {"u", Prefixes::kSmall, 1, 1e6},
    {"\xC2\xB5", Prefixes::kSmall, 1, 1e6},  // the micro sign
    {"\xCE\xBC", Prefixes::kSmall, 1, 1e6},  // the letter
    {"m", Prefixes::kSmall, 1, 1e3},
    {"k", Prefixes::kLarge, 1e3, 1},
    {"K", Prefixes::kLarge, 1e3, 1},
    {"M", Prefixes::kLarge, 1e6, 1},
    {"G", Prefixes::kLarge, 1e9, 1},
    {"T", Prefixes::kLarge, 1e12, 1},
    {"P", Prefixes::kLarge, 1e15, 1},
    {"Ki", Prefixes::kBinaryToo, 1024.0, 1},
    {"Mi", Prefixes::kBinaryToo, 1024.0 * 1024, 1},
    {"Gi", Prefixes::kBinaryToo, 1024.0 * 1024 * 1024, 1},
    {"Ti", Prefixes::kBinaryToo, 1024.0 * 1024 * 1024 * 1024, 1},
    {"Pi", Prefixes::kBinaryToo, 1024.0 * 1024 * 1024 * 1024 * 1024, 1},
};

bool takes(Prefixes symbol, Prefixes prefix) {
  switch (symbol) {
    case Prefixes::kSmall:
      return prefix == Prefixes::kSmall;
    case Prefixes::kAny:
      return prefix != Prefixes::kBinaryToo;
    case Prefixes::kLarge:
      return prefix == Prefixes::kLarge;
    case Prefixes::kBinaryToo:
      return prefix != Prefixes::kSmall;
  }
  return false;
}

/// Where what stands before the symbol is one of its prefixes, or nothing.
std::optional<BaseUnit> scaled(const Symbol& symbol, std::string_view before) {
  if (before.empty()) return BaseUnit{symbol.suffix, 0, 1, symbol.over};
  for (const Prefix& prefix : kPrefixes) {
    if (before != prefix.prefix || !takes(symbol.prefixes, prefix.kind)) continue;
    return BaseUnit{symbol.suffix, 0, prefix.times, prefix.over * symbol.over};
  }
  return std::nullopt;
}

}  // namespace

BaseUnit baseUnitOf(std::string_view unit) {
  for (const Exact& one : kExact) {
    if (unit == one.unit) return {one.suffix, one.shift, one.times, one.over};
  }
  for (const Symbol& one : kSymbols) {
    const std::string_view symbol = one.symbol;
    if (unit.size() < symbol.size()) continue;
    const std::size_t length = unit.size() - symbol.size();
    if (unit.substr(length) != symbol) continue;
    if (std::optional<BaseUnit> found = scaled(one, unit.substr(0, length))) return *found;
  }
  return {};
}

}  // namespace reports
