#include "providers/common/values/Measured.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace providers {

namespace {

constexpr char kDelimiter = '|';

/// The same in every locale.
std::string realText(double value) {
  constexpr int kDecimals = 3;
  char text[400];
  const auto end =
      std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, kDecimals);
  return std::string(text, end.ptr);
}

std::string valueText(const Measured& one) {
  if (!one.whole) return realText(one.value);
  return std::to_string(static_cast<std::uint64_t>(std::llround(one.value)));
}

void add(ResultText& text, const char* type, const std::string& name, const std::string& value) {
  text.format += kDelimiter + std::string(type) + " " + name;
  text.data += kDelimiter + value;
}

void fold(Measured& known, const Measured& more) {
  switch (known.fold) {
    case Fold::Sum:
      known.value += more.value;
      return;
    case Fold::Least:
      known.value = std::min(known.value, more.value);
      return;
    case Fold::Most:
      known.value = std::max(known.value, more.value);
  }
}

}  // namespace

std::string measureName(const std::string& words) {
  std::string name;
  bool begins = true;
  for (const char letter : words) {
    const bool lower = letter >= 'a' && letter <= 'z';
    const bool kept = lower || (letter >= 'A' && letter <= 'Z') || (letter >= '0' && letter <= '9');
    if (kept) name += begins && lower ? static_cast<char>(letter - 'a' + 'A') : letter;
    begins = !kept;
  }
  return name;
}

void foldMeasured(std::vector<Measured>& known, const std::vector<Measured>& more) {
  for (const Measured& one : more) {
    const auto same = std::find_if(known.begin(), known.end(), [&one](const Measured& other) {
      return other.name == one.name;
    });
    if (same == known.end()) {
      known.push_back(one);
    } else {
      fold(*same, one);
    }
  }
}

ResultText resultText(const std::vector<Measured>& measured) {
  ResultText text;
  for (const Measured& one : measured) {
    add(text, one.whole ? "uint64" : "real64", one.name, valueText(one));
    if (!one.unit.empty()) add(text, "string", one.name + "Units", one.unit);
    if (one.minimum) add(text, "real64", one.name + "Minimum", realText(*one.minimum));
    if (one.maximum) add(text, "real64", one.name + "Maximum", realText(*one.maximum));
  }
  return text;
}

}  // namespace providers
