#include <gtest/gtest.h>

#include "substitute/cmpi.nsp/cache/CacheFile.h"
#include "substitute/cmpi.nsp/cache/MappedFile.h"
#include "tests/substitute/cmpi.nsp/TemporaryFolder.h"

#if !defined(_WIN32)
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace cmpinsp {
namespace {

struct CacheFileTest : testing::Test {
  std::string content() const { return std::string(MappedFile(file).bytes()); }

  TemporaryFolder folder;
  std::string file = (folder.path() / "x" / "y" / "c").u8string();
};

TEST_F(CacheFileTest, IsWrittenWithItsFoldersAndReplaced) {
  EXPECT_EQ(replaceCacheFile(file, "one"), "");
  EXPECT_EQ(content(), "one");
  EXPECT_EQ(replaceCacheFile(file, "another"), "");
  EXPECT_EQ(content(), "another");
  EXPECT_EQ(whyNotTrusted(file), "");
}

TEST_F(CacheFileTest, OneThatIsMissingOrAFolderHasNoBytes) {
  EXPECT_EQ(content(), "");
  EXPECT_EQ(whyNotTrusted(file), "");
  EXPECT_TRUE(MappedFile(folder.text()).bytes().empty());
}

#if defined(_WIN32)

TEST_F(CacheFileTest, AFolderOfAServerStaysOne) {
  EXPECT_EQ(withoutLinks("\\\\server\\share\\c"), "\\\\server\\share\\c");
}

#if defined(__MINGW32__)

// Catches a file that counts as missing to the examination, and is then opened all the same.
TEST_F(CacheFileTest, OneByItsPathOnTheNetworkIsNeitherReadNorWritten) {
  const std::string share = "\\\\localhost\\" + file.substr(0, 1) + "$";
  for (const std::string& start : {share, std::string("\\\\?\\C:")}) {
    const std::string there = start + file.substr(2);
    EXPECT_NE(whyNotTrusted(there).find("drive letter"), std::string::npos) << there;
    EXPECT_EQ(replaceCacheFile(there, "one"), whyNotTrusted(there));
  }
  EXPECT_EQ(content(), "");
}

#endif

#else

TEST_F(CacheFileTest, IsThisUsersAlone) {
  const mode_t before = umask(0);
  EXPECT_EQ(replaceCacheFile(file, "one"), "");
  umask(before);
  const auto modeOf = [](const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
  };
  EXPECT_EQ(modeOf(file), 0600u);
  EXPECT_EQ(modeOf((folder.path() / "x").string()), 0700u);
}

TEST_F(CacheFileTest, IsNotTrustedWhereOthersCanWrite) {
  ASSERT_EQ(replaceCacheFile(file, "one"), "");
  const std::string parent = (folder.path() / "x").string();
  ASSERT_EQ(chmod(file.c_str(), 0660), 0);
  EXPECT_EQ(whyNotTrusted(file), file + " can be written by other users (mode 0660)");
  ASSERT_EQ(chmod(file.c_str(), 0600), 0);
  ASSERT_EQ(chmod(parent.c_str(), 0777), 0);
  EXPECT_EQ(whyNotTrusted(file), parent + " can be written by other users (mode 0777)");
  EXPECT_NE(replaceCacheFile(file, "two"), "");
  EXPECT_EQ(content(), "one");
}

// Catches folders that are left behind where nothing is to be written.
TEST_F(CacheFileTest, NoFolderIsMadeWhereOthersCanWrite) {
  const std::string above = (folder.path() / "x").string();
  std::filesystem::create_directory(above);
  ASSERT_EQ(chmod(above.c_str(), 0777), 0);
  EXPECT_EQ(replaceCacheFile(file, "one"), above + " can be written by other users (mode 0777)");
  EXPECT_TRUE(std::filesystem::is_empty(above));
  ASSERT_EQ(chmod(above.c_str(), 01777), 0);
  EXPECT_EQ(replaceCacheFile(file, "one"), "");
}

// Others can put a file of their own into a sticky folder before there is one.
TEST_F(CacheFileTest, AStickyFolderIsAllRightAboveItsOwnAlone) {
  ASSERT_EQ(replaceCacheFile(file, "one"), "");
  const std::string above = (folder.path() / "x").string();
  const std::string own = (folder.path() / "x" / "y").string();
  ASSERT_EQ(chmod(above.c_str(), 01777), 0);
  EXPECT_EQ(whyNotTrusted(file), "");
  EXPECT_EQ(replaceCacheFile(file, "two"), "");
  ASSERT_EQ(chmod(own.c_str(), 01777), 0);
  EXPECT_EQ(whyNotTrusted(file), own + " can be written by other users (mode 1777)");
  EXPECT_EQ(replaceCacheFile(file, "three"), whyNotTrusted(file));
}

TEST_F(CacheFileTest, IsNotTrustedWhenItIsSomebodyElses) {
  if (geteuid() != 0) GTEST_SKIP() << "only root gives files away";
  ASSERT_EQ(replaceCacheFile(file, "one"), "");
  ASSERT_EQ(chown(file.c_str(), 12345, 0), 0);
  EXPECT_EQ(whyNotTrusted(file), file + " belongs to another user (id 12345)");
}

// Catches a forged file that took the place of the examined one before it was opened.
TEST_F(CacheFileTest, TheFileThatIsOpenHasToBeThisUsersToo) {
  ASSERT_EQ(replaceCacheFile(file, "one"), "");
  EXPECT_FALSE(MappedFile(file).isForeign());
  ASSERT_EQ(chmod(file.c_str(), 0620), 0);
  EXPECT_EQ(content(), "");
  EXPECT_TRUE(MappedFile(file).isForeign());
  ASSERT_EQ(chmod(file.c_str(), 0600), 0);
  if (geteuid() != 0) GTEST_SKIP() << "only root gives files away";
  ASSERT_EQ(chown(file.c_str(), 12345, 0), 0);
  EXPECT_EQ(content(), "");
}

TEST_F(CacheFileTest, WhatCannotBeExaminedIsNotTrusted) {
  const std::string link = folder.text() + "/link";
  ASSERT_EQ(symlink("link", link.c_str()), 0);
  EXPECT_NE(whyNotTrusted(link), "");
  EXPECT_NE(whyNotTrusted(link + "/c"), "");
}

TEST_F(CacheFileTest, LinksOnTheWayAreFollowedOnce) {
  ASSERT_EQ(replaceCacheFile(file, "one"), "");
  const std::string link = folder.text() + "/link";
  ASSERT_EQ(symlink((folder.text() + "/x").c_str(), link.c_str()), 0);
  EXPECT_EQ(withoutLinks(link + "/y/c"), file);
  EXPECT_EQ(withoutLinks(link + "/gone/c"), folder.text() + "/x/gone/c");
}

TEST_F(CacheFileTest, ALinkIsNotFollowed) {
  const std::string other = folder.write("other", "content");
  ASSERT_EQ(symlink(other.c_str(), (folder.text() + "/link").c_str()), 0);
  EXPECT_TRUE(MappedFile(folder.text() + "/link").bytes().empty());
}

/// Sets a variable of the environment for as long as it lives.
struct Variable {
  Variable(const char* name, const char* value) : m_name(name) {
    const char* const before = std::getenv(name);
    m_before = before == nullptr ? "" : before;
    value == nullptr ? unsetenv(name) : setenv(name, value, 1);
  }
  ~Variable() { setenv(m_name, m_before.c_str(), 1); }
  const char* m_name;
  std::string m_before;
};

TEST(UserCacheFolder, ComesFromTheEnvironment) {
  const Variable home("HOME", "/home/me");
  {
    const Variable named("XDG_CACHE_HOME", "/var/mine");
    EXPECT_EQ(userCacheFolder(), "/var/mine/diagsrunner");
  }
  {
    const Variable relative("XDG_CACHE_HOME", "mine");
    EXPECT_EQ(userCacheFolder(), "/home/me/.cache/diagsrunner");
  }
  const Variable none("XDG_CACHE_HOME", nullptr);
  EXPECT_EQ(userCacheFolder(), "/home/me/.cache/diagsrunner");
  const Variable homeless("HOME", nullptr);
  EXPECT_EQ(userCacheFolder(), "");
}

#endif

}  // namespace
}  // namespace cmpinsp
