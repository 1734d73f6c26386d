#include <gtest/gtest.h>

#include "substitute/cmpi.nsp/trust/RunPath.h"

namespace cmpinsp {
namespace {

using Texts = std::vector<std::string>;

TEST(RunPath, NamesFoldersBetweenColonsAndTheCurrentOneByNothing) {
  EXPECT_EQ(foldersIn(""), Texts());
  EXPECT_EQ(foldersIn("/a"), Texts{"/a"});
  EXPECT_EQ(foldersIn("/a:b:/c/"), (Texts{"/a", "b", "/c/"}));
  EXPECT_EQ(foldersIn(":/a::"), (Texts{".", "/a", ".", "."}));
}

TEST(RunPath, PlaceholdersStandForAllThatTheLoaderMayMean) {
  const Placeholders placeholders{"/o", {"lib/t", "lib"}, {"p", "q"}};
  const struct {
    const char* text;
    Texts wanted;
  } rows[] = {{"/a", {"/a"}},
              {"$ORIGIN", {"/o"}},
              {"${ORIGIN}/deps", {"/o/deps"}},
              {"/x/$LIB", {"/x/lib/t", "/x/lib"}},
              {"$ORIGIN/$LIB/${PLATFORM}", {"/o/lib/t/p", "/o/lib/t/q", "/o/lib/p", "/o/lib/q"}},
              {"$ORIGIN-x$ORIGIN", {"/o-x/o"}},
              {"$ORIGINX/$ORIGIN_/$ORIGIN2", {"$ORIGINX/$ORIGIN_/$ORIGIN2"}},
              {"${ORIGIN/${}/$/$$ORIGIN", {"${ORIGIN/${}/$/$/o"}},
              {"${ORIGIN}X", {"/oX"}},
              {"$HOME/$origin", {"$HOME/$origin"}}};
  for (const auto& row : rows) EXPECT_EQ(expansionsOf(row.text, placeholders), row.wanted);
}

// Catches a text that is cut off where it stands for too much: the rest would not be looked at.
TEST(RunPath, WhatStandsForTooManyTextsStandsForNone) {
  const Placeholders placeholders{"/o", {"a", "b"}, {}};
  EXPECT_EQ(expansionsOf("$LIB$LIB$LIB$LIB$LIB$LIB", placeholders).size(), 64U);
  EXPECT_EQ(expansionsOf("$LIB$LIB$LIB$LIB$LIB$LIB$LIB/x", placeholders), Texts());
}

TEST(RunPath, TheLibraryFolderIsMadeOfTheLoadersOwn) {
  EXPECT_EQ(
      libraryFoldersOf({"/lib/x86_64-linux-gnu/", "/usr/lib/x86_64-linux-gnu", "/lib", "/usr/lib"}),
      (Texts{"lib/x86_64-linux-gnu", "lib"}));
  EXPECT_EQ(libraryFoldersOf({"/lib64", "/usr/lib64"}), Texts{"lib64"});
}

}  // namespace
}  // namespace cmpinsp
