#include <gtest/gtest.h>

#include "providers/common/Settings.h"

namespace providers {
namespace {

using Kinds = std::vector<std::uint16_t>;
using Texts = std::vector<std::string>;

Properties loop(Kinds kinds, Texts parameters) {
  return {{"LoopControl", std::move(kinds), false},
          {"LoopControlParameter", std::move(parameters), false}};
}

TEST(Settings, WithoutAnyTheDefaultsHold) {
  const RunSettings settings = readRunSettings({});
  EXPECT_FALSE(settings.haltOnError);
  EXPECT_FALSE(settings.quick);
  EXPECT_EQ(settings.coveragePercent, 100U);
  EXPECT_EQ(settings.loop.count, 0U);
}

TEST(Settings, EachOneIsRead) {
  const RunSettings settings =
      readRunSettings({{"HaltOnError", true, false},
                       {"QuickMode", true, false},
                       {"PercentOfTestCoverage", std::uint8_t{40}, false}});
  EXPECT_TRUE(settings.haltOnError);
  EXPECT_TRUE(settings.quick);
  EXPECT_EQ(settings.coveragePercent, 40U);
}

TEST(Settings, LoopControlsAreReadWithTheirParameters) {
  const LoopControl read = readRunSettings(loop({2, 3, 4, 5}, {"", "7", "60", "0"})).loop;
  EXPECT_TRUE(read.continuous);
  EXPECT_EQ(read.count, 7U);
  EXPECT_EQ(read.seconds, 60U);
  EXPECT_TRUE(read.limitErrors);
  EXPECT_EQ(read.errors, 0U);
}

struct BadRow {
  const char* name;
  Properties properties;
};

class BadSettings : public ::testing::TestWithParam<BadRow> {};

TEST_P(BadSettings, AreRefused) {
  EXPECT_THROW(readRunSettings(GetParam().properties), BadSetting);
}

INSTANTIATE_TEST_SUITE_P(
    Table, BadSettings,
    ::testing::Values(
        BadRow{"NoBoolean", {{"HaltOnError", std::string("yes"), false}}},
        BadRow{"NoCoverage", {{"PercentOfTestCoverage", std::uint8_t{0}, false}}},
        BadRow{"TooMuchCoverage", {{"PercentOfTestCoverage", std::uint8_t{101}, false}}},
        BadRow{"LoopKindUnknown", loop({1}, {"5"})}, BadRow{"LoopCountZero", loop({3}, {"0"})},
        BadRow{"LoopCountMissing", loop({3}, {})}, BadRow{"LoopCountNoNumber", loop({3}, {"5x"})},
        BadRow{"LoopCountTooLarge", loop({3}, {"4294967296"})}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(Retention, FollowsTheSettings) {
  JobRequest request;
  readRetention({{"ResultPersistence", std::uint32_t{90}, false}},
                {{"DeleteOnCompletion", false, false},
                 {"TimeBeforeRemoval", DateTime{5'000'000, true}, false}},
                request);
  EXPECT_EQ(request.keepRecords, 90'000'000);
  EXPECT_FALSE(request.deleteOnCompletion);
  EXPECT_EQ(request.keepJob, 5'000'000);
}

TEST(Retention, TheHighestPersistenceMeansForEver) {
  JobRequest request;
  readRetention({{"ResultPersistence", std::uint32_t{0xFFFFFFFF}, false}}, {}, request);
  EXPECT_FALSE(request.keepRecords);
}

}  // namespace
}  // namespace providers
