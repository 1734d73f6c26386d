#include <gtest/gtest.h>

#include <filesystem>

#include "providers/processor/kernels/Kernels.h"
#include "tests/providers/FileTree.h"

namespace providers {
namespace {

namespace fs = std::filesystem;

TEST(Kernels, ThatAreNotThereAreRefusedAndThoseWithoutALibraryStay) {
  const FileTree tree;
  const Kernels kernels = loadKernels(tree.root());
  EXPECT_EQ(kernels.operations.size(), 3U);
  EXPECT_TRUE(kernels.missing.empty());
  ASSERT_GE(kernels.refused.size(), 2U);
  EXPECT_EQ(kernels.refused[0],
            fs::canonical(tree.root()).string() + "/libdiagsProcessorZstd.so is not there");
}

// Catches operations that are read with the layout of another version.
TEST(Kernels, OfAModuleOfAnotherVersionAreRefused) {
  const FileTree tree;
  const fs::path module = fs::path(tree.root()) / "libdiagsProcessorZstd.so";
  fs::copy_file(OLD_KERNELS, module);
  for (const fs::path& path : {fs::path(tree.root()), module})
    fs::permissions(path, fs::perms::group_write | fs::perms::others_write,
                    fs::perm_options::remove);
  const Kernels kernels = loadKernels(tree.root());
  EXPECT_EQ(kernels.operations.size(), 3U);
  ASSERT_FALSE(kernels.refused.empty());
  EXPECT_EQ(kernels.refused[0],
            "libdiagsProcessorZstd.so is not used: it is of another version than the test, for it "
            "has no diagsKernels2");
}

TEST(Kernels, OfThisInstallationCanAllBeUsed) {
  const Kernels kernels = loadKernels(INSTALLED_KERNELS);
  EXPECT_TRUE(kernels.refused.empty()) << kernels.refused.front();
  EXPECT_GT(kernels.operations.size(), 6U);
}

}  // namespace
}  // namespace providers
