#include <gtest/gtest.h>

#include <thread>

#include "providers/pcie/load/DiskLoad.h"
#include "tests/providers/FileTree.h"

namespace providers::pcie {
namespace {

TEST(DiskLoad, TellsWhyADiskCannotBeRead) {
  FileTree folder;
  folder.add("file", std::string(1 << 20, 'x'));
  const auto load = startDiskLoad({{"gone", folder.root() + "/gone", "8:0", 1 << 20, {}},
                                   {"file", folder.root() + "/file", "8:0", 1 << 20, {}},
                                   {"null", "/dev/null", "1:3", 1 << 20, {}}});
  const auto read = load->sofar();
  ASSERT_EQ(read.size(), 3U);
  EXPECT_NE(read[0].problem.find("/gone cannot be opened for reading: No such file"),
            std::string::npos)
      << read[0].problem;
  EXPECT_FALSE(read[1].problem.empty()) << "it is no device, and has no number";
  EXPECT_FALSE(read[2].problem.empty());
  for (const DiskRead& one : read) EXPECT_EQ(one.bytes, 0U);
}

/// A file of two mebibytes that stands for a disk of so many.
struct FileDisk : FileTree {
  std::unique_ptr<DiskLoad> start(std::uint64_t mebibytes) {
    add("disk", std::string(2 << 20, 'x'));
    return startDiskLoad({{"disk", root() + "/disk", {}, mebibytes << 20, {}}});
  }
};

/// Whether this folder's file system allows reads past the cache.
bool isRead(const DiskLoad& load) { return load.sofar().at(0).problem.empty(); }

TEST(DiskLoad, ReadsAgainAndAgainUntilItIsEnded) {
  FileDisk disk;
  const auto load = disk.start(2);
  if (!isRead(*load)) GTEST_SKIP() << load->sofar().at(0).problem;
  constexpr std::uint64_t kFarMoreThanItHas = std::uint64_t{64} << 20;
  while (load->sofar().at(0).bytes < kFarMoreThanItHas && isRead(*load)) std::this_thread::yield();
  EXPECT_GE(load->sofar().at(0).bytes, kFarMoreThanItHas) << load->sofar().at(0).problem;
  EXPECT_EQ(load->sofar().at(0).failed, 0U);
}

TEST(DiskLoad, GivesUpADiskWhoseReadsFail) {
  FileDisk disk;
  auto load = disk.start(64);
  while (load->sofar().at(0).failed < 16) {
    const DiskRead read = load->sofar().at(0);
    if (read.failed == 0 && !read.problem.empty()) GTEST_SKIP() << read.problem;
    std::this_thread::yield();
  }
  EXPECT_EQ(load->sofar().at(0).problem, "the disk has ended too early");
  load.reset();
}

}  // namespace
}  // namespace providers::pcie
