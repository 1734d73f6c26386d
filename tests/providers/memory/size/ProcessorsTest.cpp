#include <gtest/gtest.h>

#include <atomic>

#include "providers/memory/engine/MemoryEngine.h"
#include "providers/memory/size/MemoryBuffer.h"
#include "providers/memory/size/Processors.h"
#include "tests/providers/FileTree.h"

namespace providers::memory {
namespace {

struct QuotaRow {
  const char* groups;
  const char* file;
  const char* content;
  std::size_t quota;
};

TEST(ProcessorQuota, IsWhatTheGroupsAllow) {
  for (const QuotaRow& row : {QuotaRow{"0::/job\n", "job/cpu.max", "max 100000\n", 0},
                              QuotaRow{"0::/job\n", "job/cpu.max", "400000 100000\n", 4},
                              QuotaRow{"0::/job/part\n", "job/cpu.max", "250000 100000\n", 3},
                              QuotaRow{"0::/job\n", "job/cpu.max", "10000 100000\n", 1},
                              QuotaRow{"0::/job\n", "other/cpu.max", "400000 100000\n", 0},
                              QuotaRow{"0::/job\n", "job/cpu.max", "many\n", 0}}) {
    FileTree tree;
    tree.add("proc/self/cgroup", row.groups)
        .add(std::string("sys/fs/cgroup/") + row.file, row.content);
    EXPECT_EQ(processorQuota(tree.root()), row.quota) << row.content;
  }
}

TEST(ProcessorQuota, OfTheFirstEditionStandsInTwoFiles) {
  FileTree tree;
  tree.add("proc/self/cgroup", "3:cpu,cpuacct:/x\n0::/\n")
      .add("sys/fs/cgroup/cpu,cpuacct/x/cpu.cfs_quota_us", "200000\n")
      .add("sys/fs/cgroup/cpu,cpuacct/x/cpu.cfs_period_us", "100000\n");
  EXPECT_EQ(processorQuota(tree.root()), 2U);
  tree.add("sys/fs/cgroup/cpu,cpuacct/x/cpu.cfs_quota_us", "-1\n");
  EXPECT_EQ(processorQuota(tree.root()), 0U);
}

/// A processor's caches: two of the first level, and one of the last that several share.
void addCaches(FileTree& tree, unsigned cpu, const std::string& last, const std::string& sharers) {
  const std::string folder = "sys/devices/system/cpu/cpu" + std::to_string(cpu) + "/cache/index";
  const auto add = [&](int index, const char* level, const char* type, const std::string& size,
                       const std::string& list) {
    const std::string cache = folder + std::to_string(index);
    tree.add(cache + "/level", level).add(cache + "/type", type);
    tree.add(cache + "/size", size).add(cache + "/shared_cpu_list", list);
  };
  add(0, "1\n", "Data\n", "32K\n", std::to_string(cpu) + "\n");
  add(1, "1\n", "Instruction\n", "64K\n", std::to_string(cpu) + "\n");
  add(2, "3\n", "Unified\n", last + "\n", sharers + "\n");
}

// Catches content that is written last and checked in the caches in place of the memory: several
// packages, or several parts of one, have a last level each.
TEST(CacheBytes, AreThoseOfAllCachesOfTheProcessorsEachOnce) {
  constexpr std::size_t kKibi = 1024, kMebi = kKibi * kKibi;
  FileTree tree;
  addCaches(tree, 0, "32M", "0-1");
  addCaches(tree, 1, "32M", "0-1");
  addCaches(tree, 2, "32M", "2-3");
  addCaches(tree, 3, "32M", "2-3");
  EXPECT_EQ(readCacheBytes(tree.root(), {0, 1, 2, 3}), 64 * kMebi + 4 * 32 * kKibi);
  EXPECT_EQ(readCacheBytes(tree.root(), {0, 1}), 32 * kMebi + 2 * 32 * kKibi);
  EXPECT_EQ(readCacheBytes(tree.root(), {9}), 0U);
}

TEST(CacheBytes, OfThisMachineAreSome) { EXPECT_GT(queryCacheBytes(usableProcessors()), 0U); }

struct SpreadRow {
  std::vector<Processor> list;
  std::size_t count;
  std::vector<Processor> chosen;
};

// Catches small tests that go over the memory of the first node alone, run after run.
TEST(Processors, AreChosenEvenlyFromAllOfThem) {
  for (const SpreadRow& row :
       {SpreadRow{{0, 1, 2, 3}, 4, {0, 1, 2, 3}}, SpreadRow{{0, 1, 2, 3, 8, 9, 10, 11}, 2, {0, 8}},
        SpreadRow{{4, 5, 6, 7, 8}, 3, {4, 5, 7}}, SpreadRow{{7}, 1, {7}}})
    EXPECT_EQ(spreadOver(row.list, row.count), row.chosen);
}

TEST(Processors, OfThisMachineAreSomeAndCanBeTaken) {
  const std::vector<Processor> list = usableProcessors();
  ASSERT_FALSE(list.empty());
  ThreadTeam team(static_cast<unsigned>(list.size()),
                  [&list](unsigned thread) { takePlace(list[thread]); });
  std::atomic<unsigned> done{0};
  team.run([&](unsigned) { ++done; }, [] {});
  EXPECT_EQ(done, list.size());
}

TEST(TouchAll, TouchesAllUnlessItIsToldNotTo) {
  constexpr std::size_t kBytes = std::size_t{64} << 20;
  const MemoryBuffer buffer(kBytes);
  ThreadTeam team(2, [](unsigned) {});
  const auto touched = [&](const std::function<bool()>& mayGoOn) {
    std::size_t lines = 0;
    for (const LineRange part : touchAll(buffer.words(), buffer.wordCount(), team, kBytes, mayGoOn))
      lines += part.count;
    return lines * kLineBytes;
  };
  EXPECT_EQ(touched([] { return false; }), 0U);
  std::atomic<int> questions{0};
  const std::size_t some = touched([&] { return ++questions <= 2; });
  EXPECT_GT(some, 0U);
  EXPECT_LT(some, kBytes);
  EXPECT_EQ(touched([] { return true; }), kBytes);
}

// Catches threads that all go far on one answer: together more than is left over.
TEST(TouchAll, TakesNoMoreThanTheSlackAfterTheLastQuestionOfManyThreadsEither) {
  constexpr std::size_t kMebi = std::size_t{1} << 20;
  const MemoryBuffer buffer(64 * kMebi);
  ThreadTeam team(64, [](unsigned) {});
  std::atomic<int> questions{0};
  std::size_t lines = 0;
  for (const LineRange part :
       touchAll(buffer.words(), buffer.wordCount(), team, kMebi, [&] { return ++questions <= 64; }))
    lines += part.count;
  EXPECT_GT(lines, 0U);
  EXPECT_LE(lines * kLineBytes, kMebi);
}

TEST(TouchAll, TakesNoMoreThanTheSlackAfterTheLastQuestion) {
  constexpr std::size_t kMebi = std::size_t{1} << 20;
  const MemoryBuffer buffer(64 * kMebi);
  ThreadTeam team(4, [](unsigned) {});
  std::atomic<int> questions{0};
  std::size_t lines = 0;
  for (const LineRange part : touchAll(buffer.words(), buffer.wordCount(), team, 2 * kMebi,
                                       [&] { return ++questions <= 4; }))
    lines += part.count;
  EXPECT_GT(lines, 0U);
  EXPECT_LE(lines * kLineBytes, 2 * kMebi);
}

}  // namespace
}  // namespace providers::memory
