#include <gtest/gtest.h>

#include "engine/plan/DryRun.h"
#include "tests/engine/plan/SampleOffers.h"

namespace engine {
namespace {

Plan planOfAll() {
  Plan plan;
  plan.groups.emplace_back();
  plan.groups[0].tests.emplace_back();
  plan.groups[0].tests[0].tests.name = "*";
  return plan;
}

TEST(DryRun, NamesEachRunWithWhatIsSaidAboutIt) {
  Plan plan = planOfAll();
  plan.title = "Night";
  plan.settings = {{"seed", "7", {}}};
  plan.limits = {{"Bandwidth", 5.0, 9.5, {}}};
  EXPECT_EQ(dryRun(plan, {withMemorySettings(offered("Memory Test", "mem0", 200)),
                          offered("Fan Test", "fan0"), destructive(offered("Disk Test", "d0", 9))}),
            "Plan: Night\n"
            "   1  Memory Test,mem0,The mem0: about 3m25s, at most 10m\n"
            "       Seed = 7\n"
            "       Bandwidth: at least 5, at most 9.5\n"
            "   2  Fan Test,fan0,The fan0: no estimate, at most 5m\n"
            "       Bandwidth: at least 5, at most 9.5\n"
            "Skipped: Disk Test,d0,The d0: it may destroy data, and allow-destructive is not set\n"
            "2 runs, about 3m25s and 1 test without an estimate\n");
}

TEST(DryRun, SeveralAtATimeTakeAsLongAsTheLongest) {
  Plan plan = planOfAll();
  plan.jobs = 2;
  EXPECT_EQ(dryRun(plan, {offered("A", "a", 60), offered("B", "b", 20), offered("C", "c", 30),
                          offered("D", "a", 10)}),
            "   1  A,a,The a: about 1m5s, at most 5m\n"
            "   2  B,b,The b: about 25s, at most 5m\n"
            "   3  C,c,The c: about 35s, at most 5m\n"
            "   4  D,a,The a: about 15s, at most 5m\n"
            "4 runs, up to 2 at a time, about 1m20s\n");
}

struct RepetitionRow {
  std::optional<std::uint64_t> repeat;
  std::optional<Duration> repeatFor;
  bool untilFailure;
  const char* line;
};

TEST(DryRun, SaysHowOftenAllOfItRuns) {
  const RepetitionRow rows[] = {
      {3, std::nullopt, false, "All of it 3 times\n"},
      {1, std::nullopt, false, ""},
      {std::nullopt, std::chrono::hours(8), false, "All of it for 8h\n"},
      {std::nullopt, std::nullopt, true, "All of it until a test fails\n"},
      {3, std::chrono::hours(8), true, "All of it 3 times, for 8h, until a test fails\n"},
  };
  for (const RepetitionRow& row : rows) {
    Plan plan = planOfAll();
    plan.repeat = row.repeat;
    plan.repeatFor = row.repeatFor;
    plan.untilFailure = row.untilFailure;
    EXPECT_EQ(
        dryRun(plan, {offered("A", "a", 60)}),
        "   1  A,a,The a: about 1m5s, at most 5m\n1 run, about 1m5s\n" + std::string(row.line));
  }
}

/// However short a test is, its job is looked at every five seconds, and once more behind its end.
TEST(DryRun, CountsTheLooksAtTheJob) {
  EXPECT_EQ(dryRun(planOfAll(), {offered("A", "a", 1), offered("B", "b", 6)}),
            "   1  A,a,The a: about 10s, at most 5m\n"
            "   2  B,b,The b: about 15s, at most 5m\n"
            "2 runs, about 25s\n");
}

TEST(DryRun, SaysTheDeadline) {
  Plan plan = planOfAll();
  plan.deadline = std::chrono::minutes(2);
  const std::string text = dryRun(plan, {offered("A", "a", 60)});
  EXPECT_NE(text.find("\nThe whole run: at most 2m\n"), std::string::npos) << text;
}

TEST(DryRun, LeavesOutWhatNobodyReads) {
  Plan plan = planOfAll();
  plan.groups[0].tests[0].repeat = 1'000'000;
  const std::string text = dryRun(plan, {offered("A", "a", 1)});
  EXPECT_NE(text.find("\n 200  A,a,The a: "), std::string::npos);
  EXPECT_EQ(text.find("\n 201 "), std::string::npos);
  EXPECT_NE(text.find("\n      ... and 999800 more\n1000000 runs, longer than "), std::string::npos)
      << text.substr(text.size() - 100);
}

TEST(DryRun, WhatComesFromOutsideIsMadeVisible) {
  Plan plan = planOfAll();
  plan.title = "a\x1b[2J\nb";
  plan.limits = {{"x\n*", 1.0, std::nullopt, {}}};
  plan.settings = {{"Na\x07me", "v\x1b", {}}};
  const std::string text = dryRun(plan, {with(offered("A\x1b[31m", "a"), "string", "Na\x07me"),
                                         destructive(offered("B\n1 run", "b"))});
  for (const char c : text) EXPECT_TRUE(c == '\n' || c >= ' ') << text;
  EXPECT_NE(text.find("Plan: a\\x1b[2J\\x0ab\n"), std::string::npos) << text;
  EXPECT_NE(text.find("\nSkipped: B\\x0a1 run,b,"), std::string::npos) << text;
}

TEST(DryRun, RefusesWhatARunWould) {
  Plan plan = planOfAll();
  plan.groups[0].tests[0].tests.name = "Tape";
  EXPECT_THROW(dryRun(plan, {offered("A", "a", 1)}), PlanError);
}

}  // namespace
}  // namespace engine
