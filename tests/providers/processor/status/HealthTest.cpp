#include <gtest/gtest.h>

#include "providers/processor/status/Health.h"
#include "tests/providers/FileTree.h"

namespace providers {
namespace {

using Cpus = std::vector<unsigned>;

class HealthTest : public ::testing::Test {
 protected:
  HealthTest() {
    addCpu("present", "0-3");
    addCpu("online", "0-3");
    tree.add("proc/cpuinfo",
             "processor\t: 0\nmodel name\t: Fast\nmicrocode\t: 0x2b\n\nprocessor\t: 1\n"
             "microcode\t: 0x2b\n");
    tree.add("proc/sys/kernel/tainted", "0\n");
  }
  void addCpu(const std::string& file, const std::string& text) {
    tree.add("sys/devices/system/cpu/" + file, text + "\n");
  }
  Health read(const Cpus& cpus = {0, 1}) { return readHealth(tree.root(), cpus); }
  std::vector<std::string> lines() {
    std::vector<std::string> all;
    for (const Concern& concern : concerns(read())) all.push_back(concern.line());
    return all;
  }

  FileTree tree;
};

// Catches text of the machine that goes to a terminal as it is.
TEST_F(HealthTest, WhatCannotBeShownOfATextIsNot) {
  tree.add("proc/cpuinfo",
           "processor\t: 0\nmicrocode\t: 0x\x1b[2J" + std::string(5000, 'A') + "\n");
  const std::string microcode = read({0}).threads.at(0).microcode;
  EXPECT_EQ(microcode.substr(0, 6), "0x?[2J");
  EXPECT_EQ(microcode.size(), 32U);
}

TEST_F(HealthTest, WhatIsKnownOfAThreadIsRead) {
  addCpu("cpu1/cpufreq/scaling_cur_freq", "2345678");
  addCpu("cpu1/thermal_throttle/core_throttle_count", "7");
  addCpu("cpu1/thermal_throttle/package_throttle_count", "8");
  tree.add(
      "proc/interrupts",
      "           CPU0       CPU1\n NMI:  5 6  Non-maskable interrupts\n MCE:          0          3"
      "   Machine check exceptions\n MCP: 4 4 Machine check polls\n");
  const Health health = read();
  ASSERT_EQ(health.threads.size(), 2U);
  EXPECT_EQ(health.threads[1].cpu, 1U);
  EXPECT_EQ(health.threads[1].microcode, "0x2b");
  EXPECT_EQ(health.threads[1].megahertz, 2345U);
  EXPECT_EQ(health.threads[1].coreThrottles, 7U);
  EXPECT_EQ(health.threads[1].packageThrottles, 8U);
  EXPECT_EQ(health.threads[1].machineChecks, 3U);
  EXPECT_EQ(health.threads[0].machineChecks, 0U);
  EXPECT_FALSE(health.threads[0].megahertz);
  EXPECT_EQ(healthText(health),
            "CPU 0: microcode 0x2b, clock rate unknown, throttled unknown times by its core and "
            "unknown by its package, machine checks 0\n"
            "CPU 1: microcode 0x2b, 2345 MHz, throttled 7 times by its core and 8 by its package, "
            "machine checks 3\n");
  const auto found = lines();
  ASSERT_EQ(found.size(), 1U);
  EXPECT_NE(found[0].find("CPU 1 has had 3 machine checks"), std::string::npos);
}

TEST_F(HealthTest, AHealthyMachineGivesNoCauseForConcern) { EXPECT_TRUE(lines().empty()); }

TEST_F(HealthTest, AMachineThatTellsNothingGivesNoCauseForConcernAndIsNotKnown) {
  const Health health = readHealth(tree.root() + "/nowhere", {0});
  EXPECT_TRUE(concerns(health).empty());
  EXPECT_FALSE(isKnown(health));
  EXPECT_TRUE(isKnown(read()));
}

TEST_F(HealthTest, ColumnsAreThoseOfTheFirstLine) {
  tree.add("proc/interrupts", "  CPU1 CPU3\nMCE: 5 6 Machine check exceptions\n");
  const Health health = read({0, 1, 3});
  EXPECT_FALSE(health.threads[0].machineChecks);
  EXPECT_EQ(health.threads[1].machineChecks, 5U);
  EXPECT_EQ(health.threads[2].machineChecks, 6U);
}

TEST_F(HealthTest, AMachineCheckThatTheSystemRemembersIsTold) {
  tree.add("proc/sys/kernel/tainted", "4113\n");  // 4096 + 16 + 1
  EXPECT_EQ(lines().size(), 1U);
  tree.add("proc/sys/kernel/tainted", "4097\n");
  EXPECT_TRUE(lines().empty());
}

TEST_F(HealthTest, AMachineCheckIsToldOnce) {
  tree.add("proc/sys/kernel/tainted", "16\n");
  tree.add("proc/interrupts", "CPU0\nMCE: 1\n");
  EXPECT_EQ(lines().size(), 1U);
}

TEST_F(HealthTest, DifferentMicrocodeIsTold) {
  tree.add("proc/cpuinfo",
           "processor\t: 0\nmicrocode\t: 0x2b\n\nprocessor\t: 1\nmicrocode\t: 0x2c\n");
  ASSERT_EQ(lines().size(), 1U);
  EXPECT_EQ(lines()[0], "Threads have different microcode: update the firmware");
}

TEST_F(HealthTest, ThreadsThatAreOffAreNamed) {
  addCpu("online", "0-1,3");
  ASSERT_EQ(lines().size(), 1U);
  EXPECT_NE(lines()[0].find("CPUs 2 are there, but switched off"), std::string::npos);
  EXPECT_NE(healthText(read()).find("Switched off: CPUs 2\n"), std::string::npos);
}

TEST_F(HealthTest, ThreadsThatAreOffOnPurposeAreNoCauseForConcern) {
  addCpu("online", "0,2");
  for (const char* state : {"off", "forceoff"}) {
    addCpu("smt/control", state);
    EXPECT_TRUE(lines().empty()) << state;
    EXPECT_NE(healthText(read()).find("CPUs 1,3, with the second threads"), std::string::npos);
  }
  addCpu("smt/control", "on");
  EXPECT_EQ(lines().size(), 1U);
}

TEST_F(HealthTest, WithoutAListOfThoseInUseNoneIsOff) {
  addCpu("online", "");
  EXPECT_TRUE(read().off.empty());
}

}  // namespace
}  // namespace providers
