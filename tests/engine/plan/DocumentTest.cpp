#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "engine/plan/DryRun.h"
#include "engine/plan/PlanFile.h"
#include "engine/plan/Prepared.h"
#include "tests/engine/plan/SampleOffers.h"

namespace engine {
namespace {

std::string content(const std::string& name) {
  std::ifstream file(std::string(DIAGS_SOURCE_DIR) + '/' + name);
  EXPECT_TRUE(file) << name;
  return {std::istreambuf_iterator<char>(file), {}};
}

/// The blocks of that language in the page about plans.
std::vector<std::string> blocks(const std::string& language) {
  const std::string page = content("docs/plans.md");
  const std::string fence = "```" + language + "\n";
  std::vector<std::string> found;
  std::size_t start = page.find(fence);
  for (; start != std::string::npos; start = page.find(fence, start)) {
    start += fence.size();
    found.push_back(page.substr(start, page.find("```", start) - start));
  }
  return found;
}

OfferedTest withSettings(OfferedTest test) {
  for (const char* setting :
       {"HaltOnError boolean", "QuickMode boolean", "PercentOfTestCoverage uint8",
        "LoopControlParameter string[]", "LoopControl uint16[]", "NumberOfBytes uint64",
        "Seed uint32", "Loops uint32", "Seconds uint32", "VerbosityLevel uint16[]"}) {
    const std::string text = setting;
    const std::size_t blank = text.find(' ');
    test = with(std::move(test), text.substr(blank + 1), text.substr(0, blank));
  }
  return test;
}

/// The built-in tests as they describe themselves, on a machine with two processors.
std::vector<OfferedTest> builtIn() {
  return {ofMemory(withSettings(offered("DIAGS: Memory Moving Inversions Random", "mem0", 8))),
          withSettings(offered("DIAGS: Processor Stress", "cpu0", 8)),
          withSettings(offered("DIAGS: Processor Stress", "cpu1", 8))};
}

TEST(PlansPage, ItsPlansAreReadAndFitTheBuiltInTests) {
  std::vector<OfferedTest> offer = builtIn();
  offer.push_back(offered("Fan Test", "fan0"));
  offer.push_back(with(offered("Disk Test", "disk7"), "uint16[]", "VerbosityLevel"));
  offer.push_back(with(offered("Disk Test", "disk1"), "uint16[]", "VerbosityLevel"));
  const auto plans = blocks("toml");
  ASSERT_EQ(plans.size(), 2u);
  for (const std::string& text : plans) {
    EXPECT_FALSE(prepare(planFrom(text, "docs/plans.md"), offer).groups.empty()) << text;
  }
}

/// The keys that a table of a plan may have, by the message that names them.
std::vector<std::string> keysOf(const std::string& table) {
  std::vector<std::string> keys;
  try {
    planFrom(table + "\nxyzxyzxyzxyzxyz = 1", "p");
  } catch (const PlanError& error) {
    const std::string message = error.what();
    const std::string list = message.substr(message.find("may have ") + 9);
    for (std::size_t start = 1; start < list.size();) {
      const std::size_t end = list.find('"', start);
      keys.push_back(list.substr(start, end - start));
      start = end + 4;
    }
  }
  return keys;
}

// Catches a key that the reader has learnt and nobody is told of.
TEST(PlansPage, HasEveryKeyInItsTableAndInTheWholePlan) {
  const std::string page = content("docs/plans.md"), whole = blocks("toml").at(1);
  const std::string table = page.substr(page.find("\n| Key | In |"));
  std::size_t count = 0;
  for (const char* of : {"", "[[test]]\nname = 'x'", "[[group]]\nname = 'x'"}) {
    for (const std::string& key : keysOf(of)) {
      ++count;
      EXPECT_NE(table.find('`' + key + '`'), std::string::npos) << key;
      EXPECT_NE(whole.find(key), std::string::npos) << key;
    }
  }
  EXPECT_EQ(count, 18u + 6u + 7u);
}

class ShippedPlans : public testing::TestWithParam<const char*> {
 protected:
  Plan plan() const {
    const std::string file = "data/plans/" + std::string(GetParam()) + ".toml";
    return planFrom(content(file), file);
  }
};

TEST_P(ShippedPlans, RunTheBuiltInTests) {
  std::size_t tests = 0;
  const PreparedPlan prepared = prepare(plan(), builtIn());
  for (const PreparedGroup& group : prepared.groups) tests += group.tests.size();
  EXPECT_EQ(tests, 3u);
}

TEST_P(ShippedPlans, DoWithoutTheBuiltInTests) {
  const PreparedPlan prepared = prepare(plan(), {offered("Fan Test", "fan0", 5)});
  ASSERT_EQ(prepared.groups.size(), 1u);
  EXPECT_EQ(prepared.groups[0].tests.size(), 1u);
}

TEST_P(ShippedPlans, NeitherDestroyNorDisturb) {
  const PreparedPlan prepared =
      prepare(plan(), {destructive(offered("Disk Test", "disk0", 5)),
                       risky(offered("Power Test", "psu0", 5)), offered("Fan Test", "fan0", 5)});
  EXPECT_EQ(prepared.skipped.size(), 2u);
}

TEST_P(ShippedPlans, HaveATitleAndALineInThePage) {
  EXPECT_NE(plan().title, "");
  const std::string line = "\n| `" + std::string(GetParam()) + "` | ";
  EXPECT_NE(content("docs/plans.md").find(line), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(All, ShippedPlans, testing::Values("quick", "standard", "burn-in"),
                         [](const auto& row) {
                           return row.index == 0 ? "Quick" : row.index == 1 ? "Standard" : "BurnIn";
                         });

Plan shipped(const std::string& name) { return planFrom(content("data/plans/" + name), name); }

TEST(ShippedPlan, QuickEndsInLessThanTwoMinutes) {
  const Plan plan = shipped("quick.toml");
  EXPECT_LT(plan.deadline.value() + plan.grace, std::chrono::minutes(2));
  EXPECT_LE(plan.quick.value(), plan.deadline.value());
}

/// Each test takes longer than its estimate, as its job is looked at from time to time only.
TEST(ShippedPlan, QuickHoldsWhatHasItsVerdictBeforeTheDeadline) {
  const Plan plan = shipped("quick.toml");
  std::vector<OfferedTest> offer;
  for (int i = 0; i < 40; ++i)
    offer.push_back(offered("Short", "s" + std::to_string(i), 1 + i % 9));
  const std::size_t runs = prepare(plan, offer).groups[0].tests.size();
  EXPECT_GT(runs, 5U);
  // A busy machine makes some of them take one look more.
  const auto took = std::chrono::seconds(10) * static_cast<int>(runs) + std::chrono::seconds(20);
  EXPECT_LT(took, plan.deadline.value());
}

TEST(ShippedPlan, BurnInLastsANightAndAsksNobody) {
  const Plan plan = shipped("burn-in.toml");
  EXPECT_EQ(plan.repeatFor.value(), std::chrono::hours(8));
  EXPECT_GT(plan.deadline.value(), *plan.repeatFor);
  EXPECT_FALSE(plan.allowInteractive);
  EXPECT_FALSE(plan.untilFailure);
}

TEST(ShippedPlan, StandardIsTheSameEachTime) {
  const Plan plan = shipped("standard.toml");
  EXPECT_EQ(plan.shuffle, std::nullopt);
  EXPECT_EQ(plan.jobs, 1u);
  EXPECT_FALSE(plan.repeatFor || plan.untilFailure || plan.repeat);
}

TEST(PlansPage, ShowsTheDryRunOfTheStandardPlan) {
  std::vector<OfferedTest> offer = builtIn();
  offer.pop_back();
  offer[0].identifier = "DIAGS: Memory Moving Inversions Random,mem0,System Memory";
  offer[1].identifier = "DIAGS: Processor Stress,cpu0,Intel(R) Xeon(R) Processor";
  EXPECT_EQ(blocks("console").back(),
            "$ diags run --plan standard --dry-run\n" + dryRun(shipped("standard.toml"), offer));
}

}  // namespace
}  // namespace engine
