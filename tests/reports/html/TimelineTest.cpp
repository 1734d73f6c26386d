#include <gtest/gtest.h>

#include <algorithm>

#include "reports/html/Timeline.h"
#include "tests/reports/html/SampleRuns.h"

namespace reports::html {
namespace {

using engine::Outcome;

Timeline::Bar barAt(int second, Outcome outcome = Outcome::kPassed) {
  const engine::Time from{std::chrono::seconds(second)};
  return {from, from + std::chrono::seconds(1), outcome};
}

TEST(HtmlTimeline, ATestHasOneRowForAllItsRuns) {
  Timeline timeline(10);
  timeline.add(samples::memoryTest(1), barAt(1));
  timeline.add(samples::processorTest(), barAt(2));
  timeline.add(samples::memoryTest(2), barAt(3));
  ASSERT_EQ(timeline.rows().size(), 2U);
  EXPECT_EQ(timeline.rows()[0].runs, 2U);
  EXPECT_EQ(timeline.rows()[0].bars.size(), 2U);
}

TEST(HtmlTimeline, NoFaultIsLostAmongManyRuns) {
  Timeline timeline(10);
  for (int i = 0; i < 100'000; ++i) {
    const bool isFault = i == 31'337;
    timeline.add(samples::memoryTest(), barAt(i, isFault ? Outcome::kFailed : Outcome::kPassed));
  }
  const Timeline::Row& row = timeline.rows().front();
  EXPECT_EQ(row.runs, 100'000U);
  EXPECT_LE(row.bars.size(), 400U);
  const auto isFault = [](const Timeline::Bar& bar) { return bar.outcome == Outcome::kFailed; };
  EXPECT_EQ(std::count_if(row.bars.begin(), row.bars.end(), isFault), 1);
}

TEST(HtmlTimeline, RowsThatAreTooManyAreCounted) {
  Timeline timeline(1);
  timeline.add(samples::memoryTest(), barAt(1));
  timeline.add(samples::processorTest(), barAt(2));
  timeline.add(samples::processorTest(), barAt(3));
  EXPECT_EQ(timeline.rows().size(), 1U);
  EXPECT_EQ(timeline.leftOut(), 2U);
}

}  // namespace
}  // namespace reports::html
