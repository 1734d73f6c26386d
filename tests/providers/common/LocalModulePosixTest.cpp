#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "providers/common/LocalModule.h"
#include "tests/providers/FileTree.h"

namespace providers {
namespace {

/// A module below a folder below a folder, none of which others may write. It is no library:
/// whether it may be loaded is seen from what is said.
class LocalModuleTest : public ::testing::Test {
 protected:
  LocalModuleTest() {
    tree.add("opt/own/providers/libkernels.so", "no library");
    for (const char* path : {"", "/opt", "/opt/own", "/opt/own/providers"}) allow(path, 0755);
    allow("/opt/own/providers/libkernels.so", 0644);
  }
  void allow(const std::string& path, mode_t mode) {
    ASSERT_EQ(chmod((tree.root() + path).c_str(), mode), 0);
  }
  std::string problem(const std::string& folder = "/opt/own/providers") {
    const LocalModule module = loadLocalModule(tree.root() + folder, "kernels");
    EXPECT_EQ(module.handle, nullptr);
    return module.problem;
  }
  static void expectIn(const std::string& part, const std::string& text) {
    EXPECT_NE(text.find(part), std::string::npos) << part << " is not in " << text;
  }
  FileTree tree;
};

TEST_F(LocalModuleTest, WhatNobodyElseCouldWriteIsGivenToTheLoader) {
  expectIn("libkernels.so is not loaded: ", problem());
  expectIn("file too short", problem());
}

TEST_F(LocalModuleTest, WhatOthersCouldWriteIsRefusedWithItsRights) {
  for (const char* path : {"/opt/own/providers/libkernels.so", "/opt/own/providers"}) {
    allow(path, 0777);
    expectIn("libkernels.so is not loaded: " + tree.root() + path +
                 " can be written by other users (mode 0777)",
             problem());
    allow(path, 0755);
  }
}

// Catches a folder on the way that others can rename, with all that is in it.
TEST_F(LocalModuleTest, AFolderAboveThatOthersCouldWriteIsRefused) {
  for (const char* path : {"/opt", "/opt/own"}) {
    allow(path, 0775);
    expectIn(tree.root() + path + " can be written by other users (mode 0775)", problem());
    allow(path, 0755);
  }
}

TEST_F(LocalModuleTest, AStickyFolderDoesAboveTheModulesOwnAlone) {
  allow("/opt", 01777);
  expectIn("file too short", problem());
  allow("/opt/own/providers", 01777);
  expectIn("can be written by other users (mode 1777)", problem());
}

TEST_F(LocalModuleTest, WhatBelongsToAnotherUserIsRefused) {
  if (geteuid() != 0) GTEST_SKIP() << "needs root, who alone can give files away";
  for (const char* path : {"/opt/own/providers/libkernels.so", "/opt/own"}) {
    ASSERT_EQ(chown((tree.root() + path).c_str(), 12345, 0), 0);
    expectIn(tree.root() + path + " belongs to another user (id 12345)", problem());
    ASSERT_EQ(chown((tree.root() + path).c_str(), 0, 0), 0);
  }
}

TEST_F(LocalModuleTest, AModuleThatIsALinkIsRefusedAndAFolderIsFollowed) {
  const std::string module = tree.root() + "/opt/own/providers/libkernels.so";
  ASSERT_EQ(symlink((tree.root() + "/opt/own").c_str(), (tree.root() + "/there").c_str()), 0);
  expectIn("file too short", problem("/there/providers"));
  allow("/opt/own", 0777);
  expectIn("/opt/own can be written by other users", problem("/there/providers"));
  allow("/opt/own", 0755);
  ASSERT_EQ(rename(module.c_str(), (module + ".1").c_str()), 0);
  ASSERT_EQ(symlink("libkernels.so.1", module.c_str()), 0);
  expectIn("libkernels.so is a link", problem());
}

TEST_F(LocalModuleTest, WhatIsNotThereIsNamed) {
  expectIn("/opt/own/libkernels.so is not there", problem("/opt/own"));
  expectIn("/none/libkernels.so is not there", problem("/none"));
  EXPECT_EQ(loadLocalModule("providers", "kernels").problem,
            "libkernels.so is not loaded: the modules' folder is not known");
}

}  // namespace
}  // namespace providers
