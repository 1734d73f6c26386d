#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "engine/plan/Schedule.h"
#include "tests/engine/plan/SampleOffers.h"

namespace engine {
namespace {

constexpr Duration kStart{0};

Group groupOf(const std::vector<std::string>& names) {
  Group group;
  for (const std::string& name : names) {
    group.tests.emplace_back();
    group.tests.back().tests.name = name;
  }
  return group;
}

Plan planOf(const std::vector<Group>& groups) {
  Plan plan;
  plan.groups = groups;
  return plan;
}

std::vector<OfferedTest> letters(const std::string& devices) {
  std::vector<OfferedTest> offer;
  for (const char device : devices) offer.push_back(offered("Test", std::string(1, device)));
  return offer;
}

/// "a1 b1 a2": device and repetition of each run, one at a time, `most` at most.
std::string sequenceOf(const Plan& plan, const std::vector<OfferedTest>& offer,
                       std::size_t most = 100) {
  Schedule schedule(plan, offer);
  std::string text;
  for (std::size_t i = 0; i < most; ++i) {
    const auto run = schedule.next(kStart);
    if (!run) break;
    EXPECT_EQ(run->number, i + 1);
    text += (text.empty() ? "" : " ") + run->test->device + std::to_string(run->repetition);
    schedule.ended(run->number, false);
  }
  return text;
}

TEST(Sequence, RunsEachTestOnceAsListed) {
  EXPECT_EQ(sequenceOf(planOf({groupOf({"b", "a"})}), letters("abc")), "b1 a1");
}

TEST(Sequence, RepeatsATestBeforeTheNext) {
  Plan plan = planOf({groupOf({"a", "b"})});
  plan.groups[0].tests[0].repeat = 3;
  EXPECT_EQ(sequenceOf(plan, letters("ab")), "a1 a2 a3 b1");
}

TEST(Sequence, RepeatsTheWhole) {
  Plan plan = planOf({groupOf({"a", "b"})});
  plan.repeat = 2;
  EXPECT_EQ(sequenceOf(plan, letters("ab")), "a1 b1 a2 b2");
}

TEST(Sequence, RepeatsAGroupBeforeTheNext) {
  Plan plan = planOf({groupOf({"a", "b"}), groupOf({"c", "a"})});
  plan.groups[0].repeat = 2;
  plan.repeat = 2;
  EXPECT_EQ(sequenceOf(plan, letters("abc")), "a1 b1 a2 b2 c1 a3 a4 b3 a5 b4 c2 a6");
  EXPECT_EQ(Schedule(plan, letters("abc")).total(), std::optional<std::uint64_t>(12));
}

TEST(Sequence, HasNoEndForATimeOrUntilAFailure) {
  Plan plan = planOf({groupOf({"a"})});
  plan.repeatFor = std::chrono::hours(1);
  EXPECT_EQ(sequenceOf(plan, letters("a"), 4), "a1 a2 a3 a4");
  EXPECT_EQ(Schedule(plan, letters("a")).total(), std::nullopt);
  plan.repeatFor.reset();
  plan.untilFailure = true;
  EXPECT_EQ(sequenceOf(plan, letters("a"), 4), "a1 a2 a3 a4");
  plan.repeat = 2;
  EXPECT_EQ(sequenceOf(plan, letters("a"), 4), "a1 a2");
}

TEST(Sequence, ATestListedTwiceCountsOn) {
  EXPECT_EQ(sequenceOf(planOf({groupOf({"Test", "Test"})}), letters("a")), "a1 a2");
}

// Places that a seed has once given must stay: reports name seeds. The numbers come from a second
// program.
TEST(Shuffled, IsTheSameOrderForEver) {
  EXPECT_EQ(shuffled(8, 0, 0), (std::vector<std::uint32_t>{2, 5, 0, 3, 4, 6, 1, 7}));
  EXPECT_EQ(shuffled(8, 42, 0), (std::vector<std::uint32_t>{3, 1, 6, 2, 4, 0, 7, 5}));
  EXPECT_EQ(shuffled(8, 42, 1), (std::vector<std::uint32_t>{7, 4, 1, 2, 5, 6, 0, 3}));
}

TEST(Shuffled, HasEveryPlaceOnce) {
  for (std::uint64_t seed = 0; seed < 100; ++seed) {
    auto order = shuffled(17, seed, 3);
    std::sort(order.begin(), order.end());
    for (std::uint32_t i = 0; i < 17; ++i) ASSERT_EQ(order[i], i);
  }
  EXPECT_TRUE(shuffled(0, 1, 1).empty());
  EXPECT_EQ(shuffled(1, 1, 1), std::vector<std::uint32_t>{0});
}

TEST(Shuffled, PutsEveryNumberToEveryPlaceAboutAsOften) {
  int counts[4][4] = {};
  for (std::uint64_t seed = 0; seed < 4'000; ++seed) {
    const auto order = shuffled(4, seed, 0);
    for (std::size_t place = 0; place < 4; ++place) ++counts[place][order[place]];
  }
  for (const auto& place : counts) {
    for (const int count : place) EXPECT_NEAR(count, 1'000, 150);
  }
}

TEST(Sequence, EachPassIsShuffledAnew) {
  Plan plan = planOf({groupOf({"*"})});
  plan.shuffle = 42;
  plan.repeat = 2;
  const std::string both = sequenceOf(plan, letters("abcdefgh"));
  plan.repeat = 1;
  const std::string first = sequenceOf(plan, letters("abcdefgh"));
  EXPECT_EQ(both.substr(0, first.size()), first);
  std::string again = both.substr(first.size() + 1);
  std::replace(again.begin(), again.end(), '2', '1');
  EXPECT_NE(again, first);
}

TEST(Sequence, AGroupIsShuffledInItself) {
  Plan plan = planOf({groupOf({"a", "b", "c"}), groupOf({"d", "e", "f"})});
  plan.shuffle = 3;
  plan.repeat = 5;
  const std::string text = sequenceOf(plan, letters("abcdef"));
  for (std::size_t i = 0; i < text.size(); i += 3) {
    EXPECT_EQ(text[i] >= 'd', i / 9 % 2 == 1) << text;
  }
}

TEST(Sequence, TooManyRunsOfOnePassAreRefused) {
  Plan plan = planOf({groupOf({"a", "b"})});
  plan.groups[0].tests[0].repeat = kMostRepetitions;
  EXPECT_THROW(Schedule(plan, letters("ab")), PlanError);
  plan.groups[0].tests.pop_back();
  EXPECT_NO_THROW(Schedule(plan, letters("ab")));
}

TEST(Sequence, ATotalThatCannotBeCountedIsUnknown) {
  Plan plan = planOf({groupOf({"a"})});
  plan.groups[0].tests[0].repeat = plan.groups[0].repeat = kMostRepetitions;
  plan.repeat = kMostRepetitions;
  EXPECT_EQ(Schedule(plan, letters("a")).total(),
            std::optional<std::uint64_t>(1'000'000'000'000'000'000));
  for (int i = 0; i < 10; ++i) plan.groups.push_back(plan.groups[0]);
  EXPECT_EQ(Schedule(plan, letters("a")).total(), std::nullopt);
}

struct OverlapRow {
  const char* name;
  OfferedTest one, other;
  bool mayOverlap;
};

class Overlaps : public testing::TestWithParam<OverlapRow> {};

TEST_P(Overlaps, FollowTheRules) {
  PlannedRun one, other;
  one.test = &GetParam().one;
  other.test = &GetParam().other;
  EXPECT_EQ(mayOverlap(one, other), GetParam().mayOverlap);
  EXPECT_EQ(mayOverlap(other, one), GetParam().mayOverlap);
}

const OverlapRow kOverlapRows[] = {
    {"OtherDevices", offered("A", "a"), offered("A", "b"), true},
    {"TheSameDevice", offered("A", "a"), offered("B", "a"), false},
    {"AnExclusiveOne", exclusive(offered("A", "a")), offered("B", "b"), false},
    {"TwoOfMemory", ofMemory(offered("A", "a")), ofMemory(offered("B", "b")), false},
    {"OneOfMemory", ofMemory(offered("A", "a")), offered("B", "b"), true},
    {"NobodyKnowsTheDevice", offered("A", ""), offered("B", "b"), false},
};
INSTANTIATE_TEST_SUITE_P(All, Overlaps, testing::ValuesIn(kOverlapRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Overlap, RunsOfDifferentBlocksHaveNone) {
  const OfferedTest a = offered("A", "a"), b = offered("B", "b");
  PlannedRun one, other;
  one.test = &a;
  other.test = &b;
  other.block = 1;
  EXPECT_FALSE(mayOverlap(one, other));
}

/// The numbers of the runs that begin now.
std::vector<std::uint64_t> beginning(Schedule& schedule, Duration elapsed = kStart) {
  std::vector<std::uint64_t> numbers;
  while (const auto run = schedule.next(elapsed)) numbers.push_back(run->number);
  return numbers;
}

using Numbers = std::vector<std::uint64_t>;

Schedule scheduleOf(const std::vector<OfferedTest>& offer, std::uint64_t jobs,
                    std::optional<std::uint64_t> repeat = 1) {
  Plan plan = planOf({groupOf({"*"})});
  plan.jobs = jobs;
  plan.repeat = repeat;
  return Schedule(plan, offer);
}

TEST(Schedule, BeginsAsManyAsThereAreJobs) {
  Schedule schedule = scheduleOf(letters("abcd"), 2);
  EXPECT_EQ(beginning(schedule), (Numbers{1, 2}));
  schedule.ended(2, false);
  EXPECT_EQ(beginning(schedule), Numbers{3});
  EXPECT_EQ(schedule.running(), 2u);
}

TEST(Schedule, WhatMustWaitIsOvertaken) {
  Schedule schedule = scheduleOf({offered("A", "x"), offered("B", "x"), offered("C", "y")}, 4);
  EXPECT_EQ(beginning(schedule), (Numbers{1, 3}));
  schedule.ended(3, false);
  EXPECT_EQ(beginning(schedule), Numbers{});
  schedule.ended(1, false);
  EXPECT_EQ(beginning(schedule), Numbers{2});
}

// Catches an exclusive test that waits for ever while others come and go.
TEST(Schedule, WhatWaitsIsNotOvertakenByWhatItMustNotOverlap) {
  Schedule schedule =
      scheduleOf({offered("A", "a"), exclusive(offered("B", "b")), offered("C", "c")}, 4);
  EXPECT_EQ(beginning(schedule), Numbers{1});
  schedule.ended(1, false);
  EXPECT_EQ(beginning(schedule), Numbers{2});
  schedule.ended(2, false);
  EXPECT_EQ(beginning(schedule), Numbers{3});
}

TEST(Schedule, RepetitionsOfOneTestKeepTheirOrder) {
  Schedule schedule = scheduleOf(letters("ab"), 4, 3);
  EXPECT_EQ(beginning(schedule), (Numbers{1, 2}));
  schedule.ended(2, false);
  EXPECT_EQ(beginning(schedule), Numbers{4});
  schedule.ended(4, false);
  EXPECT_EQ(beginning(schedule), Numbers{6});
}

TEST(Schedule, AGroupBeginsWhenTheOneBeforeHasEnded) {
  Plan plan = planOf({groupOf({"a", "b"}), groupOf({"c"})});
  plan.jobs = 4;
  plan.repeat = 2;
  Schedule schedule(plan, letters("abc"));
  EXPECT_EQ(beginning(schedule), (Numbers{1, 2}));
  schedule.ended(1, false);
  EXPECT_EQ(beginning(schedule), Numbers{});
  schedule.ended(2, false);
  EXPECT_EQ(beginning(schedule), Numbers{3});
  schedule.ended(3, false);
  EXPECT_EQ(beginning(schedule), (Numbers{4, 5}));
}

TEST(Schedule, NothingBeginsWhenTheTimeIsOver) {
  Plan plan = planOf({groupOf({"a"})});
  plan.repeatFor = std::chrono::seconds(10);
  Schedule schedule(plan, letters("a"));
  EXPECT_EQ(beginning(schedule, std::chrono::seconds(9)), Numbers{1});
  schedule.ended(1, false);
  EXPECT_FALSE(schedule.isOver(std::chrono::milliseconds(9'999)));
  EXPECT_TRUE(schedule.isOver(std::chrono::seconds(10)));
  EXPECT_EQ(beginning(schedule, std::chrono::seconds(10)), Numbers{});
}

TEST(Schedule, TheFirstTestBeginsHoweverLittleTimeThereIs) {
  Plan plan = planOf({groupOf({"a"})});
  plan.repeatFor = std::chrono::milliseconds(1);
  Schedule schedule(plan, letters("a"));
  EXPECT_EQ(beginning(schedule, std::chrono::seconds(1)), Numbers{1});
}

TEST(Schedule, NothingBeginsAfterAFailureWhereThePlanSaysSo) {
  for (const bool untilFailure : {false, true}) {
    Plan plan = planOf({groupOf({"a"})});
    plan.repeat = 3;
    plan.untilFailure = untilFailure;
    Schedule schedule(plan, letters("a"));
    EXPECT_EQ(beginning(schedule), Numbers{1});
    schedule.ended(1, false);
    EXPECT_EQ(beginning(schedule), Numbers{2});
    schedule.ended(2, true);
    EXPECT_EQ(schedule.isOver(kStart), untilFailure);
    EXPECT_EQ(beginning(schedule), untilFailure ? Numbers{} : Numbers{3});
  }
}

TEST(Schedule, AStoppedOneIsOverWhenItsRunsAre) {
  Schedule schedule = scheduleOf(letters("ab"), 1);
  EXPECT_EQ(beginning(schedule), Numbers{1});
  schedule.stop();
  EXPECT_FALSE(schedule.isOver(kStart));
  schedule.ended(1, false);
  EXPECT_TRUE(schedule.isOver(kStart));
  EXPECT_EQ(beginning(schedule), Numbers{});
}

TEST(Schedule, TheEndOfARunThatIsNotUnderWayChangesNothing) {
  Schedule schedule = scheduleOf(letters("a"), 1);
  EXPECT_EQ(beginning(schedule), Numbers{1});
  schedule.ended(7, true);
  EXPECT_EQ(schedule.running(), 1u);
}

TEST(Schedule, ARunHasItsTimeSettingsAndLimits) {
  Plan plan = planOf({groupOf({"*"})});
  plan.timeout = std::chrono::seconds(7);
  plan.settings = {{"Seed", "5", {}}};
  plan.limits = {{"Bandwidth", 1.0, std::nullopt, {}}};
  Schedule made(plan, {with(offered("A", "a"), "uint32", "Seed")});
  Schedule schedule = std::move(made);
  const auto run = schedule.next(kStart);
  ASSERT_TRUE(run);
  EXPECT_EQ(run->test->identifier, "A,a,The a");
  EXPECT_EQ(run->timeout, std::chrono::seconds(7));
  EXPECT_EQ(*run->settings, (SettingValues{{"Seed", "5"}}));
  ASSERT_EQ(run->limits->size(), 1u);
}

}  // namespace
}  // namespace engine
