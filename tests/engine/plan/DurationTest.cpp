#include <gtest/gtest.h>

#include <limits>

#include "engine/plan/Duration.h"
#include "engine/plan/PlanError.h"

namespace engine {
namespace {

struct DurationRow {
  const char* name;
  const char* text;
  std::int64_t milliseconds;
  const char* printed;
};

class Durations : public testing::TestWithParam<DurationRow> {};

TEST_P(Durations, AreReadAndPrinted) {
  EXPECT_EQ(durationFrom(GetParam().text), Duration(GetParam().milliseconds));
  EXPECT_EQ(textOf(Duration(GetParam().milliseconds)), GetParam().printed);
  EXPECT_EQ(durationFrom(GetParam().printed), Duration(GetParam().milliseconds));
}

const DurationRow kDurationRows[] = {
    {"Seconds", "90s", 90'000, "1m30s"},
    {"Hours", "8h", 28'800'000, "8h"},
    {"HoursAndMinutes", "1h30m", 5'400'000, "1h30m"},
    {"Minutes", "45m", 2'700'000, "45m"},
    {"Days", "2d", 172'800'000, "2d"},
    {"Milliseconds", "250ms", 250, "250ms"},
    {"MinutesAndMilliseconds", "1m1ms", 60'001, "1m1ms"},
    {"All", "1d2h3m4s5ms", 93'784'005, "1d2h3m4s5ms"},
    {"Nothing", "0s", 0, "0s"},
    {"ManyMinutes", "600m", 36'000'000, "10h"},
    {"LeadingZeros", "007s", 7'000, "7s"},
    {"TheLongest", "10000d", 864'000'000'000, "10000d"},
};
INSTANTIATE_TEST_SUITE_P(All, Durations, testing::ValuesIn(kDurationRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Duration, WhatIsNoneIsQuotedWithHowToWriteIt) {
  for (const char* text : {"",
                           "s",
                           "5",
                           "5x",
                           "-5s",
                           "+5s",
                           "1.5h",
                           " 5s",
                           "5s ",
                           "5 s",
                           "5S",
                           "30m1h",
                           "1s1s",
                           "1h30",
                           "1ms1s",
                           "10000d1ms",
                           "10001d",
                           "99999999999999999999s",
                           "9223372036854775807d",
                           "5sec"}) {
    try {
      durationFrom(text);
      ADD_FAILURE() << text;
    } catch (const PlanError& error) {
      EXPECT_EQ(error.what(), "\"" + std::string(text) +
                                  "\" is no time; write it like 90s, 45m, 1h30m or 2d (at most "
                                  "10000d)");
    }
  }
}

TEST(Duration, WhatIsNegativeIsPrintedAsNothing) { EXPECT_EQ(textOf(Duration(-1)), "0s"); }

TEST(Duration, AnEstimateIsTakenToTheNextWholeSecond) {
  EXPECT_EQ(durationOfSeconds(1.2), Duration(2'000));
  EXPECT_EQ(durationOfSeconds(3), Duration(3'000));
  EXPECT_EQ(durationOfSeconds(0.001), Duration(1'000));
}

TEST(Duration, AnEstimateThatIsNoneCountsAsNothing) {
  EXPECT_EQ(durationOfSeconds(0), Duration(0));
  EXPECT_EQ(durationOfSeconds(-5), Duration(0));
  EXPECT_EQ(durationOfSeconds(std::numeric_limits<double>::quiet_NaN()), Duration(0));
}

TEST(Duration, AnEstimateBeyondAllTimesIsTheLongest) {
  EXPECT_EQ(durationOfSeconds(1e300), kLongestDuration);
  EXPECT_EQ(durationOfSeconds(std::numeric_limits<double>::infinity()), kLongestDuration);
}

}  // namespace
}  // namespace engine
