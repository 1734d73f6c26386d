#include "substitute/cmpi.nsp/broker/text/Codepages.h"

#include <algorithm>
#include <cstring>

#include "substitute/cmpi.nsp/broker/lifetime/Failure.h"
#include "substitute/cmpi.nsp/broker/text/Text.h"

namespace cmpinsp::broker {
namespace {

void requireAscii(const std::string& text) {
  const bool isAscii = std::all_of(text.begin(), text.end(), [](char letter) {
    return static_cast<unsigned char>(letter) < 0x80;
  });
  if (!isAscii) throw Failure(CMPI_RC_ERR_NOT_IN_CODEPAGE, "the text is not in US-ASCII");
}

[[noreturn]] void unknownPage(int page) {
  throw Failure(CMPI_RC_ERR_NOT_SUPPORTED,
                "code page " + std::to_string(page) + " is not supported");
}

}  // namespace

std::string encode(const std::string& text, int page) {
  if (page == CMPI_CP_UTF16) {
    const std::u16string units = utf16Of(text);
    std::string bytes((units.size() + 1) * sizeof(char16_t), '\0');
    std::memcpy(bytes.data(), units.data(), units.size() * sizeof(char16_t));
    return bytes;
  }
  if (page == CMPI_CP_US_ASCII) {
    requireAscii(text);
  } else if (page != CMPI_CP_SYSTEM) {
    unknownPage(page);
  }
  return text + '\0';
}

std::string decode(const char* data, int page) {
  if (page == CMPI_CP_UTF16) {
    std::u16string units;
    for (char16_t unit = 0;; data += sizeof unit) {
      std::memcpy(&unit, data, sizeof unit);
      if (unit == 0) return utf8Of(units);
      units += unit;
    }
  }
  if (page == CMPI_CP_US_ASCII) {
    requireAscii(data);
  } else if (page != CMPI_CP_SYSTEM) {
    unknownPage(page);
  }
  return repaired(data);
}

}  // namespace cmpinsp::broker
