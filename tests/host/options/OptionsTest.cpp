#include <gtest/gtest.h>

#include "host/options/Options.h"

namespace host {
namespace {

using Texts = std::vector<std::string>;

/// The options of a command line that makes sense.
Options parsed(const Texts& arguments) {
  const auto result = parseOptions(arguments);
  EXPECT_TRUE(std::holds_alternative<Options>(result));
  return std::holds_alternative<Options>(result) ? std::get<Options>(result) : Options();
}

TEST(Options, EveryCommandIsTold) {
  EXPECT_EQ(parsed({"list"}).command, Command::kList);
  EXPECT_EQ(parsed({"run", "--all"}).command, Command::kRun);
  EXPECT_EQ(parsed({"results", "A"}).command, Command::kResults);
  EXPECT_EQ(parsed({"inspect", "CIM_Memory"}).command, Command::kInspect);
  EXPECT_EQ(parsed({"providers"}).command, Command::kProviders);
  EXPECT_EQ(parsed({"check"}).command, Command::kCheck);
}

TEST(Options, GlobalOptionsStandBeforeOrBehindTheCommand) {
  EXPECT_EQ(parsed({"--root", "/x", "list"}).root, "/x");
  EXPECT_EQ(parsed({"list", "--root", "/x"}).root, "/x");
}

TEST(Options, AnEmptyFirmwareIdentifierIsNotNone) {
  EXPECT_EQ(parsed({"list", "--bios", ""}).biosId, "");
  EXPECT_EQ(parsed({"list"}).biosId, std::nullopt);
}

TEST(Options, TheCacheIsUsedUnlessToldOtherwise) {
  EXPECT_FALSE(parsed({"list"}).noCache);
  EXPECT_TRUE(parsed({"--no-cache", "list"}).noCache);
}

TEST(Options, TheLogGoesToTheNamedFile) {
  const Options options = parsed({"list", "--log", "/tmp/log", "--log-level", "0"});
  EXPECT_EQ(options.logFile, "/tmp/log");
  EXPECT_EQ(options.logLevel, 0);
}

TEST(Options, TestsAreTakenAsTheyStand) {
  EXPECT_EQ(parsed({"run", "A,1,x y", "list", "[B],2,[z]", "\x01", "\x01y", "--", "--C"}).tests,
            (Texts{"A,1,x y", "list", "[B],2,[z]", "\x01", "\x01y", "--C"}));
}

// On one system an argument of this kind may be an option.
TEST(Options, APathIsNoOption) {
  EXPECT_EQ(parsed({"verify", "/a/b", "/c"}).streams, (Texts{"/a/b", "/c"}));
  EXPECT_EQ(parsed({"run", "/A,1,x"}).tests, Texts{"/A,1,x"});
}

TEST(Options, EachLevelHasItsName) {
  EXPECT_EQ(parsed({"run", "A"}).level, std::nullopt);
  EXPECT_EQ(parsed({"run", "A", "--level", "simple"}).level, Level::kSimple);
  EXPECT_EQ(parsed({"run", "A", "--level", "immediate"}).level, Level::kImmediate);
  EXPECT_EQ(parsed({"results", "A", "--level", "Extended"}).level, Level::kExtended);
}

TEST(Options, TheDurationOfAThreadedRunMayBeNought) {
  EXPECT_EQ(parsed({"run", "A"}).threadedMinutes, std::nullopt);
  EXPECT_EQ(parsed({"run", "--threaded", "0", "A"}).threadedMinutes, 0U);
  EXPECT_EQ(parsed({"run", "A", "--threaded", "71582788"}).threadedMinutes, 71582788U);
}

TEST(Options, MissingProvidersAreIgnoredOnDemandAlone) {
  EXPECT_FALSE(parsed({"run", "--all"}).ignoreProviders);
  EXPECT_TRUE(parsed({"run", "--all", "--ignore-providers"}).ignoreProviders);
}

struct MessageRow {
  Texts arguments;
  const char* message;
};

// Catches words in their reverse order, and the mark that keeps an argument as it stands shown as a
// blank in front of it.
TEST(Options, AMessageHasTheWordsInTheirOrder) {
  const MessageRow rows[] = {
      {{"list", "a", "b", "c"}, "The following arguments were not expected: a b c"},
      {{"list", "--", "a"}, "The following argument was not expected: a"},
      {{"run", "--bogus", "--all", "--other"},
       "The following arguments were not expected: --bogus --other"},
      {{"providers", "[a,b]", "c"}, "The following arguments were not expected: [a,b] c"},
      {{"list", "--log-level", "[9]"}, "--log-level: \"[9]\" is no whole number from 0 to 3"},
      {{"list", "a", ""}, "The following arguments were not expected: a \"\""},
      {{"[lst]"}, "unknown command \"[lst]\""},
      {{"\x01list"}, "unknown command \"\\x01list\"; close to it: \"list\""},
      {{"lst"}, "unknown command \"lst\"; close to it: \"list\""},
      {{"chekc", "x"}, "unknown command \"chekc\"; close to it: \"check\""},
      {{"zzzzzzzz"}, "unknown command \"zzzzzzzz\""},
      {{"--frob"}, "unknown option \"--frob\""},
      {{}, "no command"},
      {{"list", "--root", ""}, "--root: \"\" is no directory"},
      {{"list", "--log", ""}, "--log: \"\" is no file"},
      {{"list", "--log-level", "1"}, "--log-level: there is no log without --log FILE"},
  };
  for (const MessageRow& row : rows) {
    testing::internal::CaptureStderr();
    parseOptions(row.arguments);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              std::string("diags: ") + row.message + " (diags --help tells more)\n");
  }
}

TEST(Options, ACommandLineThatMakesNoSenseIsAUsageError) {
  const Texts lines[] = {
      {},
      {"frobnicate"},
      {"--frobnicate", "list"},
      {"list", "superfluous"},
      {"list", "run", "--all"},
      {"run"},
      {"run", "A", "--all"},
      {"run", "A", "B", "--threaded", "1"},
      {"run", "--all", "--threaded", "1"},
      {"run", "A", "--threaded", "soon"},
      {"run", "A", "--threaded", "71582789"},
      {"run", "A", "--level", "loud"},
      {"results"},
      {"results", "A", "B"},
      {"inspect"},
      {"list", "--log-level", "4"},
      {"list", "--root"},
      {"list", "--root", ""},
      {"list", "--root="},
      {"list", "--log", ""},
      {"list", "--log-level", "2"},
      {"run", "A", "--ignore-providers"},
      {"list", "--ignore-providers"},
      {"list", "--raw", "--json"},
      {"list", "--raw", "--long"},
      {"run", "A", "--threaded", "1", "--dry-run"},
      {"history", "--diff", "a", "b", "--most", "3"},
      {"history", "--trend", "A", "--most", "3"},
      {"history", "--log", "/tmp/log"},
      {"verify", "x", "--bios", "A"},
  };
  for (const Texts& line : lines) {
    testing::internal::CaptureStderr();
    const auto result = parseOptions(line);
    const std::string message = testing::internal::GetCapturedStderr();
    const std::string shown = testing::PrintToString(line);
    ASSERT_TRUE(std::holds_alternative<ExitStatus>(result)) << shown;
    EXPECT_EQ(std::get<ExitStatus>(result), ExitStatus::kUsage) << shown;
    EXPECT_EQ(message.find("diags: "), 0U) << shown;
    EXPECT_EQ(message.find('\n'), message.size() - 1) << shown;
  }
}

// Catches a script's variable that is not set: the report would be missed when it is wanted.
TEST(Options, AnEmptyNameIsNotTakenForNone) {
  const Texts lines[] = {{"run", "A", "--events"}, {"run", "A", "--jsonl"}, {"run", "A", "--junit"},
                         {"run", "A", "--html"},   {"report", "--metrics"}, {"run", "A", "--plan"},
                         {"run", "A", "--state"},  {"report", "--html"},    {"history", "--state"},
                         {"history", "--trend"}};
  for (Texts line : lines) {
    const std::string option = line.back();
    line.emplace_back();
    testing::internal::CaptureStderr();
    EXPECT_TRUE(std::holds_alternative<ExitStatus>(parseOptions(line))) << option;
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "diags: " + option + ": \"\" names nothing (diags --help tells more)\n");
  }
}

struct NumberOption {
  Texts line;  ///< to which the value is added
  const char* name;
  const char* range;
};

const NumberOption kNumberOptions[] = {
    {{"run", "A", "--repeat"}, "--repeat", "1 to 1000000"},
    {{"run", "A", "--jobs"}, "--jobs", "1 to 256"},
    {{"run", "A", "--shuffle"}, "--shuffle", "0 to 18446744073709551615"},
    {{"run", "A", "--threaded"}, "--threaded", "0 to 71582788"},
    {{"list", "--log", "x", "--log-level"}, "--log-level", "0 to 3"},
    {{"history", "--most"}, "--most", "1 to 1000000000"},
};

// Catches a sign, a blank or another base that is taken: "-1" as the greatest number there is,
// "010" as eight, nothing as nought.
TEST(Options, WhatIsNoWholeNumberInRangeIsRefusedWithItsOption) {
  for (const NumberOption& option : kNumberOptions) {
    for (const char* const value :
         {"-1", "+1", "", " 1", "1 ", "1.0", "1e0", "0x1", "0b1", "1'0", "1,2", "one",
          "18446744073709551616", "99999999999999999999999999"}) {
      Texts line = option.line;
      line.back() += std::string("=") + value;
      if (std::string(value).empty()) line = option.line, line.emplace_back();
      testing::internal::CaptureStderr();
      const auto result = parseOptions(line);
      EXPECT_EQ(testing::internal::GetCapturedStderr(),
                std::string("diags: ") + option.name + ": \"" + value +
                    "\" is no whole number from " + option.range + " (diags --help tells more)\n");
      EXPECT_TRUE(std::holds_alternative<ExitStatus>(result)) << option.name << value;
    }
  }
}

TEST(Options, NoughtIsRefusedWhereItMeansNothing) {
  for (const char* const name : {"--repeat", "--jobs"}) {
    testing::internal::CaptureStderr();
    EXPECT_TRUE(std::holds_alternative<ExitStatus>(parseOptions({"run", "A", name, "0"}))) << name;
    EXPECT_NE(testing::internal::GetCapturedStderr().find("\"0\" is no whole number from 1"),
              std::string::npos);
  }
}

TEST(Options, NumbersAreDecimal) {
  EXPECT_EQ(parsed({"run", "A", "--repeat", "010"}).run.repeat, 10U);
  EXPECT_EQ(parsed({"run", "A", "--shuffle", "18446744073709551615"}).run.shuffle,
            18446744073709551615U);
  EXPECT_EQ(parsed({"run", "A", "--shuffle", "0"}).run.shuffle, 0U);
  EXPECT_EQ(parsed({"history", "-n", "7"}).most, 7U);
}

}  // namespace
}  // namespace host
