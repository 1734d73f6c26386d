#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "host/verbs/PlanOptions.h"

namespace host {
namespace {

std::string refusal(const Options& options) {
  try {
    planOf(options);
    return "taken";
  } catch (const engine::PlanError& error) {
    return error.what();
  }
}

struct TimeRow {
  const char* text;
  const char* complaint;  ///< behind the option's name
};

const TimeRow kNoTimes[] = {
    {"0s", ": \"0s\" is too short, expected 1ms or more"},
    {"0d0h0m0s0ms", ": \"0d0h0m0s0ms\" is too short, expected 1ms or more"},
};

const char* const kNonsense[] = {"",    "-1s", "0",  "5",    "1.5h",   " 5m",
                                 "5m ", "5 m", "5M", "1m1h", "10001d", "99999999999999999999d"};

struct TimeOption {
  const char* name;
  std::optional<std::string> RunChoice::*member;
};

const TimeOption kTimeOptions[] = {{"--timeout", &RunChoice::timeout},
                                   {"--deadline", &RunChoice::deadline},
                                   {"--for", &RunChoice::repeatFor},
                                   {"--grace", &RunChoice::grace}};

std::string refusalOf(const TimeOption& option, const char* text) {
  Options options;
  options.run.*option.member = text;
  return refusal(options);
}

TEST(PlanOptions, ATimeThatIsNoneIsRefusedWithItsOption) {
  for (const TimeOption& option : kTimeOptions) {
    for (const char* const text : kNonsense) {
      EXPECT_EQ(refusalOf(option, text),
                std::string(option.name) + ": \"" + text +
                    "\" is no time; write it like 90s, 45m, 1h30m or 2d (at most 10000d)");
    }
  }
}

// Catches a limit that ends every test at once.
TEST(PlanOptions, NoTimeAtAllIsRefusedButAsAGrace) {
  for (const TimeOption& option : kTimeOptions) {
    const bool isGrace = option.member == &RunChoice::grace;
    for (const TimeRow& row : kNoTimes) {
      EXPECT_EQ(refusalOf(option, row.text),
                isGrace ? "taken" : std::string(option.name) + row.complaint);
    }
    EXPECT_EQ(refusalOf(option, "1ms"), "taken");
    EXPECT_EQ(refusalOf(option, "10000d"), "taken");
  }
}

std::string refusalOfPlan(const std::string& file) {
  Options options;
  options.run.plan = file;
  return refusal(options);
}

TEST(PlanOptions, APlanThatIsNoFileIsRefusedByWhatItIs) {
  const std::string folder = std::filesystem::temp_directory_path().u8string() + "/";
  EXPECT_EQ(refusalOfPlan(folder), folder + ": this is a folder, no plan");
  const std::string missing = folder + "diags-no-such-plan.toml";
  EXPECT_EQ(refusalOfPlan(missing), missing + ": there is no such file");
}

}  // namespace
}  // namespace host
