#include <gtest/gtest.h>

#include "fleet/page/Headline.h"
#include "tests/fleet/page/SampleAnswers.h"

namespace fleet::page {
namespace {

struct HeadlineRow {
  const char* name;
  std::vector<Verdict> machines;
  std::uint32_t nowhere;  ///< machines of which there is no stream
  const char* style;
  const char* text;
};

constexpr Verdict kPassed = Verdict::kPassed;
constexpr Verdict kWarned = Verdict::kWarned;
constexpr Verdict kFailed = Verdict::kFailed;
constexpr Verdict kUnfinished = Verdict::kUnfinished;

const HeadlineRow kHeadlines[] = {
    {"nobody", {}, 0, "open", "No machine answered"},
    {"one passed", {kPassed}, 0, "pass", "The machine passed"},
    {"all passed", {kPassed, kPassed}, 0, "pass", "All 2 machines passed"},
    {"a warning", {kPassed, kWarned}, 0, "warn", "1 of 2 machines passed with a warning"},
    {"a fault", {kPassed, kFailed, kWarned}, 0, "fail", "1 of 3 machines failed"},
    {"a fault beside a silent one", {kFailed}, 1, "fail", "1 of 2 machines failed"},
    {"not finished", {kPassed, kUnfinished}, 0, "open", "1 of 2 machines gave no verdict"},
    {"silent ones count", {kPassed}, 2, "open", "2 of 3 machines gave no verdict"},
    {"nothing but silence", {}, 2, "open", "All 2 machines gave no verdict"},
    {"skipped", {Verdict::kSkipped}, 0, "open", "Nothing was tested"},
};

Answer answerOf(const HeadlineRow& row) {
  Answer answer = samples::soundFleet(static_cast<std::uint32_t>(row.machines.size()), 1);
  for (std::size_t i = 0; i < row.machines.size(); ++i) {
    answer.machines[i].verdict = row.machines[i];
  }
  for (std::uint32_t i = 0; i < row.nowhere; ++i) {
    answer.silent.push_back({"gone", kNowhere, 0, "no stream"});
  }
  return answer;
}

TEST(FleetHeadline, TellsTheWorstThatThereIs) {
  for (const HeadlineRow& row : kHeadlines) {
    const Headline headline = headlineOf(answerOf(row));
    EXPECT_EQ(headline.style, row.style) << row.name;
    EXPECT_EQ(headline.text, row.text) << row.name;
  }
}

TEST(FleetHeadline, ASoundFleetWithASlowPartIsNotGreen) {
  Answer answer = samples::soundFleet(2, 1);
  EXPECT_EQ(headlineOf(answer).style, "pass");
  answer.slow.emplace_back();
  EXPECT_EQ(headlineOf(answer).style, "warn");
  EXPECT_EQ(headlineOf(answer).lead, "1 machine has parts that are far from their peers. ");
}

TEST(FleetHeadline, SaysWhatElseHasToBeKnown) {
  Answer answer = samples::faultyFleet();
  answer.slow.push_back(answer.slow[0]);
  answer.slow.push_back(answer.slow[0]);
  answer.slow.back().machine = 3;
  answer.components.resize(2);
  EXPECT_EQ(headlineOf(answer).lead,
            "2 machines have parts that are far from their peers. 2 machines did not answer, or "
            "not to the end. 1 "
            "stream was left out. These are 2 fleets, which have no test in common. ");
}

}  // namespace
}  // namespace fleet::page
