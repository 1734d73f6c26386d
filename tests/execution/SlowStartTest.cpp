#include <gtest/gtest.h>

#include "tests/execution/JobWorld.h"

/// The tests whose identifier contains "BRCM" are given time in states 3 and 4.
namespace support {
namespace {

/// `count` times a wait of five seconds.
Events waits(int count) { return Events(static_cast<std::size_t>(count), waited()); }

TEST(SlowStart, IsWaitedForTenTimesAndThenTheTestIsGivenUp) {
  for (const std::uint16_t state : {std::uint16_t{3}, std::uint16_t{4}}) {
    JobWorld world({{state, 5}}, "BRCM Test");
    world.follow();
    EXPECT_EQ(world.course(),
              text(joined({{shownFirst(5), polled(state, 5)}, waits(11), {polled(state, 5)}})));
    EXPECT_EQ(world.journal.countOf("class CIM_ConcreteJob.GetNamespace({})"), 13);
  }
}

TEST(SlowStart, EachWaitFetchesTheJobAndReadsThePercentageFirst) {
  JobWorld world({{4, 0}, {4, 0}, {7, 100}}, "BRCM Test");
  world.follow();
  const std::string path = "root/cimv2:CIM_ConcreteJob.InstanceID=\"job-1\"";
  const std::string journal = world.journal.allButFlushes();
  EXPECT_EQ(
      journal.substr(journal.find(polled(4, 0))),
      text(joined({{polled(4, 0), waited(), waited(), "class CIM_ConcreteJob.GetNamespace({})",
                    "ns cmpi.GetInstance(" + path + ", {nspID=\"cmpi\"})"},
                   valueRead("job1/3", "PercentComplete"),
                   valueRead("job1/3", "JobState"),
                   {shownLater(100)}})));
}

TEST(SlowStart, TheProgressWithinTheWaitIsShownOnce) {
  JobWorld world({{3, 0}, {3, 1}, {4, 10}, {4, 20}, {5, 30}, {7, 100}}, "BRCM Test");
  world.follow();
  EXPECT_EQ(world.course(),
            text(joined({{shownFirst(0), polled(3, 1)},
                         waits(4),
                         {shownLater(30), polled(7, 100), waited(), shownLater(100)}})));
}

TEST(SlowStart, ThePatienceIsForTheWholeRun) {
  // State 5 interrupts the waiting: 4 waits are spent, then 6, then none is left.
  std::vector<JobReading> readings = {{4, 0}, {4, 0}};
  readings.insert(readings.end(), 3, {4, 0});
  readings.push_back({5, 10});
  readings.push_back({4, 10});
  readings.insert(readings.end(), 5, {4, 10});
  readings.push_back({4, 20});
  JobWorld world(readings, "BRCM Test");
  world.follow();
  EXPECT_EQ(world.course(), text(joined({{shownFirst(0), polled(4, 0)},
                                         waits(5),
                                         {shownLater(10), polled(4, 10)},
                                         waits(7),
                                         {shownLater(20), polled(4, 20)}})));
}

TEST(SlowStart, ATestWhosePatienceIsSpentEndsEvenWhenItGoesOn) {
  std::vector<JobReading> readings(12, {4, 0});
  readings.push_back({5, 90});
  JobWorld world(readings, "BRCM Test");
  world.follow();
  EXPECT_EQ(world.course(),
            text(joined({{shownFirst(0), polled(4, 0)}, waits(11), {polled(5, 90)}})));
}

TEST(SlowStart, InOtherStatesThereIsNoExtraWait) {
  JobWorld world({{2, 0}, {5, 10}, {5, 20}, {7, 100}}, "BRCM Test");
  world.follow();
  EXPECT_EQ(world.course(),
            lines({shownFirst(0), polled(5, 10), waited(), shownLater(10), polled(5, 20), waited(),
                   shownLater(20), polled(7, 100), waited(), shownLater(100)}));
}

TEST(SlowStart, ACompletedPercentageDoesNotEndTheWaitInStates3And4) {
  JobWorld world({{4, 0}, {4, 0}, {4, 100}, {4, 100}, {7, 100}}, "BRCM Test");
  world.follow();
  EXPECT_EQ(world.course(),
            text(joined({{shownFirst(0), polled(4, 0)}, waits(4), {shownLater(100)}})));
}

TEST(SlowStart, OtherTestsAreNotWaitedFor) {
  std::vector<JobReading> readings(20, {4, 0});
  readings.push_back({7, 100});
  JobWorld world(readings, "brcm Test");
  world.follow();
  EXPECT_EQ(world.platform.sleptMilliseconds(), 5000U * 20U);
}

TEST(SlowStart, TheNameIsSoughtInTheWholeIdentifier) {
  World world;
  const ScriptedTest test = world.addTest("Link Test", "BRCM0", "NIC");
  const NZELVOR20::TCIMReference job = world.finishJob(test, "job-1", {{4, 0}});
  diagsrunner::JobMonitor(job, test.id, {}).follow();
  EXPECT_EQ(world.platform.sleptMilliseconds(), 55000U);
}

}  // namespace
}  // namespace support
