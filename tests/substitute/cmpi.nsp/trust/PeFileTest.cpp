#include <gtest/gtest.h>

#include "substitute/cmpi.nsp/trust/PeFile.h"
#include "tests/substitute/cmpi.nsp/trust/PeBuilder.h"

namespace cmpinsp {
namespace {

using Names = std::vector<std::string>;

PeFile read(const std::string& content) { return readPe(*bytesOf(content)); }

TEST(PeFile, SaysWhatTheLibraryNeedsAtOnceAndLater) {
  const PeFile file = read(PeBuilder{{"B.dll", "a.dll"}, {"c.DLL"}}.bytes());
  EXPECT_EQ(file.kind, LibraryKind::kUsable) << file.fault;
  EXPECT_EQ(file.needed, (Names{"B.dll", "a.dll"}));
  EXPECT_EQ(file.delayed, Names{"c.DLL"});
}

TEST(PeFile, OfAnotherMachineIsForeignAndAnythingElseNone) {
  PeBuilder other;
  other.machine = 0x14C;
  const struct {
    const char* what;
    std::string content;
    LibraryKind wanted;
  } rows[] = {
      {"another processor", other.bytes(), LibraryKind::kForeign},
      {"empty", "", LibraryKind::kNone},
      {"text", "MZ", LibraryKind::kNone},
      {"no header", PeBuilder{}.bytes().substr(0, PeBuilder::kOptional - 1), LibraryKind::kNone}};
  for (const auto& row : rows) EXPECT_EQ(read(row.content).kind, row.wanted) << row.what;
}

TEST(PeFile, WhatCannotBeReadIsDamage) {
  const std::string good = PeBuilder{{"a.dll"}}.bytes();
  const auto with = [&](std::size_t offset, std::uint64_t value, std::size_t length) {
    return std::string(good).replace(offset, length, PeBuilder::number(value, length));
  };
  const struct {
    const char* what;
    std::string content;
    const char* wanted;
  } rows[] = {{"too many sections", with(PeBuilder::kHeader + 6, 0xFFFF, 2), "sections"},
              {"header cut off", good.substr(0, PeBuilder::kOptional + 2), "sections"},
              {"imports at no address", with(PeBuilder::kOptional + 120, 0x99, 4), "address"},
              {"name at no address", with(PeBuilder::kContent + 12, 0x99, 4), "address"},
              {"no end", good.substr(0, PeBuilder::kContent + 24), "end"},
              {"name without an end", good.substr(0, good.size() - 1), "end"}};
  for (const auto& row : rows) {
    const PeFile file = read(row.content);
    EXPECT_EQ(file.kind, LibraryKind::kDamaged) << row.what;
    EXPECT_NE(file.fault.find(row.wanted), std::string::npos) << row.what << ": " << file.fault;
  }
}

}  // namespace
}  // namespace cmpinsp
