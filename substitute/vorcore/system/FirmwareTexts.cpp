#include "substitute/vorcore/system/FirmwareTexts.h"

#include <algorithm>
#include <array>

#include "substitute/vorcore/values/ClassDeclaration.h"

namespace vorcore {
namespace {

constexpr unsigned char kBiosType = 0;
constexpr unsigned char kSystemType = 1;
constexpr unsigned char kBoardType = 2;
constexpr unsigned char kEndType = 127;
constexpr std::size_t kHeaderSize = 4;
constexpr std::size_t kVersionOffset = 5;  // alike in all three types

std::string trimmed(const std::string& text) {
  const char* const kBlanks = " \t\r\n";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string::npos) return std::string();
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool isFiller(const std::string& text) {
  static const std::array<std::string, 8> kFillers = {
      "default string",         "none",   "not specified",
      "not applicable",         "o.e.m.", "system product name",
      "to be filled by o.e.m.", "unknown"};
  return text.empty() ||
         std::any_of(kFillers.begin(), kFillers.end(),
                     [&](const std::string& filler) { return equalNames(text, filler); });
}

/// One structure: its formatted area and, behind it, its texts.
struct Structure {
  const unsigned char* data;
  std::size_t formattedSize;
  const unsigned char* end;  ///< behind the two zero bytes that close the texts

  /// The text whose number, counted from 1, stands at `offset`; empty where there is none.
  std::string textAt(std::size_t offset) const {
    if (offset >= formattedSize) return std::string();
    unsigned int number = data[offset];
    if (number == 0) return std::string();
    const unsigned char* text = data + formattedSize;
    while (text != end) {
      const unsigned char* const textEnd = std::find(text, end, 0);
      if (textEnd == text || textEnd == end) break;
      if (--number == 0) return trimmed(std::string(text, textEnd));
      text = textEnd + 1;
    }
    return std::string();
  }
};

/// Reads the structure at `data`; false when it does not fit before `end`.
bool readStructure(const unsigned char* data, const unsigned char* end, Structure& structure) {
  const auto left = static_cast<std::size_t>(end - data);
  if (left < kHeaderSize) return false;
  const std::size_t formattedSize = data[1];
  if (formattedSize < kHeaderSize || formattedSize > left) return false;
  const std::array<unsigned char, 2> close = {0, 0};
  const unsigned char* const found =
      std::search(data + formattedSize, end, close.begin(), close.end());
  if (found == end) return false;
  structure = {data, formattedSize, found + close.size()};
  return true;
}

void keepFirst(std::string& text, const std::string& candidate) {
  if (text.empty()) text = candidate;
}

}  // namespace

std::string firmwareIdentifier(const FirmwareTexts& texts) {
  const std::string version = trimmed(texts.biosVersion);
  if (!isFiller(version)) return version.substr(0, version.find_first_of(" \t"));
  for (const std::string& text : {trimmed(texts.boardProduct), trimmed(texts.productName)}) {
    if (!isFiller(text)) return text;
  }
  return std::string();
}

FirmwareTexts readSmbios(const unsigned char* table, std::size_t size) {
  FirmwareTexts texts;
  const unsigned char* const end = table + size;
  Structure structure{};
  for (; readStructure(table, end, structure); table = structure.end) {
    const unsigned char type = structure.data[0];
    if (type == kEndType) break;
    const std::string text = structure.textAt(kVersionOffset);
    if (type == kBiosType) keepFirst(texts.biosVersion, text);
    if (type == kSystemType) keepFirst(texts.productName, text);
    if (type == kBoardType) keepFirst(texts.boardProduct, text);
  }
  return texts;
}

}  // namespace vorcore
