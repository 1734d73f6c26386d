#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include "substitute/cmpi.nsp/manager/operations/ObjectManager.h"
#include "substitute/cmpi.nsp/manager/providers/LibraryNeeds.h"
#include "substitute/cmpi.nsp/manager/providers/LibraryTrust.h"
#include "tests/substitute/cmpi.nsp/OthersWrite.h"
#include "tests/substitute/cmpi.nsp/TemporaryFolder.h"

#if !defined(_WIN32)
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace cmpinsp {
namespace {

struct LibraryTrustTest : testing::Test {
  std::string refusal() const { return examineLibrary(library, providers).refusal; }

  TemporaryFolder folder;
  std::string library = folder.write("root/providers/libx.so", "x");
  std::string providers = (folder.path() / "root" / "providers").u8string();
};

TEST_F(LibraryTrustTest, AFileThatOnlyItsUserWritesIsTrusted) { EXPECT_EQ(refusal(), ""); }

TEST_F(LibraryTrustTest, AMissingFileIsRefusedByName) {
  EXPECT_NE(examineLibrary(providers + "/liby.so", providers).refusal.find("liby.so"),
            std::string::npos);
}

TEST_F(LibraryTrustTest, AFolderIsNoLibrary) {
  std::filesystem::create_directory(providers + "/libd.so");
  EXPECT_NE(examineLibrary(providers + "/libd.so", providers).refusal.find("is no file"),
            std::string::npos);
}

TEST_F(LibraryTrustTest, AFileOutsideTheFolderIsRefused) {
  const std::string other = folder.write("root/libz.so", "x");
  EXPECT_NE(examineLibrary(other, providers).refusal.find("leads out"), std::string::npos);
  EXPECT_NE(examineLibrary(providers + "/../libz.so", providers).refusal.find("leads out"),
            std::string::npos);
}

TEST_F(LibraryTrustTest, ALibraryThatOthersCanWriteIsRefused) {
  letOthersWrite(library);
  EXPECT_NE(refusal().find("can be written by other users"), std::string::npos) << refusal();
}

TEST_F(LibraryTrustTest, AFolderThatOthersCanWriteIsRefused) {
  letOthersWrite(providers);
  EXPECT_NE(refusal().find("providers can be written by other users"), std::string::npos)
      << refusal();
}

/// What a library's bytes say of a file that it needs.
std::string naming(const char* file) { return std::string("head\0", 5) + file + '\0' + "tail"; }

// Catches a library that is loaded for another one without having been looked at.
TEST_F(LibraryTrustTest, WhatALibraryNeedsDirectlyOrNotIsExaminedToo) {
  folder.write("root/providers/libx.so", naming("libnear.so.1"));
  folder.write("root/providers/libnear.so.1", naming("far.DLL"));
  const std::string distant = folder.write("root/providers/Far.dll", "x");
  EXPECT_EQ(refusal(), "");
  letOthersWrite(distant);
  EXPECT_NE(refusal().find("libx.so needs a library: "), std::string::npos) << refusal();
  EXPECT_NE(refusal().find("Far.dll can be written by other users"), std::string::npos)
      << refusal();
}

// Catches one bad file that refuses every provider.
TEST_F(LibraryTrustTest, WhatALibraryDoesNotNeedIsNoMatter) {
  folder.write("root/providers/libx.so", naming("libnear.so.1"));
  letOthersWrite(folder.write("root/providers/libnear.so", "x"));
  letOthersWrite(folder.write("root/providers/libother.so.1", "x"));
  letOthersWrite(folder.write("root/providers/x.mof", "x"));
  EXPECT_EQ(refusal(), "");
}

// Catches a folder that counts as an empty one where it cannot be read.
TEST_F(LibraryTrustTest, WhatALibraryNeedsHasToBeFindable) {
  const std::string refusal = whyOthersCanChangeNeeds(providers + "/nowhere/libx.so");
  EXPECT_NE(refusal.find("libx.so cannot be examined: "), std::string::npos) << refusal;
}

#if defined(_WIN32)

// Catches a stray file that ends every enumeration.
TEST_F(LibraryTrustTest, AFileWhoseNameIsNoTextIsNoMatter) {
  const std::filesystem::path stray = folder.path() / "root" / "providers" / L"\xD800.dll";
  if (!std::ofstream(stray)) GTEST_SKIP() << "this machine has no such names, as under Wine";
  EXPECT_EQ(refusal(), "");
}

#else

TEST_F(LibraryTrustTest, WhatOthersCanWriteIsRefusedWithPathAndMode) {
  const struct {
    std::string path;
    mode_t mode;
    const char* wanted;
  } rows[] = {{library, 0666, "(mode 0666)"},
              {library, 0664, "(mode 0664)"},
              {providers, 0777, "(mode 0777)"},
              {(folder.path() / "root").string(), 0775, "(mode 0775)"}};
  for (const auto& row : rows) {
    struct stat before {};
    ASSERT_EQ(stat(row.path.c_str(), &before), 0);
    ASSERT_EQ(chmod(row.path.c_str(), row.mode), 0);
    EXPECT_NE(refusal().find(row.path + " can be written by other users " + row.wanted),
              std::string::npos)
        << refusal();
    chmod(row.path.c_str(), before.st_mode & 07777);
  }
  EXPECT_EQ(refusal(), "");
}

TEST_F(LibraryTrustTest, AStickyFolderAboveIsAllRight) {
  chmod((folder.path() / "root").c_str(), 01777);
  EXPECT_EQ(refusal(), "");
}

// Catches the excuse for folders above in the folder where a library finds what it needs.
TEST_F(LibraryTrustTest, AStickyBitOnTheProvidersFolderIsNoExcuse) {
  chmod(providers.c_str(), 01777);
  EXPECT_NE(refusal().find("providers can be written by other users (mode 1777)"),
            std::string::npos)
      << refusal();
}

TEST_F(LibraryTrustTest, AStickyBitOnTheFileItselfIsNoExcuse) {
  chmod(library.c_str(), 01666);
  EXPECT_NE(refusal(), "");
}

TEST_F(LibraryTrustTest, ALinkThatLeadsOutIsRefused) {
  const std::string other = folder.write("elsewhere/libz.so", "x");
  std::filesystem::create_symlink(other, providers + "/liblink.so");
  EXPECT_NE(examineLibrary(providers + "/liblink.so", providers).refusal.find("leads out"),
            std::string::npos);
}

// Catches a link on the way to the installation that is followed once more after the examination,
// when it may lead elsewhere.
TEST_F(LibraryTrustTest, TheFileThatWasExaminedIsLoadedWhateverLeadsToIt) {
  const std::filesystem::path link = folder.path() / "link";
  std::filesystem::create_symlink(folder.path() / "root", link);
  const ObjectManager manager(boost::make_shared<ClassTable>(), {{"P", "x", {}, {}}},
                              (link / "providers").u8string());
  EXPECT_EQ(manager.providers().at(0)->get().libraryPath(), library);
}

TEST_F(LibraryTrustTest, AnotherUsersFileIsRefused) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can give a file away";
  ASSERT_EQ(chown(library.c_str(), 12345, 12345), 0);
  EXPECT_NE(refusal().find("belongs to another user (id 12345)"), std::string::npos) << refusal();
}

#endif

}  // namespace
}  // namespace cmpinsp
