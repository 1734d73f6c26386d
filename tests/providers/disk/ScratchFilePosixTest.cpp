#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <cerrno>
#include <filesystem>

#include "providers/disk/finding/MachineDisks.h"
#include "providers/disk/scratch/ScratchBlock.h"
#include "providers/disk/scratch/ScratchFile.h"
#include "tests/providers/FileTree.h"
#include "tests/providers/disk/ForbiddenCalls.h"

namespace providers::disk {
namespace {

TEST(ScratchFilePosix, KeepsWhatIsWrittenAndLeavesNothing) {
  FileTree tree;
  const std::string folder = tree.add("here/.keep", "").root() + "/here";
  OpenedScratch opened{nullptr, "there is no disk"};
  for (const Disk& disk : findMachineDisks())
    if (!opened.file) opened = openScratch(disk, folder, 1U << 20);
  if (!opened.file) GTEST_SKIP() << opened.problem;
  alignas(4096) std::uint8_t block[kScratchBlock];
  fillBlock(block, {4096, 1, 1});
  EXPECT_EQ(opened.file->write(4096, block, sizeof block).text, "");
  EXPECT_EQ(opened.file->flush().text, "");
  std::fill(std::begin(block), std::end(block), std::uint8_t{0});
  EXPECT_EQ(opened.file->read(4096, block, sizeof block), "");
  EXPECT_EQ(judgeBlock(block, {4096, 1, 1}).state, BlockState::Right);
  // The file has no name while it is in use.
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1);
}

/// Whatever the folder lies on, as a disk.
Disk diskOf(const std::string& folder) {
  struct stat status {};
  stat(folder.c_str(), &status);
  Disk disk;
  disk.name = "sdz";
  disk.devices = {std::to_string(major(status.st_dev)) + ":" +
                  std::to_string(minor(status.st_dev))};
  return disk;
}

TEST(ScratchFilePosix, AFileSystemThatCannotTakeRoomBeforehandIsWrittenAllTheSame) {
  FileTree tree;
  const std::string folder = tree.root();
  if (!openScratch(diskOf(folder), folder, 1U << 20).file)
    GTEST_SKIP() << "no scratch file can be made in " << folder;
  std::string problem = "not tried";
  if (!runWithout({SYS_fallocate}, EOPNOTSUPP, [&] {
        const OpenedScratch opened = openScratch(diskOf(folder), folder, 1U << 20);
        alignas(4096) std::uint8_t block[kScratchBlock] = {};
        problem = opened.file ? opened.file->write(0, block, sizeof block).text : opened.problem;
      }))
    GTEST_SKIP() << "this system allows no sandbox";
  EXPECT_EQ(problem, "");
}

TEST(ScratchFilePosix, AFullDiskIsNotTheDrivesFault) {
  FileTree tree;
  const std::string folder = tree.root();
  const OpenedScratch opened = openScratch(diskOf(folder), folder, 1U << 20);
  if (!opened.file) GTEST_SKIP() << opened.problem;
  for (const auto& [error, ofDrive] :
       {std::pair{ENOSPC, false}, std::pair{EDQUOT, false}, std::pair{EIO, true}}) {
    ScratchProblem problem;
    alignas(4096) std::uint8_t block[kScratchBlock] = {};
    if (!runWithout({SYS_pwrite64}, static_cast<unsigned>(error),
                    [&] { problem = opened.file->write(0, block, sizeof block); }))
      GTEST_SKIP() << "this system allows no sandbox";
    EXPECT_NE(problem.text.find("the write failed: "), std::string::npos);
    EXPECT_EQ(problem.ofDrive, ofDrive) << problem.text;
  }
}

TEST(ScratchFilePosix, AFolderThatIsNotOnTheDiskIsRefused) {
  Disk disk;
  disk.name = "sdz";
  disk.node = "/dev/sdz";
  EXPECT_NE(openScratch(disk, "/proc", 1U << 20).problem.find("/proc does not lie on sdz"),
            std::string::npos);
  EXPECT_EQ(openScratch(disk, "", 1U << 20).problem,
            "no file system of sdz is mounted for writing");
}

}  // namespace
}  // namespace providers::disk
