#include <gtest/gtest.h>

#include <initializer_list>
#include <vector>

#include "substitute/vorcore/system/FirmwareTexts.h"

namespace vorcore {
namespace {

using Bytes = std::vector<unsigned char>;

/// One structure: a formatted area of `formattedSize` bytes whose byte 5 names the text `number`.
Bytes structure(unsigned char type, unsigned char number,
                std::initializer_list<const char*> strings, unsigned char formattedSize = 8) {
  Bytes bytes(formattedSize, 0);
  bytes[0] = type;
  bytes[1] = formattedSize;
  if (formattedSize > 5) bytes[5] = number;
  for (const char* text : strings) {
    for (; *text != '\0'; ++text) bytes.push_back(static_cast<unsigned char>(*text));
    bytes.push_back(0);
  }
  if (strings.size() == 0) bytes.push_back(0);
  bytes.push_back(0);
  return bytes;
}

Bytes join(std::initializer_list<Bytes> parts) {
  Bytes all;
  for (const Bytes& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

FirmwareTexts read(const Bytes& table) { return readSmbios(table.data(), table.size()); }

Bytes wholeTable() {
  return join({structure(0, 2, {"Maker", "ABE125 Ver. 01.30"}), structure(1, 1, {"Product"}),
               structure(2, 2, {"Maker", "Board"}), structure(127, 0, {})});
}

TEST(ReadSmbios, FindsTheTextsOfTheThreeStructures) {
  const FirmwareTexts texts = read(wholeTable());
  EXPECT_EQ(texts.biosVersion, "ABE125 Ver. 01.30");
  EXPECT_EQ(texts.productName, "Product");
  EXPECT_EQ(texts.boardProduct, "Board");
}

TEST(ReadSmbios, ATableCutOffAnywhereIsReadAsFarAsItsWholeStructures) {
  const Bytes table = wholeTable();
  const std::size_t firstSize = structure(0, 2, {"Maker", "ABE125 Ver. 01.30"}).size();
  for (std::size_t size = 0; size < table.size(); ++size) {
    const Bytes cut(table.begin(), table.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_EQ(read(cut).biosVersion, size < firstSize ? "" : "ABE125 Ver. 01.30") << size;
  }
}

TEST(ReadSmbios, TextNumbersWithoutATextGiveNothing) {
  EXPECT_EQ(read(structure(0, 0, {"Maker"})).biosVersion, "");
  EXPECT_EQ(read(structure(0, 2, {"Maker"})).biosVersion, "");
  EXPECT_EQ(read(structure(0, 255, {"Maker"})).biosVersion, "");
  EXPECT_EQ(read(structure(0, 1, {})).biosVersion, "");
  EXPECT_EQ(read(structure(0, 1, {"Maker"}, 5)).biosVersion, "");
}

TEST(ReadSmbios, AnImpossibleLengthEndsTheReading) {
  Bytes tooShort = structure(0, 1, {"V"});
  tooShort[1] = 3;
  EXPECT_EQ(read(tooShort).biosVersion, "");
  Bytes tooLong = structure(0, 1, {"V"});
  tooLong[1] = 255;
  EXPECT_EQ(read(tooLong).biosVersion, "");
}

TEST(ReadSmbios, NothingIsReadBehindTheEndStructureAndTheFirstOfAKindCounts) {
  EXPECT_EQ(read(join({structure(127, 0, {}), structure(0, 1, {"V"})})).biosVersion, "");
  EXPECT_EQ(read(join({structure(2, 1, {"one"}), structure(2, 1, {"two"})})).boardProduct, "one");
}

TEST(FirmwareIdentifier, IsTheFirstTextThatSaysSomething) {
  const std::vector<std::pair<FirmwareTexts, const char*>> rows = {
      {{"", "", ""}, ""},
      {{"ABE125 Ver. 01.30", "Board", "Product"}, "ABE125"},
      {{" KO\n", "Board", "Product"}, "KO"},
      {{"1.14.0", "Board", "Product"}, "1.14.0"},
      {{"Default string", "Board 9", "Product"}, "Board 9"},
      {{"", " ", "Product 7"}, "Product 7"},
      {{"", "To be filled by O.E.M.", "NOT SPECIFIED"}, ""},
  };
  for (const auto& row : rows) EXPECT_EQ(firmwareIdentifier(row.first), row.second);
}

}  // namespace
}  // namespace vorcore
