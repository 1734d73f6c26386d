#include <gtest/gtest.h>

#include "engine/plan/Estimate.h"
#include "engine/plan/Prepared.h"
#include "tests/engine/plan/SampleOffers.h"

namespace engine {
namespace {

using Texts = std::vector<std::string>;

PlannedTest entry(const std::string& name) {
  PlannedTest test;
  test.tests.name = name;
  return test;
}

Plan planOf(const Texts& names) {
  Plan plan;
  plan.groups.emplace_back();
  for (const std::string& name : names) plan.groups[0].tests.push_back(entry(name));
  return plan;
}

Texts testsOf(const Plan& plan, const std::vector<OfferedTest>& offer) {
  Texts tests;
  for (const PreparedGroup& group : prepare(plan, offer).groups) {
    for (const PreparedTest& test : group.tests) {
      tests.push_back(offer[test.test].service + ' ' + offer[test.test].device);
    }
  }
  return tests;
}

std::string refusal(const Plan& plan, const std::vector<OfferedTest>& offer) {
  try {
    prepare(plan, offer);
    return "prepared";
  } catch (const PlanError& error) {
    return error.what();
  }
}

struct SelectionRow {
  const char* name;
  Texts names, excluded;
  Texts tests;
};

class Selections : public testing::TestWithParam<SelectionRow> {};

TEST_P(Selections, AreTheTestsThatRun) {
  Plan plan = planOf(GetParam().names);
  for (const std::string& name : GetParam().excluded) plan.excluded.push_back({name, {}});
  EXPECT_EQ(testsOf(plan, smallMachine()), GetParam().tests);
}

const Texts kHarmless = {"Memory Test mem0", "Fan Test fan0", "Fan Test fan1",
                         "Disk Read Test disk0"};
const SelectionRow kSelectionRows[] = {
    {"All", {"*"}, {}, kHarmless},
    {"InTheirOrder", {"Fan Test,fan1,*", "Memory Test"}, {}, {"Fan Test fan1", "Memory Test mem0"}},
    {"TwiceByName",
     {"mem0", "Memory Test", "Memory Test"},
     {},
     {"Memory Test mem0", "Memory Test mem0", "Memory Test mem0"}},
    {"OnceByPatterns", {"Memory Test", "mem0", "Mem*"}, {}, {"Memory Test mem0"}},
    {"WithoutADevice",
     {"*"},
     {"fan0"},
     {"Memory Test mem0", "Fan Test fan1", "Disk Read Test disk0"}},
    {"WithoutAServiceOnAllDevices",
     {"*"},
     {"Fan Test"},
     {"Memory Test mem0", "Disk Read Test disk0"}},
    {"WithoutAPattern", {"*"}, {"*[FD]i*", "*Fan*"}, {"Memory Test mem0"}},
    {"ExclusionGoesBeforeAName", {"Memory Test", "fan0"}, {"mem0"}, {"Fan Test fan0"}},
    {"ExclusionGoesBeforeTheRefusal", {"*", "Disk Write Test"}, {"Disk Write Test"}, kHarmless},
};
INSTANTIATE_TEST_SUITE_P(All, Selections, testing::ValuesIn(kSelectionRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Prepared, AnUnknownNameOrExclusionIsRefused) {
  EXPECT_EQ(refusal(planOf({"mem0", "fan9"}), smallMachine()),
            "unknown test \"fan9\"; close to it: \"fan0\", \"fan1\"");
  Plan plan = planOf({"*"});
  plan.excluded.push_back({"zzzzzzz*", {}});
  EXPECT_EQ(refusal(plan, smallMachine()), "no test fits \"zzzzzzz*\"; diags list names the tests");
}

TEST(Prepared, TheRefusalOfAFilesNameSaysWhere) {
  Plan plan = planOf({"zzzzzzz"});
  plan.groups[0].tests[0].tests.place = {"night.toml", 4, 2};
  EXPECT_EQ(refusal(plan, smallMachine()),
            "night.toml:4:2: unknown test \"zzzzzzz\"; diags list names the tests");
}

TEST(Prepared, AnOptionalTestMayBeMissing) {
  Plan plan = planOf({"Tape Test*", "Memory Test"});
  plan.groups[0].tests[0].isOptional = true;
  EXPECT_EQ(testsOf(plan, smallMachine()), Texts{"Memory Test mem0"});
}

TEST(Prepared, AServiceMeansEveryDeviceOnlyWhereTheEntrySaysSo) {
  Plan plan = planOf({"Fan Test"});
  EXPECT_EQ(refusal(plan, smallMachine()).substr(0, 14), "ambiguous test");
  plan.groups[0].tests[0].isEveryDevice = true;
  EXPECT_EQ(testsOf(plan, smallMachine()), (Texts{"Fan Test fan0", "Fan Test fan1"}));
}

struct PermissionRow {
  const char* name;
  OfferedTest test;
  const char* reason;
  void (*allow)(Plan& plan);
};

class Permissions : public testing::TestWithParam<PermissionRow> {};

TEST_P(Permissions, AreNeededByDeviceOrPattern) {
  Plan plan = planOf({"odd0", "*"});
  const std::vector<OfferedTest> offer = {GetParam().test, offered("Fan Test", "fan0")};
  const PreparedPlan prepared = prepare(plan, offer);
  ASSERT_EQ(prepared.skipped.size(), 1u);
  EXPECT_EQ(prepared.skipped[0].test, 0u);
  EXPECT_EQ(prepared.skipped[0].reason, GetParam().reason);
  EXPECT_EQ(testsOf(plan, offer), Texts{"Fan Test fan0"});
  GetParam().allow(plan);
  EXPECT_EQ(testsOf(plan, offer), (Texts{"Odd Test odd0", "Fan Test fan0"}));
  EXPECT_TRUE(prepare(plan, offer).skipped.empty());
}

TEST_P(Permissions, AreNeededByNameOrTheTestIsRefused) {
  Plan plan = planOf({"Odd Test"});
  EXPECT_EQ(refusal(plan, {GetParam().test}),
            "test \"Odd Test,odd0,The odd0\" is refused: " + std::string(GetParam().reason));
  GetParam().allow(plan);
  EXPECT_EQ(refusal(plan, {GetParam().test}), "prepared");
}

const PermissionRow kPermissionRows[] = {
    {"ToDestroy", destructive(offered("Odd Test", "odd0")),
     "it may destroy data, and allow-destructive is not set",
     [](Plan& plan) { plan.allowDestructive = true; }},
    {"ToDisturb", risky(offered("Odd Test", "odd0")),
     "it may disturb the machine, and allow-disruptive is not set",
     [](Plan& plan) { plan.allowDisruptive = true; }},
};
INSTANTIATE_TEST_SUITE_P(All, Permissions, testing::ValuesIn(kPermissionRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Prepared, OnePermissionIsNotTheOther) {
  Plan plan = planOf({"Odd Test"});
  const std::vector<OfferedTest> both = {destructive(risky(offered("Odd Test", "odd0")))};
  plan.allowDestructive = true;
  EXPECT_NE(refusal(plan, both), "prepared");
  plan.allowDestructive = false;
  plan.allowDisruptive = true;
  EXPECT_NE(refusal(plan, both), "prepared");
  plan.allowDestructive = true;
  EXPECT_EQ(refusal(plan, both), "prepared");
}

TEST(Prepared, WhatAsksTheUserIsLeftOutOnlyWhereThePlanSaysSo) {
  Plan plan = planOf({"*"});
  const std::vector<OfferedTest> offer = {interactive(offered("Key Test", "key0")),
                                          offered("Fan Test", "fan0")};
  EXPECT_EQ(testsOf(plan, offer).size(), 2u);
  plan.allowInteractive = false;
  EXPECT_EQ(testsOf(plan, offer), Texts{"Fan Test fan0"});
  EXPECT_EQ(prepare(plan, offer).skipped[0].reason,
            "it asks the user for something, and interactive is false");
}

TEST(Prepared, ASkippedTestIsNamedOnce) {
  EXPECT_EQ(prepare(planOf({"*", "disk0"}), smallMachine()).skipped.size(), 1u);
}

TEST(Prepared, APlanThatLeavesNothingIsRefusedWithTheReason) {
  EXPECT_THROW(prepare(planOf({"*"}), {destructive(offered("Disk Test", "disk0"))}), NothingToRun);
  EXPECT_EQ(refusal(planOf({"*"}), {destructive(offered("Disk Test", "disk0"))}),
            "nothing to run; \"Disk Test,disk0,The disk0\" is skipped: it may destroy data, and "
            "allow-destructive is not set");
  Plan plan = planOf({"*"});
  plan.quick = std::chrono::seconds(1);
  EXPECT_EQ(refusal(plan, {offered("Disk Test", "disk0", 2)}),
            "nothing to run: no estimate fits into 1s");
}

struct QuickRow {
  const char* name;
  int seconds;
  Texts tests;
};

class QuickRuns : public testing::TestWithParam<QuickRow> {};

TEST_P(QuickRuns, HoldWhatFitsInShortestFirst) {
  Plan plan = planOf({"*"});
  plan.quick = std::chrono::seconds(GetParam().seconds);
  const std::vector<OfferedTest> offer = {offered("Long", "a", 60),   offered("Unknown", "b"),
                                          offered("Short", "c", 5),   offered("Other", "d", 5),
                                          offered("Middle", "e", 20), offered("Latest", "f", 1)};
  EXPECT_EQ(testsOf(plan, offer), GetParam().tests);
}

const QuickRow kQuickRows[] = {
    {"One", 10, {"Latest f"}},
    {"NotQuiteFour", 54, {"Latest f", "Short c", "Other d"}},
    {"Four", 55, {"Latest f", "Short c", "Other d", "Middle e"}},
    {"All", 120, {"Latest f", "Short c", "Other d", "Middle e", "Long a"}},
};
INSTANTIATE_TEST_SUITE_P(All, QuickRuns, testing::ValuesIn(kQuickRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Prepared, QuickRunsTakeTheShortestOfAllGroups) {
  Plan plan = planOf({"Memory Test", "fan0"});
  plan.groups.push_back(planOf({"Disk Read Test", "fan1"}).groups[0]);
  plan.quick = std::chrono::seconds(55);
  EXPECT_EQ(testsOf(plan, smallMachine()),
            (Texts{"Fan Test fan0", "Memory Test mem0", "Fan Test fan1"}));
}

TEST(Prepared, RepetitionsCountForQuickRuns) {
  Plan plan = planOf({"Fan Test,fan0,*", "Memory Test"});
  plan.groups[0].tests[0].repeat = 3;
  plan.groups[0].repeat = 2;
  plan.quick = std::chrono::seconds(60);
  EXPECT_EQ(testsOf(plan, smallMachine()), Texts{"Fan Test fan0"});
  plan.quick = std::chrono::seconds(130);
  EXPECT_EQ(testsOf(plan, smallMachine()).size(), 2u);
}

TEST(Prepared, TheTimeLimitIsThreeEstimatesAndNoLessThanFiveMinutes) {
  const PreparedPlan prepared = prepare(
      planOf({"mem0", "Long"}), {offered("Memory Test", "mem0", 30), offered("Long", "l", 200)});
  EXPECT_EQ(prepared.groups[0].tests[0].timeout, std::chrono::minutes(5));
  EXPECT_EQ(prepared.groups[0].tests[1].timeout, std::chrono::minutes(10));
  EXPECT_EQ(defaultTimeLimit(0), std::chrono::minutes(5));
}

// Catches a default limit that ends a run which was told to take longer.
TEST(Prepared, TheTimeLimitFollowsTheLoopsThatAreAskedFor) {
  Plan plan = planOf({"Memory Test"});
  plan.settings = {{"loops", "100", {}}};
  const PreparedTest test = prepare(plan, smallMachine()).groups[0].tests[0];
  EXPECT_EQ(test.estimate, 3'000);
  EXPECT_EQ(test.timeout, std::chrono::seconds(9'000));
}

struct EstimateRow {
  const char* name;
  double estimate;
  SettingValues settings;
  double expected;
};

SettingValues loops(const std::string& kinds, const std::string& parameters) {
  return {{"LoopControlParameter", parameters}, {"LoopControl", kinds}};
}

TEST(Estimate, FollowsTheLoops) {
  const EstimateRow rows[] = {
      {"Default", 8, {}, 8},
      {"OtherSettings", 8, {{"Seed", "5"}}, 8},
      {"PartOfASecond", 0.5, {}, 0.5},
      {"Unknown", 0, {}, 0},
      {"NobodyCanTell", 8, loops("3", "2x"), 0},
      {"Negative", -1, {}, 0},
      {"Loops", 8, loops("3", "10"), 80},
      {"UnknownLoops", 0, loops("3", "10"), 0},
      {"Seconds", 8, loops("4", "60"), 68},
      {"SecondsOfTheUnknown", 0, loops("4", "60"), 60},
      {"LoopsFirst", 8, loops("3,4", "2,60"), 16},
      {"SecondsFirst", 8, loops("3,4", "1000,60"), 68},
      {"NoParameter", 8, loops("3,4", ""), 8},
      {"OddParameter", 8, loops("5", "x"), 8},
      {"OnlyKinds", 8, {{"LoopControl", "3"}}, 8},
      {"PlainLoops", 8, {{"Loops", "10"}}, 80},
      {"PlainSeconds", 8, {{"Seconds", "60"}}, 68},
      {"NoPlainLoops", 8, {{"Loops", "0"}, {"Seconds", "0"}}, 8},
      {"OnePlainLoop", 8, {{"Loops", "1"}, {"Seconds", "60"}}, 68},
      {"BothPlain", 8, {{"Loops", "2"}, {"Seconds", "60"}}, 16},
  };
  for (const EstimateRow& row : rows) {
    EXPECT_EQ(expectedSeconds(offered("A", "a", row.estimate), row.settings), row.expected)
        << row.name;
  }
}

TEST(Estimate, GrowsWithTheShareThatIsToBeCovered) {
  OfferedTest test = offered("A", "a", 8);
  const SettingValues half = {{"PercentOfTestCoverage", "50"}};
  EXPECT_EQ(expectedSeconds(test, half), 8) << "it has no such setting";
  test.settings.push_back({"PercentOfTestCoverage", "uint8", "", ""});
  EXPECT_EQ(expectedSeconds(test, half), 8) << "nobody knows what it covers else";
  test.settings.back().value = "5";
  EXPECT_EQ(expectedSeconds(test, half), 80);
  EXPECT_EQ(expectedSeconds(test, {{"PercentOfTestCoverage", "50"}, {"Loops", "2"}}), 160);
  EXPECT_EQ(expectedSeconds(test, {}), 8);
}

/// Says the same thing differently on each level.
Plan planOfLevels() {
  Plan plan = planOf({"Memory Test", "fan0", "fan1"});
  plan.timeout = std::chrono::seconds(1);
  plan.settings = {{"Seed", "1", {}}, {"size", "1", {}}};
  plan.limits = {{"A", 1.0, std::nullopt, {}}};
  plan.groups[0].settings = {{"Seed", "2", {}}};
  plan.groups[0].limits = {{"B", 1.0, std::nullopt, {}}};
  plan.groups[0].tests[0].timeout = std::chrono::seconds(3);
  plan.groups[0].tests[0].settings = {{"Seed", "3", {}}};
  return plan;
}

TEST(Prepared, TheInnerLevelGoesBeforeTheOuter) {
  Plan plan = planOfLevels();
  const PreparedTest memory = prepare(plan, smallMachine()).groups[0].tests[0];
  EXPECT_EQ(memory.timeout, std::chrono::seconds(3));
  EXPECT_EQ(memory.settings, (SettingValues{{"NumberOfBytes", "1"}, {"Seed", "3"}}));
  ASSERT_EQ(memory.limits.size(), 2u);
  EXPECT_EQ(memory.limits[0].measurement, "A");
  EXPECT_EQ(memory.limits[1].measurement, "B");
  plan.groups[0].tests[0].settings.clear();
  EXPECT_EQ(prepare(plan, smallMachine()).groups[0].tests[0].settings.back().second, "2");
}

TEST(Prepared, SettingsReachOnlyTheTestsThatHaveThem) {
  const PreparedPlan prepared = prepare(planOfLevels(), smallMachine());
  EXPECT_TRUE(prepared.groups[0].tests[1].settings.empty());
  EXPECT_EQ(prepared.groups[0].tests[1].timeout, std::chrono::seconds(1));
}

TEST(Prepared, AGroupsTimeLimitStandsBetweenThePlansAndTheTests) {
  Plan plan = planOfLevels();
  plan.groups[0].timeout = std::chrono::seconds(2);
  const PreparedPlan prepared = prepare(plan, smallMachine());
  EXPECT_EQ(prepared.groups[0].tests[0].timeout, std::chrono::seconds(3));
  EXPECT_EQ(prepared.groups[0].tests[1].timeout, std::chrono::seconds(2));
}

TEST(Prepared, ASettingThatNoneOfTheTestsInItsReachHasIsRefused) {
  for (const int level : {0, 1, 2}) {
    Plan plan = planOf({"fan0"});
    const std::vector<SettingText> settings = {{"Seed", "1", {"p.toml", 9, 1}}};
    if (level == 0) plan.settings = settings;
    if (level == 1) plan.groups[0].settings = settings;
    if (level == 2) plan.groups[0].tests[0].settings = settings;
    EXPECT_EQ(
        refusal(plan, smallMachine()),
        "p.toml:9:1: unknown setting \"Seed\"; diags list --long names the settings of each test")
        << level;
  }
}

TEST(Prepared, TheOwnSeedOfAGroupGoesBeforeThePlans) {
  Plan plan = planOf({"fan0"});
  plan.groups.push_back(plan.groups[0]);
  plan.shuffle = 7;
  plan.groups[1].shuffle = 8;
  const PreparedPlan prepared = prepare(plan, smallMachine());
  EXPECT_EQ(prepared.groups[0].shuffle, std::optional<std::uint64_t>(7));
  EXPECT_EQ(prepared.groups[1].shuffle, std::optional<std::uint64_t>(8));
}

}  // namespace
}  // namespace engine
