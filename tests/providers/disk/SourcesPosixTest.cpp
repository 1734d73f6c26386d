#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>

#include "providers/disk/health/DriveCommands.h"
#include "providers/disk/reading/BlockSource.h"
#include "providers/disk/reading/ThreadSource.h"
#include "providers/disk/reading/UringSource.h"
#include "tests/providers/FileTree.h"
#include "tests/providers/ForbiddenCalls.h"

namespace providers::disk {
namespace {

constexpr std::uint32_t kBytes = 4096;

/// Reads a block of the file, and tells by what means.
std::string meansThatRead(const std::string& file) {
  const OpenedSource opened = openSource(file, {2, kBytes});
  if (!opened.source) return opened.problem;
  opened.source->start(0, {kBytes, kBytes});
  std::vector<ReadAnswer> ended;
  for (int i = 0; i < 20 && ended.empty(); ++i) opened.source->collect(ended, 0.25);
  if (ended.empty() || ended[0].error != ReadError::None || ended[0].bytes != kBytes)
    return "nothing was read";
  return opened.source->data(0)[0] == 'b' ? opened.source->means() : "something else was read";
}

class BlockSourcePosix : public testing::Test {
 protected:
  void SetUp() override {
    m_tree.add("blocks", std::string(kBytes, 'a') + std::string(kBytes, 'b'));
    const OpenedSource opened = openSource(file(), {1, kBytes});
    if (!opened.source) GTEST_SKIP() << opened.problem;
  }
  std::string file() const { return m_tree.root() + "/blocks"; }

 private:
  FileTree m_tree;
};

/// Of what this process has open: whether the file is, and past the cache.
bool isOpenPastTheCache(const std::string& file) {
  std::error_code ignored;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    if (std::filesystem::read_symlink(entry.path(), ignored) != file) continue;
    return (fcntl(std::stoi(entry.path().filename()), F_GETFL) & O_DIRECT) != 0;
  }
  return false;
}

// Catches reads that are answered by the page cache, whatever has become of the disk.
TEST_F(BlockSourcePosix, ReadsGoPastTheCache) {
  {
    const OpenedSource opened = openSource(file(), {1, kBytes});
    ASSERT_TRUE(opened.source) << opened.problem;
    EXPECT_TRUE(isOpenPastTheCache(file()));
  }
  const bool ran = runWithout({SYS_io_uring_setup}, EPERM, [&] {
    const OpenedSource threads = openSource(file(), {1, kBytes});
    EXPECT_STREQ(threads.source ? threads.source->means() : "none", "threads");
    EXPECT_TRUE(isOpenPastTheCache(file()));
  });
  if (!ran) GTEST_SKIP() << "this system allows no sandbox";
}

TEST_F(BlockSourcePosix, ThreadsReadWhereASandboxForbidsAnyPartOfIoUring) {
  for (const unsigned call : {unsigned{SYS_io_uring_setup}, unsigned{SYS_io_uring_enter}}) {
    std::string means;
    if (!runWithout({call}, EPERM, [&] { means = meansThatRead(file()); }))
      GTEST_SKIP() << "this system allows no sandbox";
    EXPECT_EQ(means, "threads") << call;
  }
}

TEST_F(BlockSourcePosix, WhatIsNotTheDeviceThatWasFoundIsRefusedWithItsNumber) {
  Disk disk;
  disk.node = file();
  disk.number = "8:16";
  for (const std::string& problem :
       {openSource(disk.node, {1, kBytes}, disk.number).problem, openDrive(disk).problem})
    EXPECT_NE(problem.find(file() + " does not lead to the disk of that name, whose device number "
                                    "is 8:16"),
              std::string::npos)
        << problem;
}

TEST_F(BlockSourcePosix, WithoutIoUringAndThreadsTheReasonIsTold) {
  std::string means;
  if (!runWithout({SYS_io_uring_setup, SYS_clone, SYS_clone3}, EAGAIN,
                  [&] { means = meansThatRead(file()); }))
    GTEST_SKIP() << "this system allows no sandbox";
  EXPECT_EQ(means, file() + " cannot be read: the system allows no further threads");
}

TEST_F(BlockSourcePosix, ARingThatTakesNothingAnyMoreSaysSoSoonWithoutASpinningProcessor) {
  const int opened = open(file().c_str(), O_RDONLY | O_DIRECT | O_CLOEXEC);
  ASSERT_GE(opened, 0);
  constexpr double kPatience = 0.05;
  const auto source = makeUringSource(opened, {2, kBytes}, kPatience);
  if (!source) {
    close(opened);
    GTEST_SKIP() << "this system allows no io_uring";
  }
  source->start(0, {0, kBytes});
  std::string reason;
  int questions = 0;
  const auto collect = [&] {
    std::vector<ReadAnswer> ended;
    try {
      for (; questions < 1000; ++questions) source->collect(ended, kPatience / 5);
    } catch (const NoFurtherReads& nothing) {
      reason = nothing.what();
    }
  };
  if (!runWithout({SYS_io_uring_enter}, EAGAIN, collect))
    GTEST_SKIP() << "this system allows no sandbox";
  EXPECT_EQ(reason, "the system takes no reads by io_uring: Resource temporarily unavailable");
  EXPECT_LT(questions, 10);
}

}  // namespace
}  // namespace providers::disk
