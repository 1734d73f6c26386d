#include "substitute/kfrxmlparser/SingleByteEncodings.h"

#include <array>
#include <cstddef>

namespace kfrxmlparser {
namespace {

/// A byte that stands for no character.
constexpr int kNoCharacter = -1;

/// What the bytes 0x80 to 0x9F mean in windows-1252; all others are as in ISO 8859-1.
constexpr std::array<int, 32> kWindows1252 = {
    0x20AC,       kNoCharacter, 0x201A, 0x0192, 0x201E, 0x2026,       0x2020, 0x2021,
    0x02C6,       0x2030,       0x0160, 0x2039, 0x0152, kNoCharacter, 0x017D, kNoCharacter,
    kNoCharacter, 0x2018,       0x2019, 0x201C, 0x201D, 0x2022,       0x2013, 0x2014,
    0x02DC,       0x2122,       0x0161, 0x203A, 0x0153, kNoCharacter, 0x017E, 0x0178};

bool isNamed(const char* name, const char* wanted) {
  for (; *name != '\0' && *wanted != '\0'; ++name, ++wanted) {
    const bool isUpper = *name >= 'A' && *name <= 'Z';
    if ((isUpper ? *name - 'A' + 'a' : *name) != *wanted) return false;
  }
  return *name == *wanted;
}

void fillLatin1(XML_Encoding& encoding) {
  for (int byte = 0; byte < 256; ++byte) encoding.map[byte] = byte;
  encoding.data = nullptr;
  encoding.convert = nullptr;
  encoding.release = nullptr;
}

void fillWindows1252(XML_Encoding& encoding) {
  fillLatin1(encoding);
  for (std::size_t byte = 0; byte < kWindows1252.size(); ++byte) {
    encoding.map[0x80 + byte] = kWindows1252[byte];
  }
}

void fillLatin9(XML_Encoding& encoding) {
  fillLatin1(encoding);
  encoding.map[0xA4] = 0x20AC;
  encoding.map[0xA6] = 0x0160;
  encoding.map[0xA8] = 0x0161;
  encoding.map[0xB4] = 0x017D;
  encoding.map[0xB8] = 0x017E;
  encoding.map[0xBC] = 0x0152;
  encoding.map[0xBD] = 0x0153;
  encoding.map[0xBE] = 0x0178;
}

}  // namespace

bool describeEncoding(const char* name, XML_Encoding& encoding) noexcept {
  if (isNamed(name, "windows-1252") || isNamed(name, "cp1252")) {
    fillWindows1252(encoding);
    return true;
  }
  if (isNamed(name, "iso-8859-15") || isNamed(name, "latin-9")) {
    fillLatin9(encoding);
    return true;
  }
  return false;
}

}  // namespace kfrxmlparser
