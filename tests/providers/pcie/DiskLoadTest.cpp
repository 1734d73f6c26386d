#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "providers/common/DeviceNumberPosix.h"
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

/// A disk of this machine that this user may read.
std::vector<LinkedDisk> readableDisk() {
  std::error_code ignored;
  for (const auto& block : std::filesystem::directory_iterator("/sys/block", ignored)) {
    const std::string name = block.path().filename().string();
    struct stat status {};
    if (name.compare(0, 4, "zram") == 0 || stat(("/dev/" + name).c_str(), &status) != 0) continue;
    std::ifstream size(block.path() / "size");
    std::uint64_t sectors = 0;
    size >> sectors;
    const LinkedDisk disk{name, "/dev/" + name, deviceNumber(status.st_rdev), sectors * 512, {}};
    const bool isRead = sectors > 2048 && startDiskLoad({disk})->sofar().at(0).problem.empty();
    if (isRead) return {disk};
  }
  return {};
}

TEST(DiskLoad, ReadsUntilItIsEnded) {
  const auto disks = readableDisk();
  if (disks.empty()) GTEST_SKIP() << "this user may read no disk of this machine";
  const auto load = startDiskLoad(disks);
  constexpr std::uint64_t kMebi = 1 << 20;
  while (load->sofar().at(0).bytes < 8 * kMebi && load->sofar().at(0).failed == 0) continue;
  EXPECT_GE(load->sofar().at(0).bytes, 8 * kMebi) << load->sofar().at(0).problem;
}

}  // namespace
}  // namespace providers::pcie
