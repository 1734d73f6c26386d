#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "substitute/cmpi.nsp/installation/PathRights.h"
#include "tests/substitute/cmpi.nsp/TemporaryFolder.h"

namespace cmpinsp {
namespace {

namespace fs = std::filesystem;

struct PathRightsTest : testing::Test {
  std::string at(const std::string& path) const { return (folder.path() / path).string(); }

  TemporaryFolder folder;
  PathRights rights;
};

TEST_F(PathRightsTest, LinksAreFollowedToTheFile) {
  const std::string file = folder.write("real/x", "x");
  fs::create_symlink("real", at("relative"));
  fs::create_symlink(at("relative/../real/./x"), at("absolute"));
  for (const char* path : {"real/x", "relative/x", "absolute", "real//x", "relative/../real/x"}) {
    const ResolvedPath resolved = rights.resolve(at(path));
    EXPECT_EQ(resolved.path, file) << path;
    EXPECT_TRUE(resolved.isFile) << path;
    EXPECT_FALSE(resolved.error) << path;
    EXPECT_EQ(resolved.linkRefusal, "") << path;
  }
  EXPECT_FALSE(rights.resolve(at("real")).isFile);
  EXPECT_FALSE(rights.resolve(at("real/x/..")).isFile);
  EXPECT_EQ(rights.resolve("/").path, "/");
}

TEST_F(PathRightsTest, AMissingPathIsFollowedAsFarAsItIsThere) {
  fs::create_directory(at("real"));
  fs::create_symlink(at("real/gone/far"), at("dangling"));
  EXPECT_EQ(rights.resolve(at("dangling")).path, at("real"));
  EXPECT_EQ(rights.resolve(at("dangling")).error, std::errc::no_such_file_or_directory);
  fs::create_symlink("round", at("round"));
  EXPECT_EQ(rights.resolve(at("round")).error, std::errc::too_many_symbolic_link_levels);
}

TEST_F(PathRightsTest, ARelativePathBeginsAtTheCurrentFolder) {
  const fs::path before = fs::current_path();
  const std::string file = folder.write("real/x", "x");
  fs::current_path(at("real"));
  EXPECT_EQ(rights.resolve("../real/x").path, file);
  fs::current_path(before);
}

TEST_F(PathRightsTest, ALinkThatOthersCanExchangeIsTold) {
  folder.write("real/x", "x");
  fs::create_directory(at("open"));
  fs::create_symlink(at("real"), at("open/link"));
  chmod(at("open").c_str(), 0777);
  EXPECT_EQ(PathRights().resolve(at("open/link/x")).linkRefusal,
            at("open") + " can be written by other users (mode 0777)");
  chmod(at("open").c_str(), 01777);
  EXPECT_EQ(PathRights().resolve(at("open/link/x")).linkRefusal, "") << "it is not theirs";
  if (geteuid() != 0) GTEST_SKIP() << "only root can give a link away";
  ASSERT_EQ(lchown(at("open/link").c_str(), 12345, 12345), 0);
  EXPECT_EQ(PathRights().resolve(at("open/link/x")).linkRefusal,
            at("open/link") + " belongs to another user (id 12345)");
}

// Catches a way that is known by its folder, without what is wrong with it.
TEST_F(PathRightsTest, ALinkOnTheWayIsToldOfEachFileBehindIt) {
  folder.write("real/x", "x");
  folder.write("real/y", "y");
  fs::create_directory(at("open"));
  fs::create_symlink(at("real"), at("open/link"));
  chmod(at("open").c_str(), 0777);
  for (const char* file : {"open/link/x", "open/link/y", "open/link/y"}) {
    EXPECT_EQ(rights.resolve(at(file)).linkRefusal,
              at("open") + " can be written by other users (mode 0777)");
  }
}

// Catches a look at what remains of the path alone: in a sticky folder the other user can put a
// link in the place of what is theirs.
TEST_F(PathRightsTest, AFolderThatIsLeftUpwardsMayNotBeAnothers) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can give a folder away";
  const std::string file = folder.write("real/x", "x");
  fs::create_directory(at("theirs"));
  EXPECT_EQ(PathRights().resolve(at("theirs/../real/x")).linkRefusal, "");
  ASSERT_EQ(chown(at("theirs").c_str(), 12345, 12345), 0);
  const ResolvedPath resolved = PathRights().resolve(at("theirs/../real/x"));
  EXPECT_EQ(resolved.path, file);
  EXPECT_EQ(resolved.linkRefusal, at("theirs") + " belongs to another user (id 12345)");
}

// Catches a path that is looked at again for each of hundreds of libraries.
TEST_F(PathRightsTest, EachFileAndFolderIsLookedAtOnce) {
  const std::string file = folder.write("real/x", "x");
  EXPECT_EQ(rights.whyOthersCanChange(file), "");
  chmod(file.c_str(), 0666);
  chmod(at("real").c_str(), 0777);
  EXPECT_EQ(rights.whyOthersCanChange(file), "");
  EXPECT_EQ(rights.whyOthersCanChangeFolder(at("real")), "");
  EXPECT_NE(PathRights().whyOthersCanChange(file), "");
}

TEST_F(PathRightsTest, OfOneByItselfWhatIsAboveIsNoMatter) {
  const std::string file = folder.write("real/x", "x");
  chmod(at("real").c_str(), 0777);
  EXPECT_EQ(rights.whyOthersCanChangeItself(file), "");
  EXPECT_NE(rights.whyOthersCanChangeItself(at("real")), "");
}

}  // namespace
}  // namespace cmpinsp
