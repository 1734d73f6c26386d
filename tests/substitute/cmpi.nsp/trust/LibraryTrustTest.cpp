#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include "substitute/cmpi.nsp/manager/operations/ObjectManager.h"
#include "substitute/cmpi.nsp/trust/LibraryTrust.h"
#include "tests/substitute/cmpi.nsp/OthersWrite.h"
#include "tests/substitute/cmpi.nsp/TemporaryFolder.h"
#include "tests/substitute/cmpi.nsp/trust/ElfBuilder.h"
#include "tests/substitute/cmpi.nsp/trust/PeBuilder.h"

#if !defined(_WIN32)
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace cmpinsp {
namespace {

struct LibraryTrustTest : testing::Test {
  std::string refusal() const { return refusalOf(library); }
  std::string refusalOf(const std::string& file) const {
    return LibraryTrust(providers).examine(file).refusal;
  }

  TemporaryFolder folder;
  std::string library = folder.write("root/providers/libx.so", "x");
  std::string providers = (folder.path() / "root" / "providers").u8string();
};

TEST_F(LibraryTrustTest, AFileThatOnlyItsUserWritesIsTrusted) { EXPECT_EQ(refusal(), ""); }

TEST_F(LibraryTrustTest, AMissingFileIsRefusedByName) {
  EXPECT_NE(refusalOf(providers + "/liby.so").find("liby.so"), std::string::npos);
}

TEST_F(LibraryTrustTest, AFolderIsNoLibrary) {
  std::filesystem::create_directory(providers + "/libd.so");
  EXPECT_NE(refusalOf(providers + "/libd.so").find("is no file"), std::string::npos);
}

TEST_F(LibraryTrustTest, AFileOutsideTheFolderIsRefused) {
  const std::string other = folder.write("root/libz.so", "x");
  EXPECT_NE(refusalOf(other).find("leads out"), std::string::npos);
  EXPECT_NE(refusalOf(providers + "/../libz.so").find("leads out"), std::string::npos);
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

/// A library of this system that needs others, which it has look for them beside it.
std::string needing(const std::vector<std::string>& names) {
#if defined(_WIN32)
  return PeBuilder{names}.bytes();
#else
  ElfBuilder builder{names};
  builder.runPath = "$ORIGIN";
  return builder.bytes();
#endif
}

// Catches a library that is loaded for another one without having been looked at.
TEST_F(LibraryTrustTest, WhatALibraryNeedsDirectlyOrNotIsExaminedToo) {
  folder.write("root/providers/libx.so", needing({"libnear.so.1"}));
  folder.write("root/providers/libnear.so.1", needing({"Far.dll"}));
  const std::string distant = folder.write("root/providers/Far.dll", needing({}));
  EXPECT_EQ(refusal(), "");
  letOthersWrite(distant);
  EXPECT_NE(refusal().find("libnear.so.1 needs Far.dll: "), std::string::npos) << refusal();
  EXPECT_NE(refusal().find("Far.dll can be written by other users"), std::string::npos)
      << refusal();
}

// Catches one bad file that refuses every provider.
TEST_F(LibraryTrustTest, WhatALibraryDoesNotNeedIsNoMatter) {
  folder.write("root/providers/libx.so", needing({"libnear.so.1"}));
  folder.write("root/providers/libnear.so.1", needing({}));
  letOthersWrite(folder.write("root/providers/libnear.so", needing({})));
  letOthersWrite(folder.write("root/providers/libother.so.1", "x"));
  letOthersWrite(folder.write("root/providers/x.mof", "x"));
  EXPECT_EQ(refusal(), "");
}

TEST_F(LibraryTrustTest, WhatALibraryNeedsAndIsNowhereIsRefusedByName) {
  folder.write("root/providers/libx.so", needing({"diagsNowhere.dll"}));
  EXPECT_NE(refusal().find("libx.so needs diagsNowhere.dll, which is n"), std::string::npos)
      << refusal();
}

TEST_F(LibraryTrustTest, WhatLibrariesHaveInCommonIsLookedAtOnceASecond) {
  std::chrono::steady_clock::time_point now;
  LibraryTrust trust(providers, [&now] { return now; });
  EXPECT_EQ(trust.examine(library).refusal, "");
  letOthersWrite(providers);
  now += std::chrono::seconds(1);
  EXPECT_EQ(trust.examine(library).refusal, "");
  now += std::chrono::milliseconds(1);
  EXPECT_NE(trust.examine(library).refusal, "");
}

#if !defined(_WIN32)

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
  EXPECT_NE(refusalOf(providers + "/liblink.so").find("leads out"), std::string::npos);
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
