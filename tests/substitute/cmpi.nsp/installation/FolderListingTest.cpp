#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "substitute/cmpi.nsp/installation/FolderListing.h"
#include "tests/substitute/cmpi.nsp/TemporaryFolder.h"

namespace cmpinsp {
namespace {

namespace fs = std::filesystem;
using Kind = FolderEntry::Kind;

TEST(FolderListing, HasWhatIsInTheFolderInTheOrderOfNames) {
  const TemporaryFolder folder;
  folder.write("b.mof", "");
  folder.write("a/inside.mof", "");
  folder.write("B.mof.txt", "");
  const FolderListing listing = listFolder(folder.path().u8string());
  EXPECT_FALSE(listing.error());
  ASSERT_EQ(listing.entries().size(), 3u);
  EXPECT_EQ(listing.entries()[0].name, "B.mof.txt");
  EXPECT_EQ(listing.entries()[1].name, "a");
  EXPECT_EQ(listing.entries()[1].kind, Kind::eFolder);
  EXPECT_EQ(listing.entries()[2].name, "b.mof");
  EXPECT_EQ(listing.entries()[2].kind, Kind::eFile);
}

TEST(FolderListing, KeepsTheNamesOfManyFiles) {
  const TemporaryFolder folder;
  std::vector<std::string> names;
  for (int i = 100; i < 300; ++i) {
    names.push_back(std::string(150, 'n') + std::to_string(i));
    folder.write(names.back(), "");
  }
  std::vector<std::string> listed;
  const FolderListing listing = listFolder(folder.path().u8string());
  for (const FolderEntry& entry : listing.entries()) listed.emplace_back(entry.name);
  EXPECT_EQ(listed, names);
}

TEST(FolderListing, AMissingFolderIsAnErrorAndEmpty) {
  const TemporaryFolder folder;
  const FolderListing listing = listFolder((folder.path() / "none").u8string());
  EXPECT_EQ(listing.error(), std::errc::no_such_file_or_directory);
  EXPECT_TRUE(listing.entries().empty());
}

#if !defined(_WIN32)

TEST(FolderListing, ALinkIsALinkWhereverItLeads) {
  const TemporaryFolder folder;
  fs::create_directory_symlink(folder.path(), folder.path() / "round");
  fs::create_symlink("nowhere", folder.path() / "lost");
  const FolderListing listing = listFolder(folder.path().u8string());
  ASSERT_EQ(listing.entries().size(), 2u);
  for (const FolderEntry& entry : listing.entries()) EXPECT_EQ(entry.kind, Kind::eLink);
}

#endif

TEST(PathIn, PutsOneSeparatorBetween) {
  const std::string separator(1, static_cast<char>(fs::path::preferred_separator));
  EXPECT_EQ(pathIn("a", "b"), "a" + separator + "b");
  EXPECT_EQ(pathIn("a/", "b"), "a/b");
  EXPECT_EQ(pathIn("", "b"), "b");
}

TEST(HasEnding, NeedsMoreThanTheEndingAndNoCase) {
  EXPECT_TRUE(hasEnding("a.MoF", ".mof"));
  EXPECT_FALSE(hasEnding(".mof", ".mof"));
  EXPECT_FALSE(hasEnding("a.mof ", ".mof"));
  EXPECT_FALSE(hasEnding("a[mof", ".mof"));
  EXPECT_FALSE(hasEnding("", ".mof"));
}

}  // namespace
}  // namespace cmpinsp
