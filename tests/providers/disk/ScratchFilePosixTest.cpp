#include <gtest/gtest.h>

#include <filesystem>

#include "providers/disk/finding/MachineDisks.h"
#include "providers/disk/scratch/ScratchBlock.h"
#include "providers/disk/scratch/ScratchFile.h"
#include "tests/providers/FileTree.h"

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
  EXPECT_EQ(opened.file->write(4096, block, sizeof block), "");
  EXPECT_EQ(opened.file->flush(), "");
  std::fill(std::begin(block), std::end(block), std::uint8_t{0});
  EXPECT_EQ(opened.file->read(4096, block, sizeof block), "");
  EXPECT_EQ(judgeBlock(block, {4096, 1, 1}).state, BlockState::Right);
  // The file has no name while it is in use.
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1);
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
