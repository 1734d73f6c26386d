#include <gtest/gtest.h>

#include <cstring>
#include <ctime>
#include <limits>

#include "substitute/cmpi.nsp/broker/services/Deadline.h"

namespace cmpinsp::broker {
namespace {

using std::chrono::duration_cast;
using std::chrono::microseconds;

std::int64_t microsecondsOf(std::chrono::system_clock::time_point time) {
  return duration_cast<microseconds>(time.time_since_epoch()).count();
}

struct Row {
  std::int64_t seconds;
  std::int64_t nanoseconds;
  std::int64_t microseconds;
};

constexpr Row kRows[] = {
    {0, 0, 0},
    {1, 0, 1000000},
    {1, 1, 1000000},
    {1, 999, 1000000},
    {1, 1000, 1000001},
    {1, 1001, 1000001},
    {1, 123456789, 1123456},
    {1, 999999999, 1999999},
    {1, 2500000001, 3500000},
    {-1, 0, 0},
    {-1, 5000, 5},
    {5, -1, 5000000},
};

TEST(Deadline, CountsSecondsAndNanosecondsToTheMicrosecond) {
  for (const Row& row : kRows) {
    EXPECT_EQ(microsecondsOf(timeAfter(row.seconds, row.nanoseconds)), row.microseconds)
        << row.seconds << " s " << row.nanoseconds << " ns";
  }
}

// Catches a sum beyond the range of the clock, which then is long ago.
TEST(Deadline, WhatTheClockCannotTellIsFarOff) {
  constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
  const auto inACentury = std::chrono::system_clock::now() + std::chrono::hours(24 * 36500);
  EXPECT_GT(timeAfter(kMost, 0), inACentury - std::chrono::hours(24 * 365 * 20));
  EXPECT_GE(timeAfter(kMost, kMost), timeAfter(kMost, 0));
}

// In the layout with 32-bit words where that is one.
TEST(Deadline, IsReadFromTheProvidersOwnLayout) {
  struct timespec wait = {};
#if defined(_WIN32)
  const std::int32_t words[2] = {77, 123456789};
  std::memcpy(&wait, words, sizeof words);
#else
  wait.tv_sec = 77;
  wait.tv_nsec = 123456789;
#endif
  EXPECT_EQ(microsecondsOf(deadlineIn(&wait)), 77123456);
}

}  // namespace
}  // namespace cmpinsp::broker
