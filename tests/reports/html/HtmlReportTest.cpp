#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <stdexcept>

#include "reports/html/HtmlReport.h"
#include "tests/reports/html/SampleRuns.h"

namespace reports {
namespace {

using engine::Outcome;
using samples::Script;
using testing::HasSubstr;
using testing::Not;

std::size_t countOf(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

/// A page of one memory test between whose beginning and end `fill` puts something.
template <class Fill>
std::string pageWith(Fill fill, const HtmlLimits& limits = {}) {
  Script script;
  script.add(0, samples::workstation(1)).add(1, samples::memoryTest());
  fill(script);
  script.add(1, samples::ended(Outcome::kFailed, "Fail"));
  return samples::pageOf(script.add(0, samples::ended(Outcome::kFailed, "")).events(), limits);
}

/// A page of `count` runs of a test, every `nth` of which failed.
std::string pageOfRuns(std::uint64_t count, std::uint64_t nth, const HtmlLimits& limits) {
  Script script;
  script.add(0, samples::workstation(count));
  for (std::uint64_t i = 1; i <= count; ++i) {
    script.add(i, samples::memoryTest(i));
    script.add(i, samples::ended(i % nth == 0 ? Outcome::kFailed : Outcome::kPassed, ""));
  }
  return samples::pageOf(script.add(0, samples::ended(Outcome::kFailed, "")).events(), limits);
}

TEST(HtmlReport, IsWrittenWithTheEndOfTheRunAndNotBefore) {
  std::ostringstream out;
  HtmlReport report(out, "page.html");
  const std::vector<engine::Event> events = samples::soundRun();
  for (std::size_t i = 0; i + 1 < events.size(); ++i) report.take(events[i]);
  EXPECT_EQ(out.str(), "");
  report.take(events.back());
  EXPECT_THAT(out.str(), testing::EndsWith("</html>\n"));
}

TEST(HtmlReport, IsWrittenOnce) {
  std::ostringstream out;
  HtmlReport report(out, "page.html");
  for (const engine::Event& event : samples::soundRun()) report.take(event);
  report.take(samples::soundRun().back());
  report.finish();
  EXPECT_EQ(countOf(out.str(), "<!DOCTYPE html>"), 1U);
}

TEST(HtmlReport, AFileThatCannotBeWrittenIsNamed) {
  std::ostringstream out;
  out.setstate(std::ios::badbit);
  HtmlReport report(out, "page.html");
  try {
    report.finish();
    FAIL() << "nothing was thrown";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "page.html cannot be written");
  }
}

TEST(HtmlReport, ACutOffStreamIsAPageThatSaysSo) {
  const std::string page = samples::pageOf(samples::cutOffRun());
  EXPECT_THAT(page, HasSubstr("<h1>The run did not end</h1>"));
  EXPECT_THAT(page, HasSubstr("No end"));
  EXPECT_THAT(page, HasSubstr("at 42 %"));
}

// Wherever it is cut: no state in between may leave a page half written, or bring the writer down.
TEST(HtmlReport, EveryCutOfAStreamGivesAWholePage) {
  std::vector<engine::Event> events = samples::faultyRun();
  while (!events.empty()) {
    events.pop_back();
    const std::string page = samples::pageOf(events);
    EXPECT_THAT(page, testing::EndsWith("</html>\n"));
    EXPECT_EQ(countOf(page, "<article"), countOf(page, "</article>"));
    EXPECT_EQ(countOf(page, "<div"), countOf(page, "</div>"));
  }
}

TEST(HtmlReport, TellsWhoTheMachineIsAndWhichPartIsFaulty) {
  const std::string page = samples::pageOf(samples::faultyRun());
  for (const char* const text : {"bench-07", "Firmware F22 (2026-03-14)", "AC-40-118273",
                                 "P0 channel B \u00b7 Kestrel \u00b7 KS-16G-5600", "HX23-0099A"}) {
    EXPECT_THAT(page, HasSubstr(text));
  }
  EXPECT_EQ(countOf(page, "<div class=\"card part fail\">"), 1U);
}

TEST(HtmlReport, OfManyPartsThoseThatMatterAreSeenAtOnce) {
  engine::RunStarted start = samples::workstation(1);
  for (int i = 0; i < 30; ++i) {
    start.parts.push_back({"memory", "DIMM " + std::to_string(i), "", "", "", "", ""});
  }
  Script script;
  script.add(0, start).add(1, samples::memoryTest());
  script.add(1, engine::Diagnosis{engine::Verdict::kFail, "bit 5", "DIMM 17", {}});
  script.add(1, samples::ended(Outcome::kFailed, "Fail"));
  const std::string page =
      samples::pageOf(script.add(0, samples::ended(Outcome::kFailed, "")).events());
  const std::size_t fold = page.find("<summary>The other parts</summary>");
  EXPECT_LT(page.find("<h3>DIMM 17</h3>"), fold);
  EXPECT_GT(page.find("<h3>DIMM 16</h3>"), fold);
  EXPECT_EQ(countOf(page, "<h3>DIMM 17</h3>"), 1U);
}

TEST(HtmlReport, EveryRecommendationStandsAtTheTopOnce) {
  const std::string page = pageWith([](Script& script) {
    script.add(1, engine::Message{engine::Severity::kError, "a", {"Replace it."}});
    script.add(1, engine::Message{engine::Severity::kError, "b", {"Replace it.", "Test again."}});
  });
  const std::string top =
      page.substr(page.find("<section id=\"actions\">"),
                  page.find("<section id=\"machine\">") - page.find("<section id=\"actions\">"));
  EXPECT_EQ(countOf(top, "Replace it."), 1U);
  EXPECT_EQ(countOf(top, "Test again."), 1U);
}

TEST(HtmlReport, AnErrorHasItsCauseAndWhereItCameFrom) {
  const std::string page = samples::pageOf(samples::faultyRun());
  for (const char* const text :
       {"The test crashed", "Segmentation fault",
        "Last entered: HaldenDisk, invokeMethod RunDiagnosticService; code 11",
        "<code>libhalden.so</code>"}) {
    EXPECT_THAT(page, HasSubstr(text));
  }
}

TEST(HtmlReport, MeasurementsOfSeveralRunsHaveACourse) {
  const std::string page = samples::pageOf(samples::burnIn());
  EXPECT_THAT(page, HasSubstr("<section id=\"trends\">"));
  EXPECT_THAT(page, HasSubstr("Temperature: 40 values from 60 to 99 \u00b0C; allowed: at most 95"));
  EXPECT_THAT(samples::pageOf(samples::soundRun()), Not(HasSubstr("<section id=\"trends\">")));
}

TEST(HtmlReport, OfManyLinesTheFirstAndTheLastAreShownAndTheOthersCounted) {
  const std::string page = pageWith([](Script& script) {
    for (int i = 1; i <= 100'000; ++i) {
      const engine::OutputLine line{engine::Stream::kOutput, "line " + std::to_string(i), false};
      script.add(1, line, 0.0001);
    }
  });
  EXPECT_LT(page.size(), 100'000U);
  EXPECT_THAT(page, HasSubstr("Output, 100000 lines"));
  EXPECT_THAT(page, HasSubstr("line 200\n"));
  EXPECT_THAT(page, HasSubstr("99600 lines left out here"));
  EXPECT_THAT(page, HasSubstr("line 99801\n"));
  EXPECT_THAT(page, Not(HasSubstr("line 201\n")));
}

TEST(HtmlReport, TenMegabytesOfNameMakeNoTenMegabytesOfPage) {
  const std::string page = samples::pageOf(samples::runOf(std::string(10 << 20, 'x')));
  EXPECT_LT(page.size(), 200'000U);
  EXPECT_THAT(page, HasSubstr("more bytes)"));
}

TEST(HtmlReport, MessagesThatAreTooManyAreCounted) {
  const std::string page = pageWith([](Script& script) {
    for (int i = 0; i < 150; ++i) {
      script.add(1, engine::Message{engine::Severity::kInfo, "note " + std::to_string(i), {}});
    }
  });
  EXPECT_THAT(page, HasSubstr("note 99<"));
  EXPECT_THAT(page, Not(HasSubstr("note 100<")));
  EXPECT_THAT(page, HasSubstr("50 more messages"));
}

TEST(HtmlReport, OfTooManyTestsThoseThatFailedAreShown) {
  HtmlLimits limits;
  limits.tests = 20;
  const std::string page = pageOfRuns(1000, 100, limits);
  EXPECT_EQ(countOf(page, "<article class=\"card test fail\""), 10U);
  EXPECT_EQ(countOf(page, "<article class=\"card test pass\""), 10U);
  EXPECT_THAT(page, HasSubstr("980 more runs of tests are counted above"));
  EXPECT_THAT(page, HasSubstr("<h1>10 of 1000 tests found a fault</h1>"));
}

TEST(HtmlReport, OfMoreFailuresThanThereIsRoomForTheFirstAreShown) {
  HtmlLimits limits;
  limits.tests = 5;
  const std::string page = pageOfRuns(50, 1, limits);
  EXPECT_EQ(countOf(page, "<article class=\"card test fail\""), 5U);
  EXPECT_THAT(page, HasSubstr("(45 Failed)"));
}

TEST(HtmlReport, WhatTestsSaidDoesNotFillTheMemory) {
  HtmlLimits limits;
  limits.bytes = 100'000;
  Script script;
  script.add(0, samples::workstation(100));
  for (std::uint64_t i = 1; i <= 100; ++i) {
    script.add(i, samples::memoryTest(i));
    script.add(i, engine::LogLine{2, std::string(900, 'x')});
    for (int n = 0; n < 10; ++n) {
      script.add(i, engine::OutputLine{engine::Stream::kOutput, std::string(900, 'y'), false});
    }
    script.add(i, samples::ended(Outcome::kPassed, "Pass"));
  }
  const std::string page =
      samples::pageOf(script.add(0, samples::ended(Outcome::kPassed, "")).events(), limits);
  EXPECT_LT(page.size(), 200'000U);
  EXPECT_THAT(page, HasSubstr("All 100 tests passed"));
  EXPECT_THAT(page, HasSubstr("are counted above and not shown one by one"));
}

TEST(HtmlReport, TestsThatNeverEndDoNotFillTheMemoryEither) {
  HtmlLimits limits;
  limits.tests = 10;
  Script script;
  for (std::uint64_t i = 1; i <= 1000; ++i) script.add(i, samples::memoryTest(i));
  const std::string page = samples::pageOf(script.events(), limits);
  EXPECT_EQ(countOf(page, "<article"), 20U);
}

TEST(HtmlReport, EventsOutOfOrderBringNothingDown) {
  Script script;
  script.add(3, samples::ended(Outcome::kFailed, "Fail"))
      .add(4, engine::Progress{10})
      .add(1, samples::memoryTest())
      .add(1, samples::ended(Outcome::kPassed, "Pass"))
      .add(1, samples::ended(Outcome::kPassed, "Pass"))
      .add(1, samples::memoryTest())
      .add(0, samples::ended(Outcome::kFailed, ""))
      .add(1, engine::Progress{10});
  EXPECT_THAT(samples::pageOf(script.events()), HasSubstr("1 of 2 tests found a fault"));
}

class HostilePage : public testing::TestWithParam<samples::HostileText> {};

/// The page's tags, each once.
std::vector<std::string> tagsOf(const std::string& page) {
  std::vector<std::string> tags;
  for (std::size_t at = page.find('<'); at != std::string::npos; at = page.find('<', at + 1)) {
    tags.push_back(page.substr(at, page.find_first_of(" >\n", at) - at));
  }
  std::sort(tags.begin(), tags.end());
  return tags;
}

// Whatever the texts are, the page has the elements that it has with harmless ones.
TEST_P(HostilePage, HasNoElementThatCameFromAText) {
  EXPECT_EQ(tagsOf(samples::pageOf(samples::runOf(GetParam().text))),
            tagsOf(samples::pageOf(samples::runOf("harmless"))));
}

TEST_P(HostilePage, HasNoControlCharactersAndIsUtf8) {
  const std::string page = samples::pageOf(samples::runOf(GetParam().text));
  for (const char c : page) {
    ASSERT_TRUE(static_cast<unsigned char>(c) >= 0x20 || c == '\n' || c == '\t');
  }
  EXPECT_THAT(page, Not(HasSubstr("\u202e")));
  EXPECT_THAT(page, Not(HasSubstr("\xff")));
}

std::string caseName(const testing::TestParamInfo<samples::HostileText>& info) {
  std::string name = info.param.name;
  for (char& c : name) c = c == ' ' || c == '-' ? '_' : c;
  return name;
}

INSTANTIATE_TEST_SUITE_P(Texts, HostilePage, testing::ValuesIn(samples::hostileTexts()), caseName);

}  // namespace
}  // namespace reports
