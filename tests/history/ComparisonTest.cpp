#include <gmock/gmock.h>

#include "tests/history/HistoryFixture.h"

namespace history {
namespace {

using engine::Outcome;
using testing::IsEmpty;

class ComparisonTest : public HistoryFixture {
 protected:
  ComparisonTest() : m_history(open()) {}

  /// A run with what `tell` says of it.
  template <typename Tell>
  std::string record(int minute, Tell tell) {
    Recorder recorder(m_history);
    Tale tale(recorder, firstTime() + std::chrono::minutes(minute));
    tale.runStarts();
    tell(tale);
    tale.runEnds();
    return recorder.id();
  }

  History m_history;
};

TEST_F(ComparisonTest, ARunDoesNotDifferFromItself) {
  const std::string id = recordRun(m_history);
  const Difference difference = m_history.diff(id, id);
  ASSERT_EQ(difference.tests.size(), 1U);
  EXPECT_TRUE(difference.tests[0].isSame());
}

TEST_F(ComparisonTest, ShowsAVerdictThatChanged) {
  const std::string before =
      record(0, [](Tale& tale) { tale.testStarts("A,a,a").testEnds(Outcome::kPassed); });
  const std::string after =
      record(1, [](Tale& tale) { tale.testStarts("A,a,a").testEnds(Outcome::kFailed); });
  const Difference difference = m_history.diff(before, after);
  ASSERT_EQ(difference.tests.size(), 1U);
  EXPECT_FALSE(difference.tests[0].hasSameVerdict());
  EXPECT_EQ(difference.tests[0].before->worst, Outcome::kPassed);
  EXPECT_EQ(difference.tests[0].after->worst, Outcome::kFailed);
  EXPECT_EQ(difference.before.id, before);
  EXPECT_EQ(difference.after.id, after);
}

TEST_F(ComparisonTest, ShowsTestsThatOneRunAloneHas) {
  const std::string before = record(0, [](Tale& tale) { tale.testStarts("A,a,a").testEnds(); });
  const std::string after = record(1, [](Tale& tale) { tale.testStarts("B,b,b").testEnds(); });
  const Difference difference = m_history.diff(before, after);
  ASSERT_EQ(difference.tests.size(), 2U);
  EXPECT_FALSE(difference.tests[0].after);
  EXPECT_FALSE(difference.tests[1].before);
}

TEST_F(ComparisonTest, TakesTheWorstOfSeveralRepetitions) {
  const std::string id = record(0, [](Tale& tale) {
    tale.testStarts("A,a,a").testEnds(Outcome::kPassed);
    tale.testStarts("A,a,a").testEnds(Outcome::kFailed);
    tale.testStarts("A,a,a").testEnds(Outcome::kAborted);
  });
  const Difference difference = m_history.diff(id, id);
  EXPECT_EQ(difference.tests[0].before->repetitions, 3U);
  EXPECT_EQ(difference.tests[0].before->worst, Outcome::kFailed);
}

TEST_F(ComparisonTest, ATestThatNeverEndedIsWorseThanAllButAFailedOne) {
  const std::string cut = record(0, [](Tale& tale) {
    tale.testStarts("A,a,a").testEnds(Outcome::kBroken);
    tale.testStarts("A,a,a");
  });
  EXPECT_FALSE(m_history.diff(cut, cut).tests[0].before->worst);
}

TEST_F(ComparisonTest, ComparesMeasurementsByNamePartAndUnit) {
  const auto measure = [&](int minute, double value, const char* unit) {
    return record(minute, [=](Tale& tale) {
      tale.testStarts().measures("read", value, unit).measures("read", value + 2, unit).testEnds();
    });
  };
  const std::string before = measure(0, 5, "MB/s");
  const std::string after = measure(1, 3, "MB/s");
  const std::string other = measure(2, 3, "GB/s");
  const auto changed = m_history.diff(before, after).tests[0].measurements;
  ASSERT_EQ(changed.size(), 1U);
  EXPECT_EQ(changed[0].before->mean, 6);
  EXPECT_EQ(changed[0].after->mean, 4);
  EXPECT_EQ(changed[0].after->times, 2U);
  EXPECT_EQ(m_history.diff(before, other).tests[0].measurements.size(), 2U);
}

TEST_F(ComparisonTest, ATrendHasAPointARunTheOldestFirst) {
  for (const int minute : {2, 0, 1}) {
    record(minute, [=](Tale& tale) {
      tale.testStarts().measures("read", minute + 1.0).measures("read", minute + 3.0).testEnds();
    });
  }
  const std::vector<Trend> trends = m_history.trend("Memory Test,mem0,Memory");
  ASSERT_EQ(trends.size(), 1U);
  EXPECT_EQ(trends[0].name, "read");
  EXPECT_EQ(trends[0].part, "DIMM 1");
  EXPECT_EQ(trends[0].unit, "MB/s");
  EXPECT_EQ(trends[0].minimum, 1.0);
  EXPECT_EQ(trends[0].maximum, 1000.0);
  ASSERT_EQ(trends[0].points.size(), 3U);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(trends[0].points[i].mean, static_cast<double>(i) + 2);
    EXPECT_EQ(trends[0].points[i].least, static_cast<double>(i) + 1);
    EXPECT_EQ(trends[0].points[i].greatest, static_cast<double>(i) + 3);
    EXPECT_EQ(trends[0].points[i].times, 2U);
  }
}

TEST_F(ComparisonTest, ATrendIsOfOneMeasurementWhereItIsNamed) {
  record(0, [](Tale& tale) { tale.testStarts().measures("a", 1.0).measures("b", 2.0).testEnds(); });
  EXPECT_EQ(m_history.trend("Memory Test").size(), 2U);
  ASSERT_EQ(m_history.trend("Memory Test", "b").size(), 1U);
  EXPECT_EQ(m_history.trend("Memory Test", "b")[0].name, "b");
  EXPECT_THAT(m_history.trend("Memory Test", "c"), IsEmpty());
  EXPECT_THAT(m_history.trend("No Test"), IsEmpty());
}

TEST_F(ComparisonTest, ATrendOfAServiceHasItsTestsApart) {
  record(0, [](Tale& tale) {
    tale.testStarts("Disk,sda,x").measures("read", 1.0).testEnds();
    tale.testStarts("Disk,sdb,x").measures("read", 2.0).testEnds();
  });
  const std::vector<Trend> trends = m_history.trend("Disk");
  ASSERT_EQ(trends.size(), 2U);
  EXPECT_EQ(trends[0].test, "Disk,sda,x");
  EXPECT_EQ(trends[1].test, "Disk,sdb,x");
}

TEST_F(ComparisonTest, ATrendGoesBackAsManyRunsAsAskedFor) {
  for (int minute = 0; minute < 5; ++minute)
    recordRun(m_history, firstTime() + std::chrono::minutes(minute));
  const std::vector<Trend> trends = m_history.trend("Memory Test", "", 2);
  ASSERT_EQ(trends[0].points.size(), 2U);
  EXPECT_EQ(trends[0].points[1].started, firstTime() + std::chrono::minutes(4));
}

}  // namespace
}  // namespace history
