#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "substitute/cmpi.nsp/installation/InstallationRights.h"
#include "tests/substitute/cmpi.nsp/TemporaryFolder.h"

namespace cmpinsp {
namespace {

using Texts = std::vector<std::string>;

struct InstallationRightsTest : testing::Test {
  InstallationRightsTest() {
    for (const char* file :
         {"root/schema/a.mof", "root/schema/deep/b.MOF", "root/schema/notes.txt",
          "root/providers/c.mof", "root/providers/d.registration", "root/providers/e.reg",
          "root/providers/libf.so", "root/kfr/data/g.xml"}) {
      folder.write(file, "x");
    }
  }
  std::string at(const std::string& path) const { return (folder.path() / path).string(); }
  std::string root() const { return at("root"); }
  Texts faults() const {
    Texts texts;
    for (const auto& problem : findWhatOthersCanChange(root(), schemaFiles))
      texts.push_back(problem.toText());
    return texts;
  }
  void giveAwayAll() const {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root())) {
      ASSERT_EQ(lchown(entry.path().c_str(), 65534, 65534), 0);
    }
    ASSERT_EQ(lchown(root().c_str(), 65534, 65534), 0);
  }

  TemporaryFolder folder;
  Texts schemaFiles;
};

TEST_F(InstallationRightsTest, AnInstallationThatOnlyItsUserWritesHasNoFaults) {
  EXPECT_EQ(faults(), Texts());
}

TEST_F(InstallationRightsTest, EveryFileThatIsReadAndItsFoldersCount) {
  for (const char* name :
       {"root/schema/a.mof", "root/schema/deep/b.MOF", "root/providers/c.mof",
        "root/providers/d.registration", "root/providers/e.reg", "root/kfr/data/g.xml",
        "root/schema", "root/schema/deep", "root/providers", "root/kfr", "root/kfr/data", "root"}) {
    struct stat before {};
    ASSERT_EQ(stat(at(name).c_str(), &before), 0);
    chmod(at(name).c_str(), 0777);
    EXPECT_EQ(faults(), Texts{at(name) + " can be written by other users (mode 0777)"});
    chmod(at(name).c_str(), before.st_mode & 07777);
  }
  EXPECT_EQ(faults(), Texts());
}

TEST_F(InstallationRightsTest, WhatIsNotReadIsNoMatter) {
  folder.write("root/schema/.mof", "x");
  for (const char* name : {"root/schema/notes.txt", "root/providers/libf.so", "root/schema/.mof"}) {
    chmod(at(name).c_str(), 0666);
  }
  EXPECT_EQ(faults(), Texts());
}

TEST_F(InstallationRightsTest, AnIncludedFileCountsWhateverItsName) {
  schemaFiles = {at("root/schema/a.mof"), at("root/schema/notes.txt"), at("root/schema/gone.inc")};
  EXPECT_EQ(faults(), Texts());
  chmod(at("root/schema/notes.txt").c_str(), 0666);
  EXPECT_EQ(faults(),
            Texts{at("root/schema/notes.txt") + " can be written by other users (mode 0666)"});
}

// A file of one's own is no help where others can put another one in its place.
TEST_F(InstallationRightsTest, TheFolderOfAnIncludedFileCounts) {
  schemaFiles = {folder.write("root/providers/more/b.inc", "x")};
  EXPECT_EQ(faults(), Texts());
  chmod(at("root/providers/more").c_str(), 0777);
  EXPECT_EQ(faults(),
            Texts{at("root/providers/more") + " can be written by other users (mode 0777)"});
}

TEST_F(InstallationRightsTest, AnIncludedLinkCountsForWhatItLeadsTo) {
  const std::string file = folder.write("open/far.inc", "x");
  std::filesystem::create_symlink(file, at("root/schema/z.inc"));
  schemaFiles = {at("root/schema/z.inc")};
  EXPECT_EQ(faults(), Texts());
  chmod(at("open").c_str(), 0777);
  EXPECT_EQ(faults(), Texts{at("open") + " can be written by other users (mode 0777)"});
}

TEST_F(InstallationRightsTest, ALinkCountsForWhatItLeadsTo) {
  const std::string file = folder.write("open/far.mof", "x");
  std::filesystem::create_symlink(file, at("root/schema/z.mof"));
  EXPECT_EQ(faults(), Texts());
  chmod(at("open").c_str(), 0777);
  EXPECT_EQ(faults(), Texts{at("open") + " can be written by other users (mode 0777)"});
}

TEST_F(InstallationRightsTest, ALinkBackIsFollowedOnce) {
  std::filesystem::create_directory_symlink(at("root"), at("root/schema/round"));
  EXPECT_EQ(faults(), Texts());
}

TEST_F(InstallationRightsTest, WhatIsMissingIsNoMatter) {
  std::filesystem::remove_all(at("root/kfr"));
  std::filesystem::create_symlink(at("nowhere"), at("root/schema/z.mof"));
  EXPECT_EQ(faults(), Texts());
}

TEST_F(InstallationRightsTest, AnotherUsersInstallationIsToldOnce) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can give files away";
  giveAwayAll();
  EXPECT_EQ(faults(), Texts{root() + " belongs to another user (id 65534)"});
  const Texts lines = warningsForRoot(root(), {});
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines.front().find("the installation " + root() + " belongs to "), 0U) << lines[0];
  EXPECT_NE(lines.front().find("(id 65534), and root uses it"), std::string::npos) << lines[0];
}

TEST_F(InstallationRightsTest, AForeignFileInAnOwnFolderIsAFault) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can give files away";
  ASSERT_EQ(chown(at("root/schema/deep").c_str(), 65534, 65534), 0);
  ASSERT_EQ(chown(at("root/schema/deep/b.MOF").c_str(), 65534, 65534), 0);
  EXPECT_EQ(faults(), Texts{at("root/schema/deep") + " belongs to another user (id 65534)"});
}

TEST_F(InstallationRightsTest, RootIsToldInOneLineThatOthersCouldChangeIt) {
  chmod(at("root/schema/a.mof").c_str(), 0666);
  const Texts one = warningsForRoot(root(), {});
  chmod(at("root/kfr/data/g.xml").c_str(), 0666);
  const Texts two = warningsForRoot(root(), {});
  if (geteuid() != 0) {
    EXPECT_EQ(one, Texts());
    return;
  }
  const std::string begin = "others could change this installation: " + at("root/schema/a.mof") +
                            " can be written by other users (mode 0666)";
  EXPECT_EQ(one, Texts{begin + "; diags check names every place"});
  EXPECT_EQ(two, Texts{begin + ", and 1 more; diags check names every place"});
}

TEST_F(InstallationRightsTest, NobodyIsToldOfASoundOne) {
  EXPECT_EQ(warningsForRoot(root(), {}), Texts());
}

}  // namespace
}  // namespace cmpinsp
