#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "substitute/cmpi.nsp/trust/ElfNeeds.h"
#include "tests/substitute/cmpi.nsp/OthersWrite.h"
#include "tests/substitute/cmpi.nsp/TemporaryFolder.h"
#include "tests/substitute/cmpi.nsp/trust/ElfBuilder.h"

namespace cmpinsp {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

/// A machine of which everything lies in a scratch folder.
struct ElfNeedsTest : testing::Test {
  ElfNeedsTest() {
    view.isLoaded = [this](const std::string& name) {
      return std::find(loaded.begin(), loaded.end(), name) != loaded.end();
    };
    view.cached = [this](const std::string& name) {
      Names files;
      for (const std::string& file : cached)
        if (fs::path(file).filename() == name) files.push_back(file);
      return files;
    };
    view.defaultFolders = {at("lib")};
    view.platforms = {"p64"};
    fs::create_directory(at("lib"));
  }

  std::string at(const std::string& path) const { return (folder.path() / path).string(); }
  std::string write(const std::string& path, const ElfBuilder& builder) const {
    return folder.write(path, builder.bytes());
  }
  /// Why a provider of that content is refused.
  std::string refusalOf(const ElfBuilder& provider) const {
    PathRights rights;
    return ElfNeeds(rights, view).refusalOf(write("providers/libx.so", provider));
  }
  /// A library in which others can write.
  std::string writable(const std::string& path, const ElfBuilder& builder = {}) const {
    std::string file = write(path, builder);
    chmod(file.c_str(), 0666);
    return file;
  }
  void expectRefused(const ElfBuilder& provider, const std::string& reason) const {
    const std::string refusal = refusalOf(provider);
    EXPECT_NE(refusal.find(reason), std::string::npos) << reason << " is not in: " << refusal;
  }

  TemporaryFolder folder;
  LoaderView view;
  Names loaded;
  Names cached;
};

ElfBuilder needing(const Names& names) { return {names}; }

ElfBuilder withRunPath(const Names& names, const std::string& runPath) {
  ElfBuilder builder{names};
  builder.runPath = runPath;
  return builder;
}

ElfBuilder withRunPathOfAll(const Names& names, const std::string& runPath) {
  ElfBuilder builder{names};
  builder.runPathOfAll = runPath;
  return builder;
}

TEST_F(ElfNeedsTest, WhatNeedsNothingIsNotRefused) { EXPECT_EQ(refusalOf({}), ""); }

TEST_F(ElfNeedsTest, WhatIsNowhereIsRefusedByName) {
  expectRefused(needing({"libgone.so.3"}),
                "libx.so needs libgone.so.3, which is nowhere where the loader looks");
}

TEST_F(ElfNeedsTest, WhatIsLoadedAlreadyIsNotLookedFor) {
  loaded = {"libc.so.6"};
  EXPECT_EQ(refusalOf(needing({"libc.so.6"})), "");
}

// Catches the hole that was there: a library that everybody can write, in a folder of its own.
TEST_F(ElfNeedsTest, ALibraryInAFolderOfTheRunPathIsHeldToTheRule) {
  const std::string file = write("providers/deps/liba.so", {});
  const ElfBuilder provider = withRunPath({"liba.so"}, "$ORIGIN/deps");
  EXPECT_EQ(refusalOf(provider), "");
  chmod(file.c_str(), 0666);
  expectRefused(provider,
                "libx.so needs liba.so: " + file + " can be written by other users (mode 0666)");
}

TEST_F(ElfNeedsTest, ItsNameNeedNotEndLikeALibrarys) {
  const std::string file = writable("providers/helper.bin");
  expectRefused(withRunPath({"helper.bin"}, "$ORIGIN"), file);
}

TEST_F(ElfNeedsTest, SoIsWhatTheNeededOneNeeds) {
  write("providers/liba.so", withRunPath({"libb.so"}, "${ORIGIN}/../far"));
  const std::string far = writable("far/libb.so");
  expectRefused(withRunPath({"liba.so"}, "$ORIGIN"),
                "providers/liba.so needs libb.so: " + far + " can be written");
}

TEST_F(ElfNeedsTest, AnAuxiliaryOneMayBeMissingButNotBeOthers) {
  ElfBuilder provider = withRunPath({}, "$ORIGIN");
  provider.auxiliary = {"libaux.so"};
  EXPECT_EQ(refusalOf(provider), "");
  writable("providers/libaux.so");
  expectRefused(provider, "libaux.so can be written");
}

TEST_F(ElfNeedsTest, AnotherUsersFileOrFolderIsRefused) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can give a file away";
  const std::string file = write("vendor/liba.so", {});
  const ElfBuilder provider = withRunPath({"liba.so"}, at("vendor"));
  for (const std::string& path : {file, at("vendor")}) {
    ASSERT_EQ(chown(path.c_str(), 12345, 12345), 0);
    expectRefused(provider, path + " belongs to another user (id 12345)");
    ASSERT_EQ(chown(path.c_str(), 0, 0), 0);
  }
  EXPECT_EQ(refusalOf(provider), "");
}

// Catches one that looks at the file that is there today, and not at where another one could be
// tomorrow.
TEST_F(ElfNeedsTest, AFolderThatIsSearchedBeforeIsHeldToTheRuleToo) {
  write("lib/liba.so", {});
  fs::create_directory(at("open"));
  const ElfBuilder provider = withRunPath({"liba.so"}, at("open"));
  EXPECT_EQ(refusalOf(provider), "");
  letOthersWrite(at("open"));
  expectRefused(provider, at("open") + " can be written by other users (mode 0777)");
}

// Catches the excuse for sticky folders where anybody can make what is missing.
TEST_F(ElfNeedsTest, AMissingFolderThatOthersCanMakeIsRefused) {
  write("lib/liba.so", {});
  fs::create_directory(at("open"));
  const ElfBuilder provider = withRunPath({"liba.so"}, at("open/missing/below"));
  EXPECT_EQ(refusalOf(provider), "");
  chmod(at("open").c_str(), 01777);
  expectRefused(provider, at("open") + " can be written by other users (mode 1777)");
  fs::create_directories(at("open/missing/below"));
  EXPECT_EQ(refusalOf(provider), "") << "others can only write beside it";
}

TEST_F(ElfNeedsTest, AFolderThatIsSearchedAfterwardsIsNoMatter) {
  write("providers/liba.so", {});
  fs::create_directory(at("open"));
  letOthersWrite(at("open"));
  EXPECT_EQ(refusalOf(withRunPath({"liba.so"}, "$ORIGIN:" + at("open"))), "");
}

TEST_F(ElfNeedsTest, AFolderSeenFromTheCurrentOneIsRefused) {
  write("lib/liba.so", {});
  for (const char* runPath : {".", "", "deps", ":/nowhere", "deps/$ORIGIN"}) {
    const bool isEmpty = *runPath == '\0';
    const std::string refusal = refusalOf(withRunPath({"liba.so"}, runPath));
    EXPECT_EQ(refusal.find("seen from the current folder") == std::string::npos, isEmpty)
        << runPath << ": " << refusal;
  }
  expectRefused(needing({"deps/liba.so"}), "it is looked for from the current folder");
}

TEST_F(ElfNeedsTest, AFileByItsPathIsHeldToTheRule) {
  const std::string file = writable("vendor/liba.so");
  expectRefused(needing({file}), file + " can be written");
  expectRefused(needing({"$ORIGIN/../vendor/liba.so"}), file + " can be written");
  expectRefused(needing({at("vendor/libb.so")}), "libb.so, which is nowhere");
}

// Catches a path that is known again by its text: each library's $ORIGIN is another one.
TEST_F(ElfNeedsTest, TheSamePathFromAnotherOriginIsAnotherFile) {
  write("providers/liba.so", {});
  write("deps/libb.so", needing({"$ORIGIN/liba.so"}));
  const std::string file = writable("deps/liba.so");
  expectRefused(needing({"$ORIGIN/liba.so", "$ORIGIN/../deps/libb.so"}),
                "deps/libb.so needs $ORIGIN/liba.so: " + file + " can be written");
}

// The loader would put the folder of whoever asks into it, not that of the library.
TEST_F(ElfNeedsTest, OfWhatIsLoadedOnlyNamesCount) {
  const std::string file = writable("providers/liba.so");
  loaded = {"$ORIGIN/liba.so"};
  expectRefused(needing({"$ORIGIN/liba.so"}), file + " can be written");
}

// Catches a walk that goes on for ever, as the path becomes longer each time.
TEST_F(ElfNeedsTest, LibrariesThatNeedEachOtherByPathsAreNoTrouble) {
  write("deps/liba.so", needing({"$ORIGIN/../deps/libb.so"}));
  write("deps/libb.so", needing({"$ORIGIN/../deps/liba.so"}));
  EXPECT_EQ(refusalOf(needing({"$ORIGIN/../deps/liba.so"})), "");
}

TEST_F(ElfNeedsTest, TheOlderRunPathCountsForWhatIsNeededFurtherDown) {
  write("deps/liba.so", needing({"libb.so"}));
  const std::string file = writable("deps/libb.so");
  expectRefused(withRunPathOfAll({"liba.so"}, at("deps")), file + " can be written");
}

TEST_F(ElfNeedsTest, TheNewerOneDoesNotAndShutsTheOlderOut) {
  write("deps/liba.so", needing({"libb.so"}));
  writable("deps/libb.so");
  write("lib/libb.so", {});
  EXPECT_EQ(refusalOf(withRunPath({"liba.so"}, at("deps"))), "");
  write("deps/liba.so", withRunPath({"libb.so"}, at("elsewhere")));
  EXPECT_EQ(refusalOf(withRunPathOfAll({"liba.so"}, at("deps"))), "");
}

// Catches a resolution library by library: the loader takes again what it has.
TEST_F(ElfNeedsTest, WhatWasFoundForOneIsTakenForTheOthers) {
  write("deps/liba.so", needing({"libb.so", "libcee.so"}));
  ElfBuilder other;
  other.name = "libcee.so";
  write("deps/libb.so", other);
  EXPECT_EQ(refusalOf(withRunPath({"liba.so", "libb.so"}, at("deps"))), "");
}

TEST_F(ElfNeedsTest, LibrariesThatNeedEachOtherAreNoTrouble) {
  write("lib/liba.so", needing({"libb.so"}));
  write("lib/libb.so", needing({"liba.so"}));
  EXPECT_EQ(refusalOf(needing({"liba.so"})), "");
}

TEST_F(ElfNeedsTest, FoldersOfTheEnvironmentComeBeforeTheNewerRunPath) {
  write("providers/liba.so", {});
  write("env/liba.so", {});
  view.environmentFolders = {at("env")};
  const ElfBuilder provider = withRunPath({"liba.so"}, "$ORIGIN");
  EXPECT_EQ(refusalOf(provider), "");
  letOthersWrite(at("env"));
  expectRefused(provider, at("env") + " can be written");
  EXPECT_EQ(refusalOf(withRunPathOfAll({"liba.so"}, "$ORIGIN")), "") << "that one comes first";
}

TEST_F(ElfNeedsTest, RunPathsOfTheProcessCountForLibrariesWithoutOneOfTheirOwn) {
  write("lib/liba.so", {});
  writable("process/liba.so");
  view.processFolders = {at("process")};
  expectRefused(needing({"liba.so"}), "process/liba.so can be written");
  EXPECT_EQ(refusalOf(withRunPath({"liba.so"}, "/nowhere")), "");
}

TEST_F(ElfNeedsTest, TheSystemsListComesBeforeItsDefaultFolders) {
  write("lib/liba.so", {});
  cached = {writable("listed/liba.so")};
  expectRefused(needing({"liba.so"}), "listed/liba.so can be written");
}

TEST_F(ElfNeedsTest, AListedFileThatIsGoneIsLookedForInTheDefaultFolders) {
  cached = {at("listed/liba.so")};
  fs::create_directory(at("listed"));
  write("lib/liba.so", {});
  EXPECT_EQ(refusalOf(needing({"liba.so"})), "");
  fs::remove(at("lib/liba.so"));
  expectRefused(needing({"liba.so"}), "which is nowhere");
}

TEST_F(ElfNeedsTest, TheDefaultFoldersCanBeSwitchedOff) {
  write("lib/liba.so", {});
  ElfBuilder provider = needing({"liba.so"});
  provider.flags = 0x800;
  expectRefused(provider, "which is nowhere");
}

TEST_F(ElfNeedsTest, ALibraryOfAnotherMachineIsPassedOver) {
  ElfBuilder foreign;
  foreign.machine = 8;
  write("providers/liba.so", foreign);
  const ElfBuilder provider = withRunPath({"liba.so"}, "$ORIGIN");
  expectRefused(provider, "which is nowhere");
  const std::string file = writable("lib/liba.so");
  expectRefused(provider, file + " can be written");
}

// Catches a library for a better processor than the one that the test runs on.
TEST_F(ElfNeedsTest, EveryVariantForAProcessorIsHeldToTheRule) {
  write("lib/liba.so", {});
  for (const char* variant : {"lib/glibc-hwcaps/x86-64-v4", "lib/haswell", "lib/tls/x86_64"}) {
    const std::string file = writable(variant + std::string("/liba.so"));
    expectRefused(needing({"liba.so"}), file + " can be written");
    fs::remove(file);
    letOthersWrite(at(variant));
    expectRefused(needing({"liba.so"}), at(variant) + " can be written");
    fs::remove(at(variant));
    EXPECT_EQ(refusalOf(needing({"liba.so"})), "");
  }
}

TEST_F(ElfNeedsTest, EveryFolderThatAPlaceholderMayMeanIsHeldToTheRule) {
  write("providers/haswell/liba.so", {});
  view.platforms = {"haswell", "p64"};
  const ElfBuilder provider = withRunPath({"liba.so"}, "$ORIGIN/$PLATFORM");
  EXPECT_EQ(refusalOf(provider), "");
  const std::string file = writable("providers/p64/liba.so");
  expectRefused(provider, file + " can be written");
  fs::remove(file);
  const std::string other = writable("lib/liba.so");
  expectRefused(provider, other + " can be written");
}

TEST_F(ElfNeedsTest, LinksOnTheWayAreHeldToTheRule) {
  write("real/liba.so.1", {});
  fs::create_directory(at("open"));
  fs::create_symlink(at("real/liba.so.1"), at("open/liba.so"));
  fs::create_symlink(at("open"), at("through"));
  const ElfBuilder provider = withRunPath({"liba.so"}, at("through"));
  EXPECT_EQ(refusalOf(provider), "");
  letOthersWrite(at("open"));
  expectRefused(provider, at("open") + " can be written");
  fs::permissions(at("open"), fs::perms::owner_all);
  chmod(at("real/liba.so.1").c_str(), 0666);
  expectRefused(provider, at("real/liba.so.1") + " can be written");
}

TEST_F(ElfNeedsTest, ALinkThatLeadsToNothingIsRefusedWhereOthersCanMakeThat) {
  fs::create_directories(at("open"));
  fs::create_directories(at("providers"));
  fs::create_symlink(at("open/liba.so"), at("providers/liba.so"));
  write("lib/liba.so", {});
  const ElfBuilder provider = withRunPath({"liba.so"}, "$ORIGIN");
  EXPECT_EQ(refusalOf(provider), "");
  chmod(at("open").c_str(), 01777);
  expectRefused(provider, at("open") + " can be written");
}

// Catches $ORIGIN of a link taken for the folder that it leads to.
TEST_F(ElfNeedsTest, OfALinkTheOriginIsWhereTheLinkLies) {
  write("real/liba.so", withRunPath({"libb.so"}, "$ORIGIN"));
  write("real/libb.so", {});
  fs::create_directory(at("links"));
  fs::create_symlink(at("real/liba.so"), at("links/liba.so"));
  const std::string file = writable("links/libb.so");
  expectRefused(withRunPath({"liba.so"}, at("links")), file + " can be written");
}

TEST_F(ElfNeedsTest, ADamagedLibraryIsRefused) {
  const std::string good = ElfBuilder{{"libb.so"}}.bytes();
  folder.write("providers/liba.so", good.substr(0, good.size() - 1));
  expectRefused(withRunPath({"liba.so"}, "$ORIGIN"), "liba.so cannot be read: a text is too long");
}

TEST_F(ElfNeedsTest, WhatIsNoFileIsRefusedUnread) {
  fs::create_directories(at("providers"));
  ASSERT_EQ(mkfifo(at("providers/liba.so").c_str(), 0600), 0);
  expectRefused(withRunPath({"liba.so"}, "$ORIGIN"), "liba.so is no file");
}

// The loader says better why it does not take it.
TEST_F(ElfNeedsTest, WhatIsNoLibraryNeedsNothing) {
  PathRights rights;
  EXPECT_EQ(ElfNeeds(rights, view).refusalOf(folder.write("providers/libt.so", "text")), "");
}

}  // namespace
}  // namespace cmpinsp
