#include <gtest/gtest.h>

#include "integrations/slurm/Duration.h"
#include "integrations/slurm/SettingError.h"

namespace slurm {
namespace {

struct GoodRow {
  const char* name;
  const char* text;
  std::int64_t milliseconds;
};

class SlurmTimes : public testing::TestWithParam<GoodRow> {};

TEST_P(SlurmTimes, AreRead) {
  EXPECT_EQ(durationFrom(GetParam().text), Duration(GetParam().milliseconds));
}

INSTANTIATE_TEST_SUITE_P(All, SlurmTimes,
                         testing::Values(GoodRow{"Seconds", "90s", 90'000},
                                         GoodRow{"Hours", "1h30m", 5'400'000},
                                         GoodRow{"Days", "2d", 172'800'000},
                                         GoodRow{"Milliseconds", "500ms", 500},
                                         GoodRow{"Nothing", "0s", 0}),
                         [](const auto& row) { return row.param.name; });

struct BadRow {
  const char* name;
  const char* text;
};

class NoSlurmTimes : public testing::TestWithParam<BadRow> {};

TEST_P(NoSlurmTimes, AreQuoted) {
  const std::string text = GetParam().text;
  try {
    durationFrom(text);
    FAIL() << text;
  } catch (const SettingError& error) {
    EXPECT_EQ(error.what(), "\"" + text + "\" is no time such as 90s, 10m or 1h30m");
  }
}

INSTANTIATE_TEST_SUITE_P(All, NoSlurmTimes,
                         testing::Values(BadRow{"Empty", ""}, BadRow{"NoUnit", "90"},
                                         BadRow{"NoNumber", "s"}, BadRow{"Negative", "-5s"},
                                         BadRow{"SmallFirst", "5s1h"}, BadRow{"Twice", "5s5s"},
                                         BadRow{"Blank", "5 s"}, BadRow{"Fraction", "1.5s"},
                                         BadRow{"TooLong", "99999999999999999999d"},
                                         BadRow{"Unknown", "3w"}),
                         [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace slurm
