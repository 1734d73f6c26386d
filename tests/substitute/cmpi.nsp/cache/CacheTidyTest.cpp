#include <gtest/gtest.h>

#include <set>

#include "substitute/cmpi.nsp/cache/CacheTidy.h"
#include "substitute/cmpi.nsp/cache/InstalledSchema.h"
#include "tests/substitute/cmpi.nsp/OthersWrite.h"
#include "tests/substitute/cmpi.nsp/TemporaryFolder.h"

namespace cmpinsp {
namespace {

namespace fs = std::filesystem;
using Names = std::set<std::string>;

struct CacheTidyTest : testing::Test {
  /// Writes a file of `size` bytes beside the caches, as old as that.
  void leave(const std::string& name, std::chrono::minutes age, std::size_t size = 1) const {
    const std::string file = folder.write("cache/" + name, std::string(size, 'x'));
    fs::last_write_time(fs::u8path(file), fs::file_time_type::clock::now() - age);
  }
  /// Starts on the installation `name`, which is made if need be.
  void start(const std::string& name) const {
    const std::string schema = name + "/schema/a.mof";
    if (!fs::exists(folder.path() / schema)) folder.write(schema, "class T_A {};");
    const std::string root = (folder.path() / name).u8string();
    readInstalledSchema({root + "/schema", root + "/providers"}, cacheOf(name));
  }
  std::string cacheOf(const std::string& name) const {
    return cacheFileFor((folder.path() / name).u8string(), (folder.path() / "cache").u8string());
  }
  std::string nameOf(const std::string& installation) const {
    return fs::u8path(cacheOf(installation)).filename().u8string();
  }
  Names left() const {
    Names names;
    for (const auto& entry : fs::directory_iterator(folder.path() / "cache")) {
      names.insert(entry.path().filename().u8string());
    }
    return names;
  }

  TemporaryFolder folder;
};

constexpr std::chrono::minutes kYoung{5};
constexpr std::chrono::minutes kOld{90};

TEST_F(CacheTidyTest, AKilledStartsFileGoesWithALaterStart) {
  leave("schema-12ab.cache.345.tmp", kOld);
  leave("schema-12ab.cache.678.tmp", kYoung);
  start("one");
  EXPECT_EQ(left(), (Names{nameOf("one"), "schema-12ab.cache.678.tmp"}));
}

TEST_F(CacheTidyTest, AStartThatTakesItsCacheTidiesUpToo) {
  start("one");
  leave("schema-12ab.cache.345.tmp", kOld);
  start("one");
  EXPECT_EQ(left(), Names{nameOf("one")});
}

TEST_F(CacheTidyTest, TheCacheOfAnInstallationThatIsGoneGoes) {
  start("one");
  start("two");
  start("three");
  fs::remove_all(folder.path() / "two");
  start("one");
  EXPECT_EQ(left(), (Names{nameOf("one"), nameOf("three")}));
}

// A folder full of others' caches must not cost every start the time to look at them.
TEST_F(CacheTidyTest, AStartThatTakesItsCacheLooksAtTheFirstFewOnly) {
  start("one");
  Names others;
  for (char letter = 'a'; letter <= 'f'; ++letter) {
    for (const char* const digit : {"1", "2", "3"}) {
      others.insert(std::string("schema-0") + letter + digit + ".cache.1.tmp");
    }
  }
  ASSERT_GT(others.size(), kPassingBy.mostFiles);
  for (const std::string& name : others) leave(name, kOld);
  start("one");
  EXPECT_EQ(left(), (Names{nameOf("one"), "schema-0f2.cache.1.tmp", "schema-0f3.cache.1.tmp"}));
  start("two");
  EXPECT_EQ(left(), (Names{nameOf("one"), nameOf("two")}));
}

TEST_F(CacheTidyTest, WhatIsNoCacheStaysHoweverOldItIs) {
  const Names others{"schema-.cache",       "schema-12.cache.tmp",      "schema-12.cache.a.tmp",
                     "schema-12.cache.1.t", "schema-1g.cache.1.tmp",    "xschema-12.cache.1.tmp",
                     "notes.txt",           "schema-12.cache.1.tmp.bak"};
  for (const std::string& name : others) leave(name, kOld);
  tidyCaches(cacheOf("one"), {0, std::chrono::hours(0)});
  EXPECT_EQ(left(), others);
}

TEST_F(CacheTidyTest, WhereTheyAreTooLargeTheOldestGoFirstAndItsOwnNever) {
  leave(nameOf("one"), 5 * kOld, 100);
  leave("schema-1.cache", 4 * kOld, 100);
  leave("schema-2.cache", 3 * kOld, 100);
  leave("schema-3.cache", 2 * kOld, 100);
  tidyCaches(cacheOf("one"), {300, std::chrono::hours(1)});
  EXPECT_EQ(left(), (Names{nameOf("one"), "schema-2.cache", "schema-3.cache"}));
  tidyCaches(cacheOf("one"), {299, std::chrono::hours(1)});
  EXPECT_EQ(left(), (Names{nameOf("one"), "schema-3.cache"}));
  tidyCaches(cacheOf("one"), {0, std::chrono::hours(1)});
  EXPECT_EQ(left(), Names{nameOf("one")});
}

// Catches another's file removed, or one whose content nobody can tell.
TEST_F(CacheTidyTest, ACacheThatCannotBeReadIsNoReasonToRemoveIt) {
  leave("schema-1.cache", kOld, 100);
  start("one");
  EXPECT_EQ(left(), (Names{nameOf("one"), "schema-1.cache"}));
}

TEST_F(CacheTidyTest, WhereOthersCanWriteNothingIsRemoved) {
  leave("schema-12ab.cache.345.tmp", kOld);
  letOthersWrite(folder.path() / "cache");
  tidyCaches(cacheOf("one"));
  EXPECT_EQ(left(), Names{"schema-12ab.cache.345.tmp"});
}

TEST_F(CacheTidyTest, WithoutAFolderThereIsNothingToDo) {
  tidyCaches((folder.path() / "nowhere" / "c").u8string());
  EXPECT_FALSE(fs::exists(folder.path() / "nowhere"));
}

}  // namespace
}  // namespace cmpinsp
