#include <gtest/gtest.h>

#include "substitute/cmpi.nsp/trust/ElfFile.h"
#include "tests/substitute/cmpi.nsp/TemporaryFolder.h"
#include "tests/substitute/cmpi.nsp/trust/ElfBuilder.h"

namespace cmpinsp {
namespace {

using Names = std::vector<std::string>;

ElfFile read(const std::string& content) { return readElf(*bytesOf(content)); }

TEST(ElfFile, SaysWhatTheLibraryNeedsInItsOrder) {
  const ElfFile file = read(ElfBuilder{{"libb.so", "liba.so.1", "/x/libc.so"}}.bytes());
  EXPECT_EQ(file.kind, LibraryKind::kUsable);
  EXPECT_EQ(file.needed, (Names{"libb.so", "liba.so.1", "/x/libc.so"}));
}

TEST(ElfFile, SaysItsOwnNameAndNothingThatIsNotThere) {
  ElfBuilder builder;
  builder.name = "libx.so.1";
  const ElfFile file = read(builder.bytes());
  EXPECT_EQ(file.name, "libx.so.1");
  EXPECT_EQ(file.needed, Names());
  EXPECT_FALSE(file.runPath || file.runPathOfAll || file.withoutDefaultFolders);
}

// Catches a filter that is loaded and was not looked at.
TEST(ElfFile, WhatItFiltersIsNeededAndWhatIsAuxiliaryMayBeMissing) {
  ElfBuilder builder;
  builder.filters = {"libf.so"};
  builder.auxiliary = {"liba.so"};
  EXPECT_EQ(read(builder.bytes()).needed, Names{"libf.so"});
  EXPECT_EQ(read(builder.bytes()).auxiliary, Names{"liba.so"});
}

TEST(ElfFile, TheNewerKindOfRunPathReplacesTheOlder) {
  ElfBuilder builder;
  builder.runPathOfAll = "/old";
  EXPECT_EQ(read(builder.bytes()).runPathOfAll, "/old");
  builder.runPath = "/new";
  EXPECT_EQ(read(builder.bytes()).runPath, "/new");
  EXPECT_FALSE(read(builder.bytes()).runPathOfAll);
  builder.runPath = "";
  EXPECT_EQ(read(builder.bytes()).runPath, "");
  EXPECT_FALSE(read(builder.bytes()).runPathOfAll);
}

TEST(ElfFile, OnlyItsOwnFlagKeepsTheDefaultFoldersOut) {
  ElfBuilder builder;
  builder.flags = ~std::uint64_t{0x800};
  EXPECT_FALSE(read(builder.bytes()).withoutDefaultFolders);
  builder.flags = 0x800;
  EXPECT_TRUE(read(builder.bytes()).withoutDefaultFolders);
}

TEST(ElfFile, OfAnotherMachineIsForeignAndAnythingElseNone) {
  ElfBuilder other;
  other.machine = 8;
  std::string narrow = ElfBuilder{}.bytes();
  narrow.at(4) = 1;
  std::string bigEndian = ElfBuilder{}.bytes();
  bigEndian.at(5) = 2;
  const struct {
    const char* what;
    std::string content;
    LibraryKind wanted;
  } rows[] = {{"another processor", other.bytes(), LibraryKind::kForeign},
              {"32 bits", narrow, LibraryKind::kForeign},
              {"big endian", bigEndian, LibraryKind::kForeign},
              {"empty", "", LibraryKind::kNone},
              {"text", "INPUT(-lx)", LibraryKind::kNone},
              {"shorter than a header", ElfBuilder{}.bytes().substr(0, 63), LibraryKind::kNone}};
  for (const auto& row : rows) EXPECT_EQ(read(row.content).kind, row.wanted) << row.what;
}

/// The bytes of a good one with a number in another place.
std::string with(std::size_t offset, std::uint64_t value, std::size_t length) {
  const ElfBuilder builder{{"liba.so"}};
  return builder.bytes().replace(offset, length, ElfBuilder::number(value, length));
}

// Catches a file whose needs are taken for none because they cannot be read.
TEST(ElfFile, WhatCannotBeReadIsDamage) {
  constexpr std::size_t kLoad = ElfBuilder::kHeader, kDynamicSegment = kLoad + ElfBuilder::kSegment;
  const std::string good = ElfBuilder{{"liba.so"}}.bytes();
  const struct {
    const char* what;
    std::string content;
    const char* wanted;
  } rows[] = {
      {"table behind the end", with(32, 1U << 20U, 8), "segments are not in the file"},
      {"table at the end of all numbers", with(32, ~0ULL, 8), "segments are not in the file"},
      {"too many segments", with(56, 0xFFFF, 2), "segments are not in the file"},
      {"size of a segment", with(54, 55, 2), "another size"},
      {"dynamic section at no address", with(kDynamicSegment + 16, 8, 8), "address"},
      {"dynamic section behind the end", with(kLoad + 8, 1U << 20U, 8), "address"},
      {"no end", good.substr(0, ElfBuilder::kDynamic + 32), "no end"},
      {"no texts", with(ElfBuilder::kDynamic + 16, 6, 8), "has no texts"},
      {"texts at no address", with(ElfBuilder::kDynamic + 24, ~0ULL, 8), "not in the file"},
      {"name behind the end", with(ElfBuilder::kDynamic + 8, 1U << 20U, 8), "address"},
      {"text without an end", good.substr(0, good.size() - 1), "too long"}};
  for (const auto& row : rows) {
    const ElfFile file = read(row.content);
    EXPECT_EQ(file.kind, LibraryKind::kDamaged) << row.what;
    EXPECT_NE(file.fault.find(row.wanted), std::string::npos) << row.what << ": " << file.fault;
    EXPECT_TRUE(file.needed.empty()) << row.what;
  }
}

TEST(ElfFile, MoreNamesThanAnyLibraryNeedsAreDamage) {
  EXPECT_EQ(read(ElfBuilder{Names(4096, "a")}.bytes()).needed.size(), 4096U);
  EXPECT_NE(read(ElfBuilder{Names(4097, "a")}.bytes()).fault.find("too many"), std::string::npos);
  const ElfBuilder longest{{std::string(4096, 'a')}};
  EXPECT_EQ(read(longest.bytes()).needed.at(0).size(), 4096U);
  const ElfBuilder longer{{std::string(4097, 'a')}};
  EXPECT_EQ(read(longer.bytes()).fault, "a text is too long");
}

// Catches a reader that goes by places in the file, which the loader does not.
TEST(ElfFile, WhereSegmentsOverlapTheLaterOneCounts) {
  std::string twice = ElfBuilder{{"liba.so"}}.bytes();
  // The second segment becomes one that maps other bytes to the addresses of the first.
  const std::string other(twice.size(), '\0');
  const std::size_t second = ElfBuilder::kHeader + ElfBuilder::kSegment;
  twice.replace(second, 4, ElfBuilder::number(1, 4));
  EXPECT_EQ(read(twice).needed, Names()) << "no dynamic section is left";
}

TEST(ElfFile, IsReadFromAFileAsFromBytes) {
  const TemporaryFolder folder;
  const Names many(600, std::string(100, 'n'));
  const std::string path = folder.write("libx.so", ElfBuilder{many}.bytes());
  EXPECT_EQ(readElf(*bytesOfFile(path)).needed, many);
  EXPECT_EQ(readElf(*bytesOfFile(path + "y")).kind, LibraryKind::kNone);
}

}  // namespace
}  // namespace cmpinsp
