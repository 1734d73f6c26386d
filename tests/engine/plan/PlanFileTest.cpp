#include <gtest/gtest.h>

#include "engine/plan/PlanFile.h"

namespace engine {
namespace {

std::string complaint(const std::string& text) {
  try {
    planFrom(text, "p.toml");
    return "read";
  } catch (const PlanError& error) {
    return error.what();
  }
}

const char* const kWhole = R"(title = "Night"
timeout = "30m"
deadline = "9h"
grace = "0s"
repeat = 3
for = "8h"
until-failure = true
shuffle = 42
jobs = 2
quick = "2m"
exclude = ["*Fan*", "disk0"]
allow-destructive = true
allow-disruptive = true
interactive = false

[settings]
Seed = 7
HaltOnError = true

[limits]
Temperature = { maximum = 90 }

[[test]]
name = "Memory Test"
optional = true
repeat = 2
timeout = "20m"
settings = { size = "1GiB", CoreVoltages = [1.5, 2], Address = ["a,b", "c"] }
limits = { Bandwidth = { minimum = 5, maximum = 9.5 } }

[[group]]
name = "disks"
repeat = 4
shuffle = 0
timeout = "1h"
settings.Seed = 8
limits."Disk *".minimum = 1

[[group.test]]
name = "Disk*"
)";

TEST(PlanFile, SaysWhenTestsRun) {
  const Plan plan = planFrom(kWhole, "p.toml");
  EXPECT_EQ(plan.title, "Night");
  EXPECT_EQ(plan.timeout, std::optional<Duration>(std::chrono::minutes(30)));
  EXPECT_EQ(plan.deadline, std::optional<Duration>(std::chrono::hours(9)));
  EXPECT_EQ(plan.grace, Duration(0));
  EXPECT_EQ(plan.repeat, std::optional<std::uint64_t>(3));
  EXPECT_EQ(plan.repeatFor, std::optional<Duration>(std::chrono::hours(8)));
  EXPECT_TRUE(plan.untilFailure);
  EXPECT_EQ(plan.shuffle, std::optional<std::uint64_t>(42));
  EXPECT_EQ(plan.jobs, 2u);
}

TEST(PlanFile, SaysWhichTestsRun) {
  const Plan plan = planFrom(kWhole, "p.toml");
  EXPECT_EQ(plan.quick, std::optional<Duration>(std::chrono::minutes(2)));
  ASSERT_EQ(plan.excluded.size(), 2u);
  EXPECT_EQ(plan.excluded[1].name, "disk0");
  EXPECT_EQ(plan.excluded[1].place.line, 11u);
  EXPECT_EQ(plan.excluded[1].place.column, 21u);
  EXPECT_TRUE(plan.allowDestructive);
  EXPECT_TRUE(plan.allowDisruptive);
  EXPECT_FALSE(plan.allowInteractive);
}

TEST(PlanFile, HasTestsOutsideOfGroupsBeforeThem) {
  const Plan plan = planFrom(kWhole, "p.toml");
  ASSERT_EQ(plan.groups.size(), 2u);
  ASSERT_EQ(plan.groups[0].tests.size(), 1u);
  const PlannedTest& test = plan.groups[0].tests[0];
  EXPECT_EQ(test.tests.name, "Memory Test");
  EXPECT_EQ(test.tests.place.file, "p.toml");
  EXPECT_EQ(test.tests.place.line, 24u);
  EXPECT_EQ(test.tests.place.column, 8u);
  EXPECT_TRUE(test.isEveryDevice);
  EXPECT_TRUE(test.isOptional);
  EXPECT_EQ(test.repeat, 2u);
  EXPECT_EQ(test.timeout, std::optional<Duration>(std::chrono::minutes(20)));
}

TEST(PlanFile, HasGroups) {
  const Group group = planFrom(kWhole, "p.toml").groups.at(1);
  EXPECT_EQ(group.name, "disks");
  EXPECT_EQ(group.repeat, 4u);
  EXPECT_EQ(group.shuffle, std::optional<std::uint64_t>(0));
  EXPECT_EQ(group.timeout, std::optional<Duration>(std::chrono::hours(1)));
  ASSERT_EQ(group.tests.size(), 1u);
  EXPECT_EQ(group.tests[0].tests.name, "Disk*");
}

TEST(PlanFile, HasSettingsInTheOrderInWhichTheyAreWritten) {
  const Plan plan = planFrom(kWhole, "p.toml");
  ASSERT_EQ(plan.settings.size(), 2u);
  EXPECT_EQ(plan.settings[0].name, "Seed");
  EXPECT_EQ(plan.settings[0].value, "7");
  EXPECT_EQ(plan.settings[1].value, "true");
  EXPECT_EQ(plan.settings[1].place.line, 18u);
  const auto& own = plan.groups[0].tests[0].settings;
  ASSERT_EQ(own.size(), 3u);
  EXPECT_EQ(own[0].value, "1GiB");
  EXPECT_EQ(own[1].value, "1.5,2");
  EXPECT_EQ(own[2].value, "a\\,b,c");
  EXPECT_EQ(plan.groups[1].settings.at(0).value, "8");
}

// Catches names that are placed where their table begins.
TEST(PlanFile, PlacesASettingAtItsName) {
  const Plan plan = planFrom(
      "[[test]]\nname = 'x'\nsettings = { One = 1, Two = 2 }\n[[group]]\nname = 'g'\n"
      "[group.settings]\n\n  Three = 3\n[[group.test]]\nname = 'y'\nsettings.Four = 4",
      "p.toml");
  const auto placeOf = [](const SettingText& setting) {
    return std::to_string(setting.place.line) + ':' + std::to_string(setting.place.column);
  };
  EXPECT_EQ(placeOf(plan.groups[0].tests[0].settings.at(1)), "3:23");
  EXPECT_EQ(placeOf(plan.groups[1].settings.at(0)), "8:3");
  EXPECT_EQ(placeOf(plan.groups[1].tests[0].settings.at(0)), "11:10");
}

TEST(PlanFile, HasLimits) {
  const Plan plan = planFrom(kWhole, "p.toml");
  ASSERT_EQ(plan.limits.size(), 1u);
  EXPECT_EQ(plan.limits[0].measurement, "Temperature");
  EXPECT_EQ(plan.limits[0].minimum, std::nullopt);
  EXPECT_EQ(plan.limits[0].maximum, std::optional<double>(90));
  EXPECT_EQ(plan.groups[0].tests[0].limits.at(0).minimum, std::optional<double>(5));
  EXPECT_EQ(plan.groups[0].tests[0].limits.at(0).maximum, std::optional<double>(9.5));
  EXPECT_EQ(plan.groups[1].limits.at(0).measurement, "Disk *");
}

TEST(PlanFile, OneTestIsEnough) {
  const Plan plan = planFrom("test = [{ name = \"*\" }]", "p.toml");
  EXPECT_EQ(plan.grace, kDefaultGrace);
  EXPECT_EQ(plan.repeat, std::nullopt);
  EXPECT_EQ(plan.jobs, 1u);
  EXPECT_TRUE(plan.allowInteractive);
  EXPECT_FALSE(plan.allowDestructive);
  EXPECT_FALSE(plan.allowDisruptive);
}

struct SettingValueRow {
  const char* toml;
  const char* text;
};

TEST(PlanFile, SettingsOfEveryKindHaveAText) {
  for (const SettingValueRow& row : {SettingValueRow{"-5", "-5"},
                                     {"0xff", "255"},
                                     {"1_000", "1000"},
                                     {"0.1", "0.1"},
                                     {"2.0", "2.0"},
                                     {"1e300", "1e+300"},
                                     {"inf", "inf"},
                                     {"02:30:00", "02:30:00"},
                                     {"false", "false"},
                                     {"'a\\b'", "a\\b"},
                                     {"2026-11-22T02:00:00Z", "2026-11-22T02:00:00Z"},
                                     {"[]", ""},
                                     {"[1, 2]", "1,2"},
                                     {"[true, 'x']", "true,x"}}) {
    const Plan plan =
        planFrom("test = [{ name = '*' }]\nsettings.X = " + std::string(row.toml), "p.toml");
    EXPECT_EQ(plan.settings.at(0).value, row.text) << row.toml;
  }
}

struct BadPlanRow {
  const char* text;
  const char* complaint;
};

/// Each behind a line with a test.
const BadPlanRow kBadPlanRows[] = {
    {"titel = 'x'", "p.toml:2:1: unknown key \"titel\" of a plan; close to it: \"title\""},
    {"title = 1", "p.toml:2:9: title: expected a text in quotes, found a whole number"},
    {"timeout = 90",
     "p.toml:2:11: timeout: expected a time in quotes like \"90s\" or \"1h30m\", found a whole "
     "number"},
    {"timeout = '90'",
     "p.toml:2:11: timeout: \"90\" is no time; write it like 90s, 45m, 1h30m or 2d (at most "
     "10000d)"},
    {"timeout = '0s'", "p.toml:2:11: timeout: expected at least 1ms, found \"0s\""},
    {"deadline = '0s'", "p.toml:2:12: deadline: expected at least 1ms, found \"0s\""},
    {"for = '0s'", "p.toml:2:7: for: expected at least 1ms, found \"0s\""},
    {"quick = '0s'", "p.toml:2:9: quick: expected at least 1ms, found \"0s\""},
    {"grace = true",
     "p.toml:2:9: grace: expected a time in quotes like \"90s\" or \"1h30m\", found true or false"},
    {"repeat = 0", "p.toml:2:10: repeat: expected a whole number from 1 to 1000000, found 0"},
    {"repeat = -1", "p.toml:2:10: repeat: expected a whole number from 1 to 1000000, found -1"},
    {"repeat = 1000001",
     "p.toml:2:10: repeat: expected a whole number from 1 to 1000000, found 1000001"},
    {"repeat = 1.0",
     "p.toml:2:10: repeat: expected a whole number from 1 to 1000000, found a number"},
    {"jobs = 257", "p.toml:2:8: jobs: expected a whole number from 1 to 256, found 257"},
    {"shuffle = 'x'",
     "p.toml:2:11: shuffle: expected a whole number from 0 to 9223372036854775807, found a text"},
    {"until-failure = 1",
     "p.toml:2:17: until-failure: expected true or false, found a whole number"},
    {"allow-destructive = 'yes'",
     "p.toml:2:21: allow-destructive: expected true or false, found a text"},
    {"exclude = 1", "p.toml:2:11: exclude: expected a list of texts, found a whole number"},
    {"exclude = ['a', 1]", "p.toml:2:17: exclude: expected texts in quotes, found a whole number"},
    {"settings = 1", "p.toml:2:12: settings: expected a table NAME = VALUE, found a whole number"},
    {"settings.a.b = 1", "p.toml:2:10: a: expected a value, found a table"},
    {"settings.a = [[1]]", "p.toml:2:15: a: expected a list of values, found a list"},
    {"limits = 1",
     "p.toml:2:10: limits: expected a table NAME = { minimum = ..., maximum = ... }, found a whole "
     "number"},
    {"limits.a = 1",
     "p.toml:2:12: a: expected { minimum = ..., maximum = ... }, found a whole number"},
    {"limits.a = {}", "p.toml:2:8: a: expected a minimum, a maximum or both"},
    {"limits.a = { minimum = 'x' }", "p.toml:2:24: minimum: expected a number, found a text"},
    {"limits.a = { maximum = nan }", "p.toml:2:24: maximum: expected a number, found nan"},
    {"limits.a = { minimum = 2, maximum = 1 }", "p.toml:2:8: a: the minimum is above the maximum"},
    {"limits.a = { minimun = 2 }",
     "p.toml:2:14: unknown key \"minimun\" of a limit; close to it: \"minimum\""},
    {"[[group]]\nname = 'g'",
     "p.toml:2:1: group \"g\" has no test: expected [[group.test]] with a name"},
    {"[[group]]\nname = 'g'\njobs = 1\n[[group.test]]\nname='x'",
     "p.toml:4:1: unknown key \"jobs\" of a group; it may have \"name\", \"repeat\", \"shuffle\", "
     "\"timeout\", \"settings\", \"limits\", \"test\""},
    {"[group]\nname = 'g'",
     "p.toml:2:1: group: expected tables, each under [[group]], found a table"},
    {"[[group]]\nname='g'\n[[group.test]]\nname='x'\n[[group]]\nname='g'\n[[group.test]]\nname='x'",
     "p.toml:7:6: name: another group is called \"g\""},
};

TEST(PlanFile, WhatIsWrongIsNamedWithItsPlace) {
  for (const BadPlanRow& row : kBadPlanRows) {
    EXPECT_EQ(complaint("test = [{ name = \"*\" }] # one\n" + std::string(row.text)), row.complaint)
        << row.text;
  }
}

const BadPlanRow kBadTestRows[] = {
    {"[[test]]", "p.toml:1:1: expected name = \"...\""},
    {"[[test]]\nname = ''", "p.toml:2:8: expected name = \"...\""},
    {"[[test]]\nname = 'x'\nrepat = 2",
     "p.toml:3:1: unknown key \"repat\" of a test; close to it: \"repeat\""},
};

TEST(PlanFile, WhatIsWrongWithATestIsNamedWithItsPlace) {
  for (const BadPlanRow& row : kBadTestRows) EXPECT_EQ(complaint(row.text), row.complaint);
}

TEST(PlanFile, WhatIsNoTomlIsNamedWithItsPlace) {
  for (const char* text :
       {"a = ", "title = 'x", "= 1", "a = 1\na = 2", "[x", "\xFF = 1", "a = \"\x01\""}) {
    const std::string message = complaint(text);
    EXPECT_EQ(message.substr(0, 7), "p.toml:") << message;
    EXPECT_NE(message.find_first_of("12", 7), std::string::npos) << message;
  }
}

// Catches an assertion of the TOML library that such a plan would end the program with.
TEST(PlanFile, AHeaderThatBeginsNoKeyIsNamedWithItsPlace) {
  EXPECT_EQ(complaint("a = 1\n[[# x").substr(0, 11), "p.toml:2:3:");
  EXPECT_EQ(complaint("[=").substr(0, 11), "p.toml:1:2:");
}

// Catches tables of the TOML library that say of a letter like these that it cannot be.
TEST(PlanFile, ALetterWhereNoneMayBeIsNamedWithItsPlace) {
  for (const char* letter : {"\xC3\xA9", "\xD5\x9B", "\xE2\xB1\xA0", "\xEF\xBF\xBD"}) {
    EXPECT_EQ(complaint("a = " + std::string(letter)).substr(0, 11), "p.toml:1:5:") << letter;
    EXPECT_EQ(complaint(std::string(letter) + " = 1").substr(0, 11), "p.toml:1:1:") << letter;
  }
}

TEST(PlanFile, APlanWithoutTestsIsRefused) {
  EXPECT_EQ(complaint(""), "p.toml:1:1: the plan names no test: expected [[test]] with a name");
}

TEST(PlanFile, WhatIsFarTooLongIsRefused) {
  EXPECT_EQ(complaint(std::string(kLongestPlan + 1, ' ')),
            "p.toml: longer than 1 MiB; this is no plan");
}

TEST(PlanFile, LineEndsOfTheOtherPlatformAreAllRight) {
  EXPECT_EQ(planFrom("title = 'x'\r\n[[test]]\r\nname = '*'\r\n", "p.toml").title, "x");
}

TEST(PlanFile, TablesWithinTablesWithoutEndAreRefused) {
  std::string text = "a = ";
  for (int i = 0; i < 100'000; ++i) text += '[';
  EXPECT_EQ(complaint(text).substr(0, 7), "p.toml:");
}

PlanShelf shelf() {
  return {[](const std::string& path) { return "title = '" + path + "'\n[[test]]\nname = '*'\n"; },
          "/plans",
          {"quick", "standard", "burn-in"}};
}

TEST(PlanShelf, ANameMeansAPlanThatIsThere) {
  EXPECT_EQ(openPlan("quick", shelf()).title, "/plans/quick.toml");
}

TEST(PlanShelf, WhatLooksLikeAFileIsOne) {
  for (const char* name : {"quick.toml", "./quick", "/plans/quick", "lab\\quick"}) {
    PlanShelf files = shelf();
    files.read = [](const std::string& path) {
      return "test = [{ name = '*' }]\ntitle = \"\"\"" +
             std::string(path == "lab\\quick" ? "lab" : path) + "\"\"\"";
    };
    EXPECT_EQ(openPlan(name, files).title, name == std::string("lab\\quick") ? "lab" : name);
  }
}

TEST(PlanShelf, AnUnknownNameIsRefusedWithWhatIsCloseToIt) {
  try {
    openPlan("quik", shelf());
    ADD_FAILURE();
  } catch (const PlanError& error) {
    EXPECT_STREQ(error.what(),
                 "unknown plan \"quik\"; close to it: \"quick\"; a file is named with its path or "
                 ".toml");
  }
  try {
    openPlan("zzzzzzzzzzzz", shelf());
    ADD_FAILURE();
  } catch (const PlanError& error) {
    EXPECT_STREQ(error.what(),
                 "unknown plan \"zzzzzzzzzzzz\"; there are \"quick\", \"standard\", \"burn-in\"; a "
                 "file is named with its path or .toml");
  }
}

}  // namespace
}  // namespace engine
