#include "substitute/cmpi.nsp/repository/SourceText.h"

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

#include "substitute/cmpi.nsp/installation/SystemMessage.h"

namespace cmpinsp {

namespace {

unsigned byteAt(const std::string& bytes, std::size_t at) {
  return static_cast<unsigned char>(bytes[at]);
}

bool startsWith(const std::string& bytes, const char* mark, std::size_t length) {
  return bytes.compare(0, length, mark, length) == 0;
}

/// The length of the valid UTF-8 sequence at `at`, or 0.
std::size_t sequenceLength(const std::string& bytes, std::size_t at) {
  const unsigned lead = byteAt(bytes, at);
  if (lead < 0x80) return 1;
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC2 ? 2 : 0;
  if (length == 0 || lead > 0xF4 || at + length > bytes.size()) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byteAt(bytes, at + i) & 0xC0) != 0x80) return 0;
  }
  const unsigned second = byteAt(bytes, at + 1);
  const bool overlong = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
  const bool outside = (lead == 0xED && second > 0x9F) || (lead == 0xF4 && second > 0x8F);
  return overlong || outside ? 0 : length;
}

bool isUtf8(const std::string& bytes) {
  for (std::size_t at = 0; at < bytes.size();) {
    const std::size_t length = sequenceLength(bytes, at);
    if (length == 0) return false;
    at += length;
  }
  return true;
}

std::string fromLatin1(const std::string& bytes) {
  std::string text;
  text.reserve(bytes.size() + bytes.size() / 8);
  for (const char byte : bytes) appendUtf8(text, static_cast<unsigned char>(byte));
  return text;
}

std::string fromUtf16(const std::string& bytes, bool bigEndian) {
  const auto unitAt = [&](std::size_t at) -> unsigned long {
    const unsigned first = byteAt(bytes, at);
    const unsigned second = byteAt(bytes, at + 1);
    return bigEndian ? first * 256UL + second : second * 256UL + first;
  };
  std::string text;
  for (std::size_t at = 2; at + 1 < bytes.size(); at += 2) {
    unsigned long unit = unitAt(at);
    if (unit >= 0xD800 && unit < 0xDC00 && at + 3 < bytes.size()) {
      const unsigned long low = unitAt(at + 2);
      if (low >= 0xDC00 && low < 0xE000) {
        unit = 0x10000 + (unit - 0xD800) * 0x400 + (low - 0xDC00);
        at += 2;
      }
    }
    appendUtf8(text, unit);
  }
  return text;
}

}  // namespace

void appendUtf8(std::string& text, unsigned long codePoint) {
  const auto push = [&](unsigned long byte) { text.push_back(static_cast<char>(byte)); };
  if ((codePoint >= 0xD800 && codePoint < 0xE000) || codePoint > 0x10FFFF) codePoint = 0xFFFD;
  if (codePoint < 0x80) {
    push(codePoint);
  } else if (codePoint < 0x800) {
    push(0xC0 | (codePoint >> 6));
    push(0x80 | (codePoint & 0x3F));
  } else if (codePoint < 0x10000) {
    push(0xE0 | (codePoint >> 12));
    push(0x80 | ((codePoint >> 6) & 0x3F));
    push(0x80 | (codePoint & 0x3F));
  } else {
    push(0xF0 | (codePoint >> 18));
    push(0x80 | ((codePoint >> 12) & 0x3F));
    push(0x80 | ((codePoint >> 6) & 0x3F));
    push(0x80 | (codePoint & 0x3F));
  }
}

std::string decodeSourceText(std::string bytes) {
  if (startsWith(bytes, "\xEF\xBB\xBF", 3)) bytes.erase(0, 3);
  if (startsWith(bytes, "\xFF\xFE", 2)) return fromUtf16(bytes, false);
  if (startsWith(bytes, "\xFE\xFF", 2)) return fromUtf16(bytes, true);
  return isUtf8(bytes) ? std::move(bytes) : fromLatin1(bytes);
}

std::string readSourceText(const std::string& path) {
  const std::filesystem::path file = std::filesystem::u8path(path);
  std::error_code error;
  const auto size = std::filesystem::file_size(file, error);
  if (error) throw SourceError(systemMessage(error));
  if (size > kLargestSourceFile) throw SourceError("the file is too large");
  std::ifstream stream(file, std::ios::binary);
  if (!stream) throw SourceError("the file cannot be opened");
  std::string bytes(static_cast<std::size_t>(size), '\0');
  stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  bytes.resize(static_cast<std::size_t>(stream.gcount()));
  return decodeSourceText(std::move(bytes));
}

}  // namespace cmpinsp
