#include <gtest/gtest.h>

#include "providers/common/values/Measured.h"

namespace providers {
namespace {

Measured count(const std::string& name, double value, Fold fold = Fold::Sum) {
  return {name, value, {}, true, fold};
}

TEST(Measured, ANameInWordsBecomesAnIdentifier) {
  struct Row {
    const char* words;
    const char* name;
  };
  for (const Row& row :
       {Row{"Walking ones and zeros", "WalkingOnesAndZeros"}, Row{"Random", "Random"},
        Row{"L1 cache, 2nd way", "L1Cache2ndWay"}, Row{"", ""}, Row{"|*|", ""},
        Row{"AZ09az", "AZ09az"}, Row{"A@[`{/:Z", "AZ"}, Row{"@a`z", "AZ"}})
    EXPECT_EQ(measureName(row.words), row.name) << row.words;
}

TEST(Measured, ACountIsDeclaredByNameAlone) {
  const ResultText text = resultText({count("Rounds", 3)});
  EXPECT_EQ(text.format, "|uint64 Rounds");
  EXPECT_EQ(text.data, "|3");
}

// Catches a limit that is declared before what it limits, or without its value.
TEST(Measured, UnitAndLimitsFollowWhatTheyBelongTo) {
  const ResultText text =
      resultText({{"Speed", 899.5, "1/min", false, Fold::Least, 800, 1000.25}, count("Errors", 0)});
  EXPECT_EQ(
      text.format,
      "|real64 Speed|string SpeedUnits|real64 SpeedMinimum|real64 SpeedMaximum|uint64 Errors");
  EXPECT_EQ(text.data, "|899.500|1/min|800.000|1000.250|0");
}

TEST(Measured, NothingMeasuredIsNoText) {
  EXPECT_EQ(resultText({}).format, "");
  EXPECT_EQ(resultText({}).data, "");
}

// A comma in a number would be another number to who reads it.
TEST(Measured, NumbersAreWrittenTheSameInEveryLocale) {
  EXPECT_EQ(resultText({{"Share", 1234567.25, {}, false}}).data, "|1234567.250");
}

TEST(Measured, PassesAreFoldedAsEachMeasurementWants) {
  std::vector<Measured> known{count("Errors", 2), count("Bandwidth", 9, Fold::Least),
                              count("Threads", 4, Fold::Most)};
  foldMeasured(known, {count("Threads", 8, Fold::Most), count("Bandwidth", 7, Fold::Least),
                       count("Errors", 3), count("Rounds", 1)});
  EXPECT_EQ(resultText(known).format,
            "|uint64 Errors|uint64 Bandwidth|uint64 Threads|uint64 Rounds");
  EXPECT_EQ(resultText(known).data, "|5|7|8|1");
}

}  // namespace
}  // namespace providers
