#include "reports/redact/Secrets.h"

#include <algorithm>

#include "reports/common/Letters.h"
#include "reports/redact/HostNames.h"

namespace reports {
namespace {

/// Shorter ones would be found in any text.
constexpr std::size_t kShortestSerial = 4;
/// Of each kind; a provider that invents ever new ones must not fill the memory.
constexpr std::uint64_t kMostNames = 10'000;

bool isDigit(char byte) { return byte >= '0' && byte <= '9'; }

bool isWordByte(char byte) {
  const char small = folded(byte);
  return isDigit(byte) || (small >= 'a' && small <= 'z');
}

bool isHexDigit(char byte) {
  const char small = folded(byte);
  return isDigit(byte) || (small >= 'a' && small <= 'f');
}

std::string foldedText(std::string_view text) {
  std::string small(text);
  std::transform(small.begin(), small.end(), small.begin(), folded);
  return small;
}

bool hasAt(std::string_view text, std::size_t position, std::string_view small) {
  if (text.size() - position < small.size()) return false;
  for (std::size_t i = 0; i < small.size(); ++i) {
    if (folded(text[position + i]) != small[i]) return false;
  }
  return true;
}

/// Between two bytes of one word is none.
bool isBorder(std::string_view text, std::size_t position) {
  return position == 0 || position >= text.size() || !isWordByte(text[position - 1]) ||
         !isWordByte(text[position]);
}

/// What firmware writes where there is no number.
bool tellsNothing(const std::string& small) {
  static constexpr std::string_view kWords[] = {"",
                                                "unknown",
                                                "none",
                                                "n/a",
                                                "not specified",
                                                "not available",
                                                "not applicable",
                                                "to be filled by o.e.m.",
                                                "default string",
                                                "system serial number",
                                                "chassis serial number",
                                                "serial number",
                                                "serialnum",
                                                "0123456789",
                                                "123456789",
                                                "localhost",
                                                "localhost.localdomain"};
  for (const std::string_view word : kWords) {
    if (small == word) return true;
  }
  return false;
}

/// Zeroes, or whatever else the firmware was filled with.
bool isFilled(const std::string& small) {
  return small.find_first_not_of(small.front()) == std::string::npos;
}

constexpr const char* kKindNames[] = {"serial", "host", "address"};

std::size_t countHex(std::string_view text, std::size_t position) {
  std::size_t count = 0;
  while (position + count < text.size() && isHexDigit(text[position + count])) ++count;
  return count;
}

/// The length of pairs of hexadecimal digits with that separator in between, and how many they are.
struct Pairs {
  std::size_t length = 0;
  std::size_t count = 0;
};
Pairs pairsAt(std::string_view text, std::size_t position) {
  Pairs pairs;
  const char separator = text.size() > position + 2 ? text[position + 2] : '\0';
  if (separator != ':' && separator != '-') return pairs;
  while (countHex(text, position + pairs.length) == 2) {
    ++pairs.count;
    pairs.length += 2;
    const std::size_t next = position + pairs.length;
    if (next + 1 >= text.size() || text[next] != separator || !isHexDigit(text[next + 1])) break;
    ++pairs.length;
  }
  return pairs;
}

/// The position behind what may stand between "serial" and the number; 0 where it is no label.
std::size_t behindLabel(std::string_view text, std::size_t position) {
  const auto skip = [&](std::string_view bytes) {
    while (position < text.size() && bytes.find(text[position]) != std::string::npos) ++position;
  };
  skip(" _-\t");
  for (const std::string_view word : {"number", "num", "nr", "no"}) {
    if (!hasAt(text, position, word)) continue;
    position += word.size();
    break;
  }
  skip(" .#\"'\t");
  if (position >= text.size() || (text[position] != ':' && text[position] != '=')) return 0;
  ++position;
  skip(" \"'\t");
  return position;
}

std::string_view tokenAt(std::string_view text, std::size_t position) {
  const std::size_t begin = position;
  const auto isPart = [](char byte) {
    return isWordByte(byte) || std::string_view("._/-").find(byte) != std::string::npos;
  };
  while (position < text.size() && isPart(text[position])) ++position;
  while (position > begin && !isWordByte(text[position - 1])) --position;
  return text.substr(begin, position - begin);
}

bool looksLikeSerial(std::string_view token) {
  return token.size() >= kShortestSerial && std::any_of(token.begin(), token.end(), isDigit);
}

}  // namespace

const std::string& Secrets::nameFor(Kind kind, const std::string& key) {
  const auto known = m_names.find(key);
  if (known != m_names.end()) return known->second;
  static const std::string tooMany[] = {"serial-x", "host-x", "address-x"};
  const auto index = static_cast<std::size_t>(kind);
  if (m_counts[index] == kMostNames) return tooMany[index];
  const std::string name = std::string(kKindNames[index]) + "-" + std::to_string(++m_counts[index]);
  return m_names.emplace(key, name).first->second;
}

/// Known from then on without anything between its digits, too. Empty where the value is none.
std::string Secrets::learnAddress(const std::string& small) {
  Match match = prefixedAddressAt(small, 0);
  if (match.length == 0) match = addressAt(small, 0);
  if (match.length == 0 || match.length != small.size()) return {};
  std::string digits = small.substr(small.find_last_of(".x") + 1);
  digits.erase(std::remove_if(digits.begin(), digits.end(), [](char b) { return !isHexDigit(b); }),
               digits.end());
  const bool isKept = m_names.count("address " + digits) != 0;
  if (isKept && m_names.emplace(digits, match.replacement).second) lookFor(digits);
  return match.replacement;
}

void Secrets::lookFor(const std::string& small) {
  auto& values = m_byFirst[static_cast<unsigned char>(small.front())];
  const auto isShorter = [&](const std::string& other) { return other.size() < small.size(); };
  values.insert(std::find_if(values.begin(), values.end(), isShorter), small);
}

std::string Secrets::replace(Kind kind, const std::string& value) {
  const std::string small = foldedText(value);
  if (tellsNothing(small) || (kind == Kind::kSerial && isFilled(small))) return value;
  const std::string address = learnAddress(small);
  if (!address.empty()) return address;
  const bool isNew = m_names.count(small) == 0;
  const std::string name = nameFor(kind, small);
  const bool isKept = m_names.count(small) != 0;
  const bool isLookedFor = kind == Kind::kHost || small.size() >= kShortestSerial;
  if (isNew && isKept && isLookedFor) {
    if (kind == Kind::kHost && isEverydayName(small)) m_everyday.insert(small);
    lookFor(small);
  }
  return name;
}

Secrets::Match Secrets::knownAt(std::string_view text, std::size_t position) const {
  const auto first = static_cast<unsigned char>(folded(text[position]));
  for (const std::string& value : m_byFirst[first]) {
    if (hasAt(text, position, value) && isBorder(text, position + value.size()) &&
        (m_everyday.count(value) == 0 || announcesHost(text, position))) {
      return {value.size(), m_names.at(value)};
    }
  }
  return {};
}

/// By its digits alone: it is the same address however it is written.
Secrets::Match Secrets::addressAt(std::string_view text, std::size_t position) {
  if (position > 1 && (text[position - 1] == ':' || text[position - 1] == '-') &&
      isHexDigit(text[position - 2])) {
    return {};
  }
  const Pairs pairs = pairsAt(text, position);
  if (pairs.count != 6 && pairs.count != 8 && pairs.count != 20) return {};
  if (!isBorder(text, position + pairs.length)) return {};
  std::string digits = "address ";
  for (const char byte : text.substr(position, pairs.length)) {
    if (isHexDigit(byte)) digits += folded(byte);
  }
  return {pairs.length, nameFor(Kind::kAddress, digits)};
}

Secrets::Match Secrets::prefixedAddressAt(std::string_view text, std::size_t position) {
  constexpr std::size_t kFewestDigits = 16;
  for (const std::string_view prefix : {"naa.", "eui.", "wwn-0x"}) {
    if (!hasAt(text, position, prefix)) continue;
    const std::size_t digits = countHex(text, position + prefix.size());
    if (digits < kFewestDigits) continue;
    const std::string_view number = text.substr(position + prefix.size(), digits);
    return {prefix.size() + digits, nameFor(Kind::kAddress, "address " + foldedText(number))};
  }
  return {};
}

void Secrets::learnLabelled(std::string_view text) {
  constexpr std::string_view kLabels[] = {"serial", "s/n", "sn"};
  for (std::size_t position = 0; position < text.size(); ++position) {
    if (folded(text[position]) != 's') continue;
    for (const std::string_view label : kLabels) {
      if (!hasAt(text, position, label)) continue;
      if (label != "serial" && !isBorder(text, position)) continue;
      const std::size_t value = behindLabel(text, position + label.size());
      if (value == 0) continue;
      const std::string_view token = tokenAt(text, value);
      if (looksLikeSerial(token)) replace(Kind::kSerial, std::string(token));
    }
  }
}

std::string Secrets::redact(std::string_view text) {
  learnLabelled(text);
  std::string safe;
  safe.reserve(text.size());
  for (std::size_t position = 0; position < text.size();) {
    Match match;
    if (isBorder(text, position)) {
      match = knownAt(text, position);
      if (match.length == 0) match = prefixedAddressAt(text, position);
      if (match.length == 0 && isHexDigit(text[position])) match = addressAt(text, position);
    }
    if (match.length == 0) {
      safe += text[position++];
    } else {
      safe += match.replacement;
      position += match.length;
    }
  }
  return safe;
}

}  // namespace reports
