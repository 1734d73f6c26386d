#include <gtest/gtest.h>

#include "host/Options.h"

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
  EXPECT_EQ(parsed({"run", "A,1,x y", "list", "[B],2,[z]", "--", "--C"}).tests,
            (Texts{"A,1,x y", "list", "[B],2,[z]", "--C"}));
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

}  // namespace
}  // namespace host
