#include "engine/identity/Words.h"

#include <algorithm>
#include <array>

namespace engine {
namespace {

constexpr std::size_t kLongestWord = 256;

constexpr std::string_view kFillers[] = {"default string",
                                         "chassis serial number",
                                         "empty",
                                         "fill by oem",
                                         "n/a",
                                         "na",
                                         "no dimm",
                                         "none",
                                         "not applicable",
                                         "not available",
                                         "not provided",
                                         "not specified",
                                         "null",
                                         "o.e.m.",
                                         "oem",
                                         "serial number",
                                         "serialnum",
                                         "sernum",
                                         "system manufacturer",
                                         "system product name",
                                         "system serial number",
                                         "system version",
                                         "to be filled by o.e.m.",
                                         "undefined",
                                         "unknown",
                                         "unspecified",
                                         "0123456789",
                                         "123456789"};

char folded(char byte) {
  return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

bool isFiller(std::string_view text) {
  return std::any_of(std::begin(kFillers), std::end(kFillers), [text](std::string_view filler) {
    return std::equal(text.begin(), text.end(), filler.begin(), filler.end(),
                      [](char one, char other) { return folded(one) == other; });
  });
}

/// The text, or as much of its beginning as is not too long, without half a character of UTF-8.
std::string_view cut(std::string_view text) {
  if (text.size() <= kLongestWord) return text;
  std::size_t end = kLongestWord;
  while (end > kLongestWord - 4 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
  return text.substr(0, end);
}

std::string withTenths(std::uint64_t tenths) {
  const std::string whole = std::to_string(tenths / 10);
  return tenths % 10 == 0 ? whole : whole + "." + std::to_string(tenths % 10);
}

}  // namespace

std::string telling(std::string_view text) {
  constexpr std::string_view kBlanks(" \t\r\n\0", 5);
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  text = text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
  return isFiller(text) ? std::string() : std::string(cut(text));
}

std::string tellingSerial(std::string_view text) {
  std::string serial = telling(text);
  if (serial.find_first_not_of(serial.substr(0, 1)) == std::string::npos) serial.clear();
  return serial;
}

std::string joined(std::initializer_list<std::string> texts, std::string_view between) {
  std::string all;
  for (const std::string& text : texts) {
    if (text.empty()) continue;
    if (!all.empty()) all += between;
    all += text;
  }
  return all;
}

std::string memorySize(std::uint64_t bytes) {
  constexpr std::array<const char*, 4> kUnits = {" KiB", " MiB", " GiB", " TiB"};
  std::uint64_t count = bytes / 1024;
  std::size_t unit = 0;
  for (; count >= 1024 && count % 1024 == 0 && unit + 1 < kUnits.size(); ++unit) count /= 1024;
  return count == 0 ? std::string() : std::to_string(count) + kUnits[unit];
}

std::string diskSize(std::uint64_t bytes) {
  constexpr std::uint64_t kMega = 1'000'000;
  constexpr std::uint64_t kGiga = 1000 * kMega;
  constexpr std::uint64_t kTera = 1000 * kGiga;
  if (bytes == 0) return {};
  if (bytes < kGiga) return std::to_string(std::max<std::uint64_t>(bytes / kMega, 1)) + " MB";
  if (bytes < kTera) return std::to_string(bytes / kGiga) + " GB";
  return withTenths(bytes / (kTera / 10)) + " TB";
}

std::string counted(std::uint64_t count, const std::string& what) {
  if (count == 0) return {};
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

}  // namespace engine
