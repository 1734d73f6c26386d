#include <gtest/gtest.h>

#include "reports/html/Headline.h"
#include "tests/reports/html/SampleRuns.h"

namespace reports::html {
namespace {

using engine::Outcome;

struct HeadlineRow {
  const char* name;
  std::vector<Outcome> outcomes;
  std::uint64_t planned;
  bool hasEnd;
  const char* style;
  const char* text;
  const char* lead;
};

const HeadlineRow kHeadlines[] = {
    {"nothing", {}, 0, true, "open", "Nothing was tested", ""},
    {"one pass", {Outcome::kPassed}, 1, true, "pass", "The test passed", ""},
    {"passes", {Outcome::kPassed, Outcome::kPassed}, 2, true, "pass", "Both tests passed", ""},
    {"more passes",
     {Outcome::kPassed, Outcome::kPassed, Outcome::kPassed},
     3,
     true,
     "pass",
     "All 3 tests passed",
     ""},
    {"a skipped one is not among those that ran",
     {Outcome::kPassed, Outcome::kSkipped},
     2,
     true,
     "pass",
     "The test passed",
     ""},
    {"all skipped", {Outcome::kSkipped}, 1, true, "open", "Nothing was tested", ""},
    {"a warning",
     {Outcome::kPassed, Outcome::kWarned},
     2,
     true,
     "warn",
     "1 of 2 tests passed with a warning",
     ""},
    {"a fault outranks the rest",
     {Outcome::kWarned, Outcome::kBroken, Outcome::kFailed},
     3,
     true,
     "fail",
     "1 of 3 tests found a fault",
     "1 of 3 tests ended without a verdict. "},
    {"stopped by the user",
     {Outcome::kAborted, Outcome::kPassed},
     2,
     true,
     "open",
     "1 of 2 tests ended without a verdict",
     "That is no sign of faulty hardware, but neither was it tested. "},
    {"some did not run",
     {Outcome::kPassed},
     3,
     true,
     "warn",
     "The test passed",
     "2 planned tests did not run. "},
    {"cut off",
     {Outcome::kPassed},
     2,
     false,
     "open",
     "The run did not end",
     "This is all that is known of it. "},
    {"cut off behind a fault",
     {Outcome::kFailed},
     2,
     false,
     "fail",
     "The test found a fault",
     "The run did not end: this is all that is known of it. "},
};

RunPicture pictureOf(const HeadlineRow& row) {
  samples::Script script;
  script.add(0, samples::workstation(row.planned));
  for (std::size_t i = 0; i < row.outcomes.size(); ++i) {
    script.add(i + 1, samples::memoryTest(i + 1));
    script.add(i + 1, samples::ended(row.outcomes[i], ""));
  }
  if (row.hasEnd) script.add(0, samples::ended(Outcome::kPassed, ""));
  RunPicture run{HtmlLimits()};
  for (const engine::Event& event : script.events()) run.take(event);
  return run;
}

TEST(HtmlHeadline, SaysWhatTheRunComesTo) {
  for (const HeadlineRow& row : kHeadlines) {
    const Headline headline = headlineOf(pictureOf(row));
    EXPECT_EQ(headline.style, row.style) << row.name;
    EXPECT_EQ(headline.text, row.text) << row.name;
    EXPECT_EQ(headline.lead, row.lead) << row.name;
  }
}

/// All that were planned have an end, so that none is missing.
TEST(HtmlHeadline, OfARunThatWasStoppedBetweenTwoTestsIsNoPlainPass) {
  samples::Script script;
  script.add(0, samples::workstation(2));
  script.add(1, samples::memoryTest(1)).add(1, samples::ended(Outcome::kPassed, ""));
  script.add(2, samples::memoryTest(2)).add(2, samples::ended(Outcome::kSkipped, "not begun"));
  script.add(0, samples::ended(Outcome::kAborted, ""));
  RunPicture run{HtmlLimits()};
  for (const engine::Event& event : script.events()) run.take(event);
  const Headline headline = headlineOf(run);
  EXPECT_EQ(headline.style, "warn");
  EXPECT_EQ(headline.text, "The test passed");
  EXPECT_EQ(headline.lead, "The run was stopped before all its tests had begun. ");
}

}  // namespace
}  // namespace reports::html
