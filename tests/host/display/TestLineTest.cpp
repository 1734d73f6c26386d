#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "host/display/TestLine.h"
#include "text/Columns.h"

namespace host {
namespace {

struct ClockRow {
  double seconds;
  const char* text;
};

const ClockRow kClocks[] = {
    {0, "0:00"},     {9.99, "0:09"},       {61, "1:01"},
    {3599, "59:59"}, {3600, "1:00:00"},    {90061, "25:01:01"},
    {-5, "0:00"},    {1e300, "999:00:00"}, {std::numeric_limits<double>::quiet_NaN(), "0:00"}};

TEST(TestLine, TimesLookLikeAClocks) {
  for (const ClockRow& row : kClocks) EXPECT_EQ(clockText(row.seconds), row.text);
}

struct RemainingRow {
  const char* name;
  RunningTest test;
  double seconds;
};

const RemainingRow kRemaining[] = {
    {"nobody knows", {"", 0, 0, 10}, -1},
    {"an estimate alone", {"", 0, 30, 10}, 20},
    {"progress alone", {"", 25, 0, 10}, 30},
    {"both, half way", {"", 50, 30, 10}, 15},
    {"the estimate is past, and nothing done", {"", 0, 30, 31}, -1},
    {"the estimate is past", {"", 50, 30, 40}, 40},
    {"done", {"", 100, 0, 10}, 0},
    {"more than done", {"", 250, 0, 10}, 0},
    {"less than nothing", {"", -5, 0, 10}, -1},
};

TEST(TestLine, WhatIsLeftComesFromProgressAndEstimate) {
  for (const RemainingRow& row : kRemaining) {
    EXPECT_DOUBLE_EQ(remaining(row.test), row.seconds) << row.name;
  }
}

/// As where somebody looks every five seconds, and once more when it is done.
double atTheNextLook(double seconds) { return (std::ceil(seconds / 5) + 1) * 5; }

struct LookRow {
  const char* name;
  RunningTest test;
  double seconds;
};

const LookRow kLooks[] = {
    {"a short test", {"", 0, 0.3, 1, -1, atTheNextLook}, 9},
    {"a short test past its estimate", {"", 0, 0.3, 4, -1, atTheNextLook}, 6},
    {"nearly done when it was looked at", {"", 80, 1, 3, 0.1, atTheNextLook}, 7},
    {"done when it was looked at", {"", 100, 1, 6, 5.05, atTheNextLook}, 4},
    {"a long test", {"", 25, 0, 12, 10.5, atTheNextLook}, 38},
    {"later than it could be", {"", 0, 0.3, 11, -1, atTheNextLook}, -1},
    {"nobody knows", {"", 0, 0, 3, -1, atTheNextLook}, -1},
};

// Catches a line that says "0:00 left" for nine seconds, and one that counts up.
TEST(TestLine, WhatIsLeftGoesUntilTheVerdictIsSeen) {
  for (const LookRow& row : kLooks) {
    EXPECT_DOUBLE_EQ(remaining(row.test), row.seconds) << row.name;
  }
}

struct LineRow {
  const char* name;
  RunningTest test;
  std::size_t columns;
  std::string line;
};

const std::string kPad(33, ' ');

const LineRow kLines[] = {
    {"wide", {"Memory Test", 50, 30, 10}, 80, "Memory Test" + kPad + "   50%   0:10   0:15 left"},
    {"nothing known yet", {"Memory Test", 0, 0, 3}, 80, "Memory Test" + kPad + "    0%   0:03"},
    {"a long name has the room",
     {std::string(50, 'x'), 50, 30, 10},
     80,
     std::string(50, 'x') + "   50%   0:10   0:15 left"},
    {"a name that is cut",
     {"Memory Test", 50, 30, 10},
     33,
     "Memory \u2026   50%   0:10   0:15 left"},
    {"no room for what is left", {"Memory Test", 50, 30, 10}, 24, "Memory Test   50%   0:10"},
    {"no room for the time", {"Memory Test", 50, 30, 10}, 16, "Memory Te\u2026   50%"},
    {"the name alone", {"Memory Test", 50, 30, 10}, 6, "Memor\u2026"},
    {"a name that would move the cursor", {"\x1b[9A", 50, 30, 10}, 16, "\\x1b[9A      50%"},
};

TEST(TestLine, HoldsWhatThereIsRoomFor) {
  for (const LineRow& row : kLines) {
    EXPECT_EQ(runningLine(row.test, row.columns), row.line) << row.name;
  }
}

TEST(TestLine, IsNeverWiderThanItMayBe) {
  const std::string names[] = {"", "Memory Test", "内存测试内存测试内存测试", std::string(500, 'x'),
                               "\xff\x1b[2J\n\t"};
  const double percents[] = {0, 100, 1e300, std::numeric_limits<double>::quiet_NaN()};
  for (const std::string& name : names) {
    for (const double percent : percents) {
      for (std::size_t columns = 0; columns < 120; ++columns) {
        const std::string line = runningLine({name, percent, 1e9, 1e8}, columns);
        ASSERT_LE(text::columnsOf(line), columns) << line;
      }
    }
  }
}

}  // namespace
}  // namespace host
