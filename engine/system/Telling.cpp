#include "engine/system/Telling.h"

#include <algorithm>

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

}  // namespace engine
