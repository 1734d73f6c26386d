#include <gtest/gtest.h>

#include "providers/processor/topology/CpuTopology.h"
#include "tests/providers/FileTree.h"

namespace providers {
namespace {

using Cpus = std::vector<unsigned>;

struct ListRow {
  const char* text;
  Cpus cpus;
};

TEST(CpuList, IsReadAsTheSystemWritesIt) {
  for (const ListRow& row :
       {ListRow{"0", {0}}, ListRow{"0-3", {0, 1, 2, 3}}, ListRow{"0,2-3,8", {0, 2, 3, 8}},
        ListRow{"", {}}, ListRow{"x", {}}, ListRow{"5-4", {}}, ListRow{"1,,2\n", {1, 2}},
        ListRow{"10-12", {10, 11, 12}}})
    EXPECT_EQ(parseCpuList(row.text), row.cpus) << row.text;
}

TEST(CpuList, ARangeThatMakesNoSenseIsCutOff) {
  EXPECT_LE(parseCpuList("0-99999999999").size(), 65536U);
}

TEST(CpuList, IsWrittenWithRanges) {
  for (const ListRow& row : {ListRow{"", {}}, ListRow{"4", {4}}, ListRow{"0-1", {0, 1}},
                             ListRow{"0,2-4,9", {0, 2, 3, 4, 9}}})
    EXPECT_EQ(cpuListText(row.cpus), row.text);
}

class CpuTopologyTest : public ::testing::Test {
 protected:
  void addCpu(unsigned cpu, int package, int core) {
    const std::string folder = "sys/devices/system/cpu/cpu" + std::to_string(cpu) + "/topology/";
    tree.add(folder + "physical_package_id", std::to_string(package) + "\n");
    tree.add(folder + "core_id", std::to_string(core) + "\n");
  }
  void setOnline(const std::string& list) {
    tree.add("sys/devices/system/cpu/online", list + "\n");
  }
  void addInfo(const std::string& text) { tree.add("proc/cpuinfo", text); }
  std::vector<CpuPackage> read(const std::set<unsigned>& allowed) {
    return readCpuPackages(tree.root(), allowed);
  }

  FileTree tree;
};

TEST_F(CpuTopologyTest, ThreadsAreGroupedByPackage) {
  setOnline("0-3");
  for (unsigned cpu = 0; cpu < 4; ++cpu) addCpu(cpu, cpu < 2 ? 0 : 1, static_cast<int>(cpu % 2));
  addInfo(
      "processor\t: 0\nmodel name\t: Fast CPU\ncpu MHz\t: 2300.5\n\nprocessor\t: 2\n"
      "model name\t: Other CPU\n");
  const auto packages = read({0, 1, 2, 3});
  ASSERT_EQ(packages.size(), 2U);
  EXPECT_EQ(packages[0].model, "Fast CPU");
  EXPECT_EQ(packages[0].megahertz, 2300U);
  EXPECT_EQ(packages[1].number, 1U);
  EXPECT_EQ(packages[1].model, "Other CPU");
  EXPECT_EQ(packages[1].cpus, (Cpus{2, 3}));
}

TEST_F(CpuTopologyTest, TheInfoIsThatOfTheProcessorAboveItOrOfTheFirst) {
  setOnline("0,10");
  addCpu(0, 0, 0);
  addCpu(10, 1, 0);
  addInfo("model name\t: First\nprocessor\t: 10\nmodel name\t: Eleventh\n");
  const auto packages = read({0, 10});
  ASSERT_EQ(packages.size(), 2U);
  EXPECT_EQ(packages[0].model, "First");
  EXPECT_EQ(packages[1].model, "Eleventh");
}

TEST_F(CpuTopologyTest, TwoThreadsOfOneCoreAreOneCore) {
  setOnline("0-3");
  for (unsigned cpu = 0; cpu < 4; ++cpu) addCpu(cpu, 0, static_cast<int>(cpu / 2));
  EXPECT_EQ(read({0}).at(0).cores, 2U);
}

TEST_F(CpuTopologyTest, OnlyAllowedCpusAreTested) {
  setOnline("0-3");
  for (unsigned cpu = 0; cpu < 4; ++cpu) addCpu(cpu, 0, static_cast<int>(cpu));
  const auto packages = read({1, 3, 77});
  EXPECT_EQ(packages.at(0).online, (Cpus{0, 1, 2, 3}));
  EXPECT_EQ(packages.at(0).cpus, (Cpus{1, 3}));
}

TEST_F(CpuTopologyTest, CpusThatAreSwitchedOffAreLeftOut) {
  setOnline("0,2");
  for (unsigned cpu = 0; cpu < 3; ++cpu) addCpu(cpu, 0, static_cast<int>(cpu));
  EXPECT_EQ(read({0, 1, 2}).at(0).cpus, (Cpus{0, 2}));
}

TEST_F(CpuTopologyTest, AnUnknownPackageIsTheFirst) {
  setOnline("0-1");
  addCpu(0, -1, 0);
  const auto packages = read({0, 1});
  ASSERT_EQ(packages.size(), 1U);
  EXPECT_EQ(packages[0].number, 0U);
  EXPECT_EQ(packages[0].online, (Cpus{0, 1}));
}

TEST_F(CpuTopologyTest, TheDriverKnowsTheHighestClockRateBest) {
  setOnline("0");
  addCpu(0, 0, 0);
  addInfo("processor : 0\ncpu MHz : 800.0\n");
  tree.add("sys/devices/system/cpu/cpu0/cpufreq/cpuinfo_max_freq", "3600000\n");
  EXPECT_EQ(read({0}).at(0).megahertz, 3600U);
}

TEST_F(CpuTopologyTest, WithoutTheListTheCpusOfTheInfoCount) {
  addInfo("processor : 0\nmodel name : A\n\nprocessor : 1\nmodel name : A\n");
  EXPECT_EQ(read({0, 1}).at(0).cpus, (Cpus{0, 1}));
}

TEST_F(CpuTopologyTest, APlaceNamesCoreAndPackage) {
  setOnline("0-3");
  for (unsigned cpu = 0; cpu < 4; ++cpu)
    addCpu(cpu, cpu < 2 ? 0 : 1, static_cast<int>(5 + cpu % 2));
  const auto places = usablePlaces(read({0, 1, 3}));
  ASSERT_EQ(places.size(), 3U);
  EXPECT_EQ(places[1].cpu, 1U);
  EXPECT_EQ(places[1].core, 6U);
  EXPECT_EQ(places[1].package, 0U);
  EXPECT_EQ(places[2].cpu, 3U);
  EXPECT_EQ(places[2].core, 6U);
  EXPECT_EQ(places[2].package, 1U);
}

class CpuCachesTest : public ::testing::Test {
 protected:
  void addCache(unsigned index, const char* level, const char* type, const char* size,
                const char* threads) {
    const std::string folder =
        "sys/devices/system/cpu/cpu2/cache/index" + std::to_string(index) + "/";
    tree.add(folder + "level", std::string(level) + "\n");
    tree.add(folder + "type", std::string(type) + "\n");
    tree.add(folder + "size", std::string(size) + "\n");
    tree.add(folder + "shared_cpu_list", std::string(threads) + "\n");
  }
  FileTree tree;
};

TEST_F(CpuCachesTest, AreThoseForDataFromTheNearestOn) {
  addCache(0, "3", "Unified", "2M", "0-7");
  addCache(1, "1", "Instruction", "64K", "2");
  addCache(2, "1", "Data", "48K", "2,6");
  const auto caches = readCpuCaches(tree.root(), 2);
  ASSERT_EQ(caches.size(), 2U);
  EXPECT_EQ(caches[0].level, 1U);
  EXPECT_EQ(caches[0].bytes, 48U * 1024);
  EXPECT_EQ(caches[0].threads, 2U);
  EXPECT_EQ(caches[1].level, 3U);
  EXPECT_EQ(caches[1].bytes, 2U * 1024 * 1024);
  EXPECT_EQ(caches[1].threads, 8U);
}

TEST_F(CpuCachesTest, ACacheWithoutASizeIsLeftOut) {
  addCache(0, "1", "Data", "", "2");
  addCache(1, "2", "Unified", "1G", "");
  const auto caches = readCpuCaches(tree.root(), 2);
  ASSERT_EQ(caches.size(), 1U);
  EXPECT_EQ(caches[0].bytes, 1024U * 1024 * 1024);
  EXPECT_EQ(caches[0].threads, 1U);
}

TEST_F(CpuCachesTest, AreUnknownWithoutTheFiles) {
  EXPECT_TRUE(readCpuCaches(tree.root(), 2).empty());
}

TEST(CpuTopology, ThisMachineHasAProcessorThatCanBeUsed) {
  const auto packages = queryCpuPackages();
  ASSERT_FALSE(packages.empty());
  std::size_t usable = 0;
  for (const CpuPackage& package : packages) usable += package.cpus.size();
  EXPECT_GT(usable, 0U);
}

}  // namespace
}  // namespace providers
