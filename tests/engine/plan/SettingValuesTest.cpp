#include <gtest/gtest.h>

#include "engine/plan/PlanError.h"
#include "engine/plan/SettingValues.h"
#include "engine/plan/ShortSettings.h"
#include "tests/engine/plan/SampleOffers.h"

namespace engine {
namespace {

OfferedTest memoryTest() { return withMemorySettings(offered("Memory Test", "mem0")); }

std::vector<SettingText> texts(const std::vector<std::string>& written) {
  std::vector<SettingText> texts;
  for (const std::string& each : written) texts.push_back(settingTextFrom(each));
  return texts;
}

struct SettingRow {
  const char* name;
  std::vector<std::string> texts;
  SettingValues values;
};

class Settings : public testing::TestWithParam<SettingRow> {};

TEST_P(Settings, BecomePropertiesOfTheTest) {
  EXPECT_EQ(settingValues(memoryTest(), texts(GetParam().texts)), GetParam().values);
}

const SettingRow kSettingRows[] = {
    {"None", {}, {}},
    {"AProperty", {"Seed=7"}, {{"Seed", "7"}}},
    {"InAnotherCase", {"seed=7"}, {{"Seed", "7"}}},
    {"InHexadecimal", {"Seed=0x10"}, {{"Seed", "16"}}},
    {"TheLastCounts", {"Seed=7", "SEED=8"}, {{"Seed", "8"}}},
    {"InTheDeclaredOrder",
     {"Seed=7", "HaltOnError=TRUE"},
     {{"HaltOnError", "true"}, {"Seed", "7"}}},
    {"Loops", {"loops=3"}, {{"LoopControlParameter", "3"}, {"LoopControl", "3"}}},
    {"Seconds", {"seconds=90"}, {{"LoopControlParameter", "90"}, {"LoopControl", "4"}}},
    {"LoopsAndSeconds",
     {"loops=3", "seconds=90"},
     {{"LoopControlParameter", "3,90"}, {"LoopControl", "3,4"}}},
    {"LoopsTwice",
     {"loops=3", "seconds=90", "Loops=5"},
     {{"LoopControlParameter", "5,90"}, {"LoopControl", "3,4"}}},
    {"Size", {"size=1048576"}, {{"NumberOfBytes", "1048576"}}},
    {"SizeInCapitals", {"SIZE=5"}, {{"NumberOfBytes", "5"}}},
    {"SizeWithUnit", {"size=2GiB"}, {{"NumberOfBytes", "2147483648"}}},
    {"SizeWithBlank", {"size=3 MiB"}, {{"NumberOfBytes", "3145728"}}},
    {"Coverage", {"coverage=50"}, {{"PercentOfTestCoverage", "50"}}},
    {"AValueWithEquals", {"LoopControlParameter=a=b"}, {{"LoopControlParameter", "a=b"}}},
    {"WhatOthersHave", {"Voltage=7"}, {}},
};
INSTANTIATE_TEST_SUITE_P(All, Settings, testing::ValuesIn(kSettingRows),
                         [](const auto& row) { return std::string(row.param.name); });

struct BadSettingRow {
  const char* text;
  const char* complaint;
};

const BadSettingRow kBadSettingRows[] = {
    {"Seed=x",
     "setting \"Seed\" of \"Memory Test,mem0,The mem0\": \"x\" is no uint32: expected a whole "
     "number "
     "from 0 to 4294967295"},
    {"seed=4294967296",
     "setting \"Seed\" of \"Memory Test,mem0,The mem0\": \"4294967296\" is no uint32: expected a "
     "whole number from 0 to 4294967295"},
    {"HaltOnError=1",
     "setting \"HaltOnError\" of \"Memory Test,mem0,The mem0\": \"1\" is no boolean: expected true "
     "or "
     "false"},
    {"loops=0", "setting \"loops\": \"0\" is no whole number from 1 to 4294967295"},
    {"loops=x", "setting \"loops\": \"x\" is no whole number from 1 to 4294967295"},
    {"size=2XiB",
     "setting \"NumberOfBytes\" of \"Memory Test,mem0,The mem0\": \"2XiB\" is no uint64: expected "
     "a "
     "whole number from 0 to 18446744073709551615"},
    {"size=16777216TiB",
     "setting \"NumberOfBytes\" of \"Memory Test,mem0,The mem0\": \"16777216TiB\" is no uint64: "
     "expected a whole number from 0 to 18446744073709551615"},
};

TEST(SettingValues, AWrongValueIsRefusedWithSettingAndTest) {
  for (const BadSettingRow& row : kBadSettingRows) {
    try {
      settingValues(memoryTest(), texts({row.text}));
      ADD_FAILURE() << row.text;
    } catch (const PlanError& error) {
      EXPECT_STREQ(error.what(), row.complaint);
    }
  }
}

/// With a range, as its class declares it.
OfferedTest bounded(const std::string& type, std::optional<std::int64_t> minimum,
                    std::optional<std::int64_t> maximum) {
  OfferedTest test = with(offered("Fan Test", "fan0"), type, "Turns");
  test.settings.back().minimum = minimum;
  test.settings.back().maximum = maximum;
  return test;
}

struct RangeRow {
  const char* name;
  OfferedTest test;
  const char* value;
  const char* complaint;  ///< empty for none
};

class Ranges : public testing::TestWithParam<RangeRow> {};

TEST_P(Ranges, AreHeldToBeforeTheRun) {
  std::string complaint;
  try {
    settingValues(GetParam().test, {{"Turns", GetParam().value, {}}});
  } catch (const PlanError& error) {
    complaint = error.what();
  }
  const std::string wanted = GetParam().complaint;
  const std::string start = "setting \"Turns\" of \"Fan Test,fan0,The fan0\": ";
  EXPECT_EQ(complaint, wanted.empty() ? wanted : start + wanted);
}

const RangeRow kRangeRows[] = {
    {"Least", bounded("uint8", 1, 100), "1", ""},
    {"Most", bounded("uint8", 1, 100), "100", ""},
    {"TooLittle", bounded("uint8", 1, 100), "0", "0 is out of range: expected 1 to 100"},
    {"TooMuch", bounded("uint8", 1, 100), "101", "101 is out of range: expected 1 to 100"},
    {"InHexadecimal", bounded("uint8", 1, 100), "0xff", "255 is out of range: expected 1 to 100"},
    {"NoMost", bounded("uint32", 1, {}), "0", "0 is out of range: expected 1 or more"},
    {"MuchWithoutMost", bounded("uint64", 1, {}), "18446744073709551615", ""},
    {"Huge", bounded("uint64", {}, 9), "18446744073709551615",
     "18446744073709551615 is out of range: expected 9 or less"},
    {"Negative", bounded("sint32", -5, 5), "-6", "-6 is out of range: expected -5 to 5"},
    {"AnElement", bounded("uint16[]", 2, 5), "3,9", "9 is out of range: expected 2 to 5"},
    {"NoElement", bounded("uint16[]", 2, 5), "", ""},
};
INSTANTIATE_TEST_SUITE_P(All, Ranges, testing::ValuesIn(kRangeRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(SettingValues, TheRefusalOfAFilesValueSaysWhere) {
  try {
    settingValues(memoryTest(), {{"Seed", "x", {"night.toml", 3, 7}}});
    ADD_FAILURE();
  } catch (const PlanError& error) {
    EXPECT_EQ(std::string(error.what()).substr(0, 16), "night.toml:3:7: ");
  }
}

TEST(SettingValues, APropertyGoesBeforeTheShortNameThatIsSpeltLikeIt) {
  const OfferedTest test = with(memoryTest(), "string", "Size");
  EXPECT_EQ(settingValues(test, texts({"size=big"})), (SettingValues{{"Size", "big"}}));
}

TEST(SettingValues, AShortNameNeedsItsProperties) {
  const OfferedTest test = with(offered("Fan Test", "fan0"), "uint16[]", "LoopControl");
  EXPECT_FALSE(hasSetting(test, "loops"));
  EXPECT_FALSE(hasSetting(test, "size"));
  EXPECT_TRUE(shortSettings(test).empty());
  EXPECT_EQ(shortSettings(memoryTest()),
            (std::vector<std::string>{"loops", "seconds", "size", "coverage"}));
}

TEST(SettingValues, WhatNoTestHasIsRefusedWithWhatIsCloseToIt) {
  const OfferedTest memory = memoryTest(), fan = offered("Fan Test", "fan0");
  try {
    refuseUnknownSettings({&fan, &memory}, texts({"Seed=1", "Sed=1"}));
    ADD_FAILURE();
  } catch (const PlanError& error) {
    EXPECT_STREQ(error.what(), "unknown setting \"Sed\"; close to it: \"Seed\"");
  }
}

TEST(SettingValues, WhatOneOfTheTestsHasIsKnown) {
  const OfferedTest memory = memoryTest(), fan = offered("Fan Test", "fan0");
  EXPECT_NO_THROW(refuseUnknownSettings({&fan, &memory}, texts({"seed=1", "loops=2"})));
  EXPECT_THROW(refuseUnknownSettings({&fan}, texts({"seed=1"})), PlanError);
  EXPECT_NO_THROW(refuseUnknownSettings({}, texts({"seed=1"})));
}

TEST(SettingValues, OnesOnTopTakeThePlaceOfThoseBelow) {
  EXPECT_EQ(overlaid({{"A", "1"}, {"B", "2"}}, {{"B", "3"}, {"C", "4"}}),
            (SettingValues{{"A", "1"}, {"B", "3"}, {"C", "4"}}));
}

TEST(SettingText, HasANameAndAnEqualsSign) {
  for (const char* text : {"", "loops", "=3", "="}) {
    EXPECT_THROW(settingTextFrom(text), PlanError) << text;
  }
  EXPECT_EQ(settingTextFrom("a=").value, "");
}

}  // namespace
}  // namespace engine
