#include <gtest/gtest.h>

#include <limits>

#include "engine/events/Timestamp.h"

namespace engine {
namespace {

Time at(std::int64_t microseconds) { return Time(std::chrono::microseconds(microseconds)); }

struct Row {
  const char* name;
  std::int64_t microseconds;
  const char* text;
};

class Timestamps : public testing::TestWithParam<Row> {};

TEST_P(Timestamps, AreWrittenAndReadBack) {
  EXPECT_EQ(timestampOf(at(GetParam().microseconds)), GetParam().text);
  EXPECT_EQ(timeFrom(GetParam().text), at(GetParam().microseconds));
}

// The numbers are those of `date -u -d TEXT +%s`.
const Row kRows[] = {
    {"TheEpoch", 0, "1970-01-01T00:00:00.000000Z"},
    {"AMicrosecondBefore", -1, "1969-12-31T23:59:59.999999Z"},
    {"ALeapDay", 951'782'400'000'000, "2000-02-29T00:00:00.000000Z"},
    {"TheDayBehindOne", 951'868'800'000'000, "2000-03-01T00:00:00.000000Z"},
    {"NoLeapDayIn1900", -2'203'891'200'000'000, "1900-03-01T00:00:00.000000Z"},
    {"TheEndOfAYear", 1'798'761'599'123'456, "2026-12-31T23:59:59.123456Z"},
    {"TheFirstYear", -62'167'219'200'000'000, "0000-01-01T00:00:00.000000Z"},
    {"TheLastSecond", 253'402'300'799'000'000, "9999-12-31T23:59:59.000000Z"},
};
INSTANTIATE_TEST_SUITE_P(All, Timestamps, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Timestamp, ATimeOutsideOfTheYearsIsCut) {
  EXPECT_EQ(timestampOf(at(std::numeric_limits<std::int64_t>::max())),
            "9999-12-31T23:59:59.999999Z");
  EXPECT_EQ(timestampOf(at(std::numeric_limits<std::int64_t>::min())),
            "0000-01-01T00:00:00.000000Z");
}

struct ShortRow {
  const char* text;
  std::int64_t microseconds;
};

TEST(Timestamp, TheFractionMayBeShorterOrMissing) {
  for (const ShortRow& row :
       {ShortRow{"1970-01-01T00:00:01Z", 1'000'000}, ShortRow{"1970-01-01T00:00:01.5Z", 1'500'000},
        ShortRow{"1970-01-01T00:00:01.000010Z", 1'000'010}}) {
    EXPECT_EQ(timeFrom(row.text), at(row.microseconds)) << row.text;
  }
}

TEST(Timestamp, WhatIsNoTimeIsRefused) {
  for (const char* text :
       {"", "Z", "1970-01-01", "1970-01-01T00:00:00", "1970-01-01 00:00:00Z",
        "1970-13-01T00:00:00Z", "1970-00-01T00:00:00Z", "1970-01-00T00:00:00Z",
        "1970-02-29T00:00:00Z", "1900-02-29T00:00:00Z", "1970-01-01T24:00:00Z",
        "1970-01-01T00:60:00Z", "1970-01-01T00:00:60Z", "1970-01-01T00:00:00.Z",
        "1970-01-01T00:00:00.1234567Z", "1970-01-01T00:00:00+00:00", "1970-01-01T00:00:00ZZ",
        "+970-01-01T00:00:00Z", "197x-01-01T00:00:00Z"}) {
    EXPECT_EQ(timeFrom(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace engine
