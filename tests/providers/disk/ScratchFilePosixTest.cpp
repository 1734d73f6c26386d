#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "providers/disk/finding/MachineDisks.h"
#include "providers/disk/scratch/ScratchBlock.h"
#include "providers/disk/scratch/ScratchFile.h"
#include "providers/disk/scratch/ScratchFolderPosix.h"
#include "providers/disk/scratch/ScratchPlaces.h"
#include "tests/providers/ForbiddenCalls.h"
#include "tests/providers/LinkedTree.h"

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
  EXPECT_EQ(opened.file->read(4096, block, sizeof block).text, "");
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

TEST(ScratchFilePosix, ReadsThatFailAreTheDrivesFaultWhereItFailed) {
  FileTree tree;
  const OpenedScratch opened = openScratch(diskOf(tree.root()), tree.root(), 1U << 20);
  if (!opened.file) GTEST_SKIP() << opened.problem;
  for (const auto& [error, ofDrive] :
       {std::pair{ENOMEM, false}, std::pair{EINVAL, false}, std::pair{EIO, true}}) {
    ScratchProblem problem;
    alignas(4096) std::uint8_t block[kScratchBlock] = {};
    if (!runWithout({SYS_pread64}, static_cast<unsigned>(error),
                    [&] { problem = opened.file->read(0, block, sizeof block); }))
      GTEST_SKIP() << "this system allows no sandbox";
    EXPECT_NE(problem.text.find("the read failed: "), std::string::npos);
    EXPECT_EQ(problem.ofDrive, ofDrive) << problem.text;
  }
}

/// Lets files of this process grow to so many bytes.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &m_before);
    const rlimit limit{bytes, m_before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &m_before); }

 private:
  rlimit m_before{};
};

TEST(ScratchFilePosix, ALimitOnTheSizeOfFilesIsKeptAndToldInsteadOfEndingTheProcess) {
  FileTree tree;
  constexpr std::uint64_t kMebi = 1U << 20;
  if (const OpenedScratch free = openScratch(diskOf(tree.root()), tree.root(), 3 * kMebi);
      !free.file || free.file->bytes() < 3 * kMebi)
    GTEST_SKIP() << "no scratch file can be made in " << tree.root();
  {
    const FileSizeLimit limit(2 * kMebi + 1);
    const OpenedScratch opened = openScratch(diskOf(tree.root()), tree.root(), 3 * kMebi);
    ASSERT_TRUE(opened.file) << opened.problem;
    EXPECT_EQ(opened.file->bytes(), 2 * kMebi);
    EXPECT_EQ(opened.shortage, "the right to large files (ulimit -f; RLIMIT_FSIZE)");
  }
  const FileSizeLimit limit(kMebi - 1);
  const OpenedScratch opened = openScratch(diskOf(tree.root()), tree.root(), 3 * kMebi);
  EXPECT_EQ(opened.file, nullptr);
  EXPECT_NE(opened.problem.find("RLIMIT_FSIZE"), std::string::npos) << opened.problem;
}

TEST(ScratchFolder, WhatIsMadeInItGoesByTheFolderThatWasOpenedWhateverItsPathLeadsTo) {
  LinkedTree tree;
  tree.link("place", "one").add("one/.keep", "");
  const ScratchFolder folder(tree.root() + "/place");
  if (const OpenedScratch opened = folder.makeFile(1U << 20); !opened.file)
    GTEST_SKIP() << opened.problem;
  const std::string mount = folder.mount();
  EXPECT_FALSE(mount.empty());
  tree.link("place", "one/.keep");
  EXPECT_EQ(folder.mount(), mount);
  const OpenedScratch opened = folder.makeFile(1U << 20);
  EXPECT_TRUE(opened.file) << opened.problem;
}

TEST(ScratchFolder, KnowsItsMountOfThoseThatThereAre) {
  const std::string id = ScratchFolder("/proc").mount();
  std::ostringstream text;
  text << std::ifstream("/proc/self/mountinfo").rdbuf();
  const std::vector<Mount> mounts = parseMounts(text.str());
  const auto found = std::find_if(mounts.begin(), mounts.end(),
                                  [&id](const Mount& mount) { return mount.id == id; });
  ASSERT_NE(found, mounts.end());
  EXPECT_EQ(found->folder, "/proc");
  EXPECT_EQ(ScratchFolder("/nowhere").mount(), "");
}

TEST(ScratchFilePosix, AFolderThatIsNotOnTheDiskIsRefused) {
  Disk disk;
  disk.name = "sdz";
  disk.node = "/dev/sdz";
  EXPECT_NE(openScratch(disk, "/proc", 1U << 20).problem.find("/proc does not lie on sdz alone"),
            std::string::npos);
  EXPECT_EQ(openScratch(disk, "", 1U << 20).problem,
            "no file system of sdz alone is mounted for writing");
}

// Catches a file system of two disks, of which one alone is named, taken for one of that disk.
TEST(ScratchPlacesPosix, AFileSystemThatIsLargerThanItsDeviceHasOthers) {
  constexpr std::uint64_t kMebi = std::uint64_t{1} << 20;
  std::vector<Mount> mounts = parseMounts("26 22 8:1 / /flash rw - f2fs /dev/sda1 rw\n");
  Disk disk;
  disk.devices = {"8:0", "8:1"};
  FileTree sys;
  const auto places = [&] { return mountsOn(disk, mounts, sys.root()).size(); };
  mounts[0].bytes = 98 * kMebi;
  EXPECT_EQ(places(), 0U) << "nobody tells how large the device is";
  sys.add("dev/block/8:1/size", "204800\n");
  EXPECT_EQ(places(), 1U);
  mounts[0].bytes = 101 * kMebi;
  EXPECT_EQ(places(), 0U);
  mounts[0].bytes = 0;
  EXPECT_EQ(places(), 0U) << "the file system does not tell its size";
}

}  // namespace
}  // namespace providers::disk
