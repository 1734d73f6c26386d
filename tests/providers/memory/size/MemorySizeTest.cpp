#include <gtest/gtest.h>

#include "providers/memory/size/MemorySize.h"
#include "tests/providers/FileTree.h"

namespace providers::memory {
namespace {

constexpr std::uint64_t kMebi = 1024 * 1024;
const char* const kMemInfo =
    "MemTotal:        8192 kB\nMemFree:  1 kB\nMemAvailable:    4096 kB\nBuffers: 7 kB\n";

struct SizeRow {
  const char* name;
  std::vector<std::pair<std::string, std::string>> files;
  std::uint64_t usable;     ///< in MiB
  std::uint64_t available;  ///< in MiB
};

class MemorySizes : public ::testing::TestWithParam<SizeRow> {};

TEST_P(MemorySizes, AreThoseOfTheSystemOrTheContainer) {
  FileTree tree;
  tree.add("proc/meminfo", kMemInfo);
  for (const auto& [path, content] : GetParam().files) tree.add(path, content);
  const MemorySize size = readMemorySize(tree.root());
  EXPECT_EQ(size.installed, 8 * kMebi);
  EXPECT_EQ(size.usable, GetParam().usable * kMebi);
  EXPECT_EQ(size.available, GetParam().available * kMebi);
}

INSTANTIATE_TEST_SUITE_P(
    Table, MemorySizes,
    ::testing::Values(
        SizeRow{"NoGroups", {}, 8, 4},
        SizeRow{"Version2WithoutLimit",
                {{"proc/self/cgroup", "0::/job\n"}, {"sys/fs/cgroup/job/memory.max", "max\n"}},
                8,
                4},
        SizeRow{"Version2WithLimit",
                {{"proc/self/cgroup", "0::/job\n"},
                 {"sys/fs/cgroup/job/memory.max", "3145728\n"},
                 {"sys/fs/cgroup/job/memory.current", "1048576\n"}},
                3,
                2},
        SizeRow{"Version2WithLimitOfUnknownUse",
                {{"proc/self/cgroup", "0::/job\n"}, {"sys/fs/cgroup/job/memory.max", "2097152\n"}},
                2,
                2},
        SizeRow{"Version2Throttled",
                {{"proc/self/cgroup", "0::/job\n"},
                 {"sys/fs/cgroup/job/memory.max", "4194304\n"},
                 {"sys/fs/cgroup/job/memory.high", "3145728\n"},
                 {"sys/fs/cgroup/job/memory.current", "1048576\n"}},
                3,
                2},
        SizeRow{"OneOfTwoNodes",
                {{"proc/self/status", "Name:\tx\nMems_allowed_list:\t1\n"},
                 {"sys/devices/system/node/has_memory", "0-1\n"},
                 {"sys/devices/system/node/node1/meminfo",
                  "Node 1 MemTotal:   5120 kB\nNode 1 MemFree:   2048 kB\n"
                  "Node 1 Inactive(file):  1024 kB\n"}},
                5,
                3},
        SizeRow{"AllNodesAndThoseThatAreNotThere",
                {{"proc/self/status", "Mems_allowed_list:\t0-63\n"},
                 {"sys/devices/system/node/has_memory", "0-1\n"}},
                8,
                4},
        SizeRow{"Version2LimitOfAParent",
                {{"proc/self/cgroup", "0::/a/b\n"},
                 {"sys/fs/cgroup/a/b/memory.max", "max\n"},
                 {"sys/fs/cgroup/a/memory.max", "2097152\n"},
                 {"sys/fs/cgroup/a/memory.current", "0\n"}},
                2,
                2},
        SizeRow{"Version2LimitAtTheTop",
                {{"proc/self/cgroup", "0::/\n"}, {"sys/fs/cgroup/memory.max", "5242880\n"}},
                5,
                4},
        SizeRow{"Version1WithLimit",
                {{"proc/self/cgroup", "9:cpu,cpuacct:/x\n4:memory:/x\n0::/\n"},
                 {"sys/fs/cgroup/memory/x/memory.limit_in_bytes", "2097152\n"},
                 {"sys/fs/cgroup/memory/x/memory.usage_in_bytes", "1048576\n"}},
                2,
                1},
        SizeRow{"Version1MoreThanThereIs",
                {{"proc/self/cgroup", "4:memory:/x\n"},
                 {"sys/fs/cgroup/memory/x/memory.limit_in_bytes", "9223372036854771712\n"},
                 {"sys/fs/cgroup/memory/x/memory.usage_in_bytes", "1048576\n"}},
                8,
                4},
        SizeRow{"ControllerOfSimilarName",
                {{"proc/self/cgroup", "4:memoryless:/x\n"},
                 {"sys/fs/cgroup/memory/x/memory.limit_in_bytes", "1048576\n"}},
                8,
                4},
        SizeRow{"UsedUpEntirely",
                {{"proc/self/cgroup", "0::/job\n"},
                 {"sys/fs/cgroup/job/memory.max", "1048576\n"},
                 {"sys/fs/cgroup/job/memory.current", "2097152\n"}},
                1,
                0},
        SizeRow{"LinesThatMakeNoSense", {{"proc/self/cgroup", "nonsense\n:\n0::\n"}}, 8, 4}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(MemorySize, WithoutAnyFileNothingIsKnown) {
  const MemorySize size = readMemorySize(FileTree().root());
  EXPECT_EQ(size.installed, 0U);
  EXPECT_EQ(size.available, 0U);
}

TEST(MemorySize, FilesThatAGroupCanGiveUpAreAvailable) {
  FileTree tree;
  tree.add("proc/meminfo", kMemInfo)
      .add("proc/self/cgroup", "0::/job\n")
      .add("sys/fs/cgroup/job/memory.max", "3145728\n")
      .add("sys/fs/cgroup/job/memory.current", "3145728\n")
      .add("sys/fs/cgroup/job/memory.stat", "anon 5\ninactive_file 1048576\n");
  EXPECT_EQ(readMemorySize(tree.root()).available, kMebi);
}

TEST(MemorySize, WhatIsNoNumberIsNone) {
  FileTree tree;
  tree.add("proc/meminfo", "MemTotal:        8192 kB\nMemAvailable:    lots kB\n");
  const MemorySize size = readMemorySize(tree.root());
  EXPECT_EQ(size.installed, 8 * kMebi);
  EXPECT_EQ(size.available, 0U);
}

TEST(MemorySize, ThisMachineHasSome) {
  const MemorySize size = queryMemorySize();
  EXPECT_GT(size.installed, 16 * kMebi);
  EXPECT_GE(size.installed, size.usable);
  EXPECT_GE(size.usable, size.available);
}

}  // namespace
}  // namespace providers::memory
