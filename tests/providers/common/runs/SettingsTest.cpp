#include <gtest/gtest.h>

#include <functional>

#include "providers/common/runs/Settings.h"

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

TEST(Settings, PlainLoopsAndSecondsStandForLoopControls) {
  const auto read = [](std::uint32_t loops, std::uint32_t seconds) {
    Properties properties = loop({3, 4}, {"7", "60"});
    properties.set("Loops", loops);
    properties.set("Seconds", seconds);
    return readRunSettings(properties).loop;
  };
  EXPECT_EQ(read(9, 30).count, 9U);
  EXPECT_EQ(read(9, 30).seconds, 30U);
  EXPECT_EQ(read(1, 0).count, 7U);
  EXPECT_EQ(read(1, 0).seconds, 60U);
  EXPECT_EQ(readRunSettings({{"Loops", std::uint32_t{1}, false}}).loop.count, 0U)
      << "a single pass is no loop";
}

TEST(Settings, EveryDigitCountsUpToTheLargestNumber) {
  const LoopControl read = readRunSettings(loop({3, 4}, {"1234567890", "4294967295"})).loop;
  EXPECT_EQ(read.count, 1234567890U);
  EXPECT_EQ(read.seconds, 4294967295U);
}

TEST(Settings, ANumberCountsInAnyType) {
  for (const Value& value :
       {Value(std::uint8_t{9}), Value(std::uint16_t{9}), Value(std::uint32_t{9}),
        Value(std::uint64_t{9}), Value(std::int64_t{9})})
    EXPECT_EQ(readRunSettings({{"PercentOfTestCoverage", value, false}}).coveragePercent, 9U);
}

TEST(Settings, WhatIsNullKeepsItsDefault) {
  const RunSettings settings = readRunSettings({{"HaltOnError", {}, false},
                                                {"PercentOfTestCoverage", {}, false},
                                                {"LoopControl", {}, false}});
  EXPECT_FALSE(settings.haltOnError);
  EXPECT_EQ(settings.coveragePercent, 100U);
}

TEST(Settings, AllThatWasGivenIsKeptForTheDiagnostic) {
  EXPECT_EQ(asNumber(readRunSettings({{"Seed", std::uint32_t{7}, false}}).properties.get("Seed")),
            7U);
}

TEST(Settings, TheBoundsOfCoverageAreAllowed) {
  for (const unsigned percent : {1U, 100U})
    EXPECT_EQ(
        readRunSettings({{"PercentOfTestCoverage", std::uint32_t{percent}, false}}).coveragePercent,
        percent);
}

struct BadRow {
  const char* name;
  Properties properties;
  const char* reason;
};

std::string reasonOf(const std::function<void()>& reading) {
  try {
    reading();
  } catch (const BadSetting& bad) {
    return bad.what();
  }
  return "none";
}

class BadSettings : public ::testing::TestWithParam<BadRow> {};

TEST_P(BadSettings, AreRefusedWithTheReason) {
  EXPECT_EQ(reasonOf([] { readRunSettings(GetParam().properties); }), GetParam().reason);
}

INSTANTIATE_TEST_SUITE_P(
    Table, BadSettings,
    ::testing::Values(
        BadRow{
            "NoBoolean", {{"HaltOnError", std::string("yes"), false}}, "HaltOnError is no boolean"},
        BadRow{
            "NoBooleanEither", {{"QuickMode", std::uint8_t{1}, false}}, "QuickMode is no boolean"},
        BadRow{"NoCoverage",
               {{"PercentOfTestCoverage", std::uint8_t{0}, false}},
               "PercentOfTestCoverage is not between 1 and 100"},
        BadRow{"TooMuchCoverage",
               {{"PercentOfTestCoverage", std::uint8_t{101}, false}},
               "PercentOfTestCoverage is not between 1 and 100"},
        BadRow{"NegativeCoverage",
               {{"PercentOfTestCoverage", std::int64_t{-9}, false}},
               "PercentOfTestCoverage is not between 1 and 100"},
        BadRow{"CoverageInWords",
               {{"PercentOfTestCoverage", std::string("9"), false}},
               "PercentOfTestCoverage is not between 1 and 100"},
        BadRow{"LoopKindUnknown", loop({1}, {"5"}), "LoopControl 1 is not supported"},
        BadRow{"LoopKindUnknownToo", loop({6}, {"5"}), "LoopControl 6 is not supported"},
        BadRow{"LoopNoArray",
               {{"LoopControl", std::uint16_t{3}, false}},
               "LoopControl is no array of numbers"},
        BadRow{"LoopParametersNoTexts",
               {{"LoopControl", Kinds{3}, false}, {"LoopControlParameter", Kinds{9}, false}},
               "LoopControlParameter is missing"},
        BadRow{"LoopCountZero", loop({3}, {"0"}), "LoopControlParameter is 0"},
        BadRow{"LoopTimeZero", loop({4}, {"0"}), "LoopControlParameter is 0"},
        BadRow{"LoopCountMissing", loop({3}, {}), "LoopControlParameter is missing"},
        BadRow{"LoopCountEmpty", loop({2, 3}, {"", ""}), "LoopControlParameter is missing"},
        BadRow{"LoopErrorsMissing", loop({5}, {}), "LoopControlParameter is missing"},
        BadRow{"LoopCountNoNumber", loop({3}, {"5x"}), "LoopControlParameter is no number: 5x"},
        BadRow{"LoopCountColon", loop({3}, {"9:"}), "LoopControlParameter is no number: 9:"},
        BadRow{"LoopCountSlash", loop({3}, {"9/"}), "LoopControlParameter is no number: 9/"},
        BadRow{"LoopCountTooLarge", loop({3}, {"4294967296"}),
               "LoopControlParameter is too large: 4294967296"},
        BadRow{"LoopCountFarTooLarge", loop({3}, {"99999999999999999999"}),
               "LoopControlParameter is too large: 99999999999999999999"}),
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

TEST(Retention, AlmostTheHighestPersistenceIsATime) {
  JobRequest request;
  readRetention({{"ResultPersistence", std::int64_t{0xFFFFFFFE}, false}}, {}, request);
  EXPECT_EQ(request.keepRecords, 4294967294'000'000);
}

TEST(Retention, WithoutSettingsTheDefaultsHold) {
  JobRequest request;
  readRetention({}, {}, request);
  EXPECT_EQ(request.keepRecords, 86400'000'000);
  EXPECT_EQ(request.keepJob, 300'000'000);
  EXPECT_TRUE(request.deleteOnCompletion);
}

TEST(Retention, ThatMakesNoSenseIsRefused) {
  struct Row {
    Properties diagnostic;
    Properties job;
    const char* reason;
  };
  for (const Row& row :
       {Row{{{"ResultPersistence", std::int64_t{-9}, false}}, {}, "ResultPersistence is no number"},
        Row{{{"ResultPersistence", std::string("9"), false}}, {}, "ResultPersistence is no number"},
        Row{{},
            {{"DeleteOnCompletion", std::uint8_t{1}, false}},
            "DeleteOnCompletion is no boolean"},
        Row{{},
            {{"TimeBeforeRemoval", DateTime{5, false}, false}},
            "TimeBeforeRemoval is no interval"},
        Row{{},
            {{"TimeBeforeRemoval", std::uint32_t{5}, false}},
            "TimeBeforeRemoval is no interval"}}) {
    JobRequest request;
    EXPECT_EQ(reasonOf([&] { readRetention(row.diagnostic, row.job, request); }), row.reason);
  }
}

}  // namespace
}  // namespace providers
