#include <gmock/gmock.h>

#include <limits>
#include <sstream>

#include "history/show/Tables.h"
#include "history/show/Words.h"
#include "tests/history/HistoryFixture.h"

namespace history {
namespace {

using engine::Outcome;
using testing::HasSubstr;
using testing::Not;

const std::string kHostile = "\x1b[2J\xff<b>&\"\n";

RunRecord ended() {
  RunRecord run;
  run.id = "20261122-013000-3f2a";
  run.state = RunState::kEnded;
  run.started = firstTime();
  run.ended = firstTime() + std::chrono::seconds(723);
  run.outcome = Outcome::kFailed;
  run.host = "lab-7";
  run.version = "1.0";
  run.command = "diags run";
  run.tests = {3, 0, 1, 0, 0};
  run.bytes = 100;
  return run;
}

RunRecord going(RunState state) {
  RunRecord run;
  run.id = "20261122-013100-0001";
  run.state = state;
  run.started = firstTime() + std::chrono::minutes(1);
  return run;
}

Measured measured(double mean) { return {1, mean, ""}; }

Difference someDifference() {
  Difference difference{ended(), going(RunState::kRunning), {}};
  difference.tests.push_back({"A,a,a",
                              TestVerdict{1, Outcome::kPassed},
                              TestVerdict{3, Outcome::kFailed},
                              {{"read", "sda", "MB/s", measured(8), measured(9)},
                               {"mode", "", "", Measured{1, {}, "fast"}, Measured{1, {}, "fast"}},
                               {"write", "", "MB/s", measured(8), {}}}});
  difference.tests.push_back(
      {"B,b,b", TestVerdict{1, Outcome::kPassed}, TestVerdict{1, Outcome::kPassed}, {}});
  difference.tests.push_back({"C,c,c", {}, TestVerdict{1, {}}, {}});
  return difference;
}

template <typename Write, typename Value>
std::string textOf(Write write, const Value& value) {
  std::ostringstream stream;
  write(stream, value);
  return stream.str();
}

TEST(TablesTest, ARunIsALine) {
  EXPECT_EQ(
      textOf(writeRuns, std::vector<RunRecord>{going(RunState::kCutOff), ended()}),
      "RUN                   STARTED (UTC)        TOOK        VERDICT  TESTS               HOST\n"
      "20261122-013100-0001  2026-11-22 01:31:00  -           cut off  no tests\n"
      "20261122-013000-3f2a  2026-11-22 01:30:00  12 min 3 s  failed   3 passed, 1 failed  "
      "lab-7\n");
}

TEST(TablesTest, NoRunsAreSaidToBeNone) {
  EXPECT_EQ(textOf(writeRuns, std::vector<RunRecord>()), "There are no runs.\n");
}

TEST(TablesTest, OfADifferenceOnlyWhatChangedIsShown) {
  EXPECT_EQ(textOf(writeDifference, someDifference()),
            "before  20261122-013000-3f2a  2026-11-22 01:30:00  failed  lab-7\n"
            "after   20261122-013100-0001  2026-11-22 01:31:00  running\n"
            "2 tests have another verdict, 1 test has not changed at all.\n"
            "\n"
            "A,a,a\n"
            "  verdict: passed -> failed (the worst of 3)\n"
            "  read of sda: 8 MB/s -> 9 MB/s (+12.5 %)\n"
            "  write: 8 MB/s -> not measured\n"
            "\n"
            "C,c,c\n"
            "  verdict: not in this run -> cut off\n");
}

TEST(TablesTest, RunsAreAListInJson) {
  EXPECT_EQ(
      jsonOf(std::vector<RunRecord>{ended(), going(RunState::kRunning)}),
      R"([{"id":"20261122-013000-3f2a","state":"ended","started":"2026-11-22T01:30:00.000000Z",)"
      R"("ended":"2026-11-22T01:42:03.000000Z","outcome":"failed","host":"lab-7","version":"1.0",)"
      R"("commandLine":"diags run","tests":{"passed":3,"warned":0,"failed":1,"unfinished":0,)"
      R"("skipped":0},"bytes":100,"leftOut":0},)"
      R"({"id":"20261122-013100-0001","state":"running","started":"2026-11-22T01:31:00.000000Z",)"
      R"("tests":{"passed":0,"warned":0,"failed":0,"unfinished":0,"skipped":0},"bytes":0,)"
      R"("leftOut":0}])");
}

TEST(TablesTest, ADifferenceHasAllTestsInJson) {
  const std::string json = jsonOf(someDifference());
  EXPECT_THAT(json,
              HasSubstr(R"({"name":"B,b,b","changed":false,)"
                        R"("before":{"repetitions":1,"outcome":"passed"},)"
                        R"("after":{"repetitions":1,"outcome":"passed"},"measurements":[]})"));
  EXPECT_THAT(json,
              HasSubstr(R"({"name":"read","part":"sda","unit":"MB/s","changed":true,)"
                        R"("before":{"times":1,"mean":8.0},"after":{"times":1,"mean":9.0}})"));
  EXPECT_THAT(json, HasSubstr(R"({"name":"C,c,c","changed":true,"after":{"repetitions":1})"));
}

TEST(TablesTest, ATrendHasItsPointsInJson) {
  const Trend trend{"A,a,a", "read", "", "MB/s", 1.0, {}, {{"r", firstTime(), 2, 5, 4, 6}}};
  EXPECT_EQ(jsonOf(std::vector<Trend>{trend}),
            R"([{"test":"A,a,a","name":"read","unit":"MB/s","minimum":1.0,"points":[{"run":"r",)"
            R"("started":"2026-11-22T01:30:00.000000Z","times":2,"mean":5.0,"least":4.0,)"
            R"("greatest":6.0}]}])");
}

TEST(TablesTest, HostileTextsActOnNoTerminal) {
  RunRecord run = ended();
  run.id = run.host = kHostile;
  Difference difference{run, run, {}};
  difference.tests.push_back({kHostile,
                              TestVerdict{},
                              {},
                              {{kHostile, kHostile, kHostile, Measured{1, {}, kHostile}, {}}}});
  const std::string text =
      textOf(writeRuns, std::vector<RunRecord>{run}) + textOf(writeDifference, difference);
  EXPECT_THAT(text, Not(HasSubstr("\x1b")));
  EXPECT_THAT(text, Not(HasSubstr("\xff")));
  EXPECT_THAT(text, HasSubstr("\\x1b[2J"));
  // The headings, the run, three lines of heads, an empty one, the test, its verdict and
  // measurement.
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 9);
}

TEST(TablesTest, HostileTextsStayWithinTheirJson) {
  RunRecord run = ended();
  run.host = kHostile;
  EXPECT_THAT(jsonOf(std::vector<RunRecord>{run}),
              HasSubstr("\"host\":\"\\u001b[2J\xef\xbf\xbd<b>&\\\"\\n\""));
}

TEST(TablesTest, NothingInTheirJsonActsOnATerminal) {
  RunRecord run = ended();
  run.host = "a\x7F\u009b2J\u202eb";
  EXPECT_THAT(jsonOf(std::vector<RunRecord>{run}), HasSubstr(R"("host":"a\u007f\u009b2J\u202eb")"));
}

TEST(WordsTest, DurationsAreSaidInTheUnitsThatMatter) {
  const std::pair<double, const char*> rows[] = {
      {-1, "0.0 s"},         {0.04, "0.0 s"},     {2.59, "2.5 s"},       {59.99, "59.9 s"},
      {60, "1 min"},         {723, "12 min 3 s"}, {3599, "59 min 59 s"}, {3600, "1 h"},
      {28'920, "8 h 2 min"}, {360'000, "100 h"}};
  for (const auto& [seconds, wanted] : rows) {
    EXPECT_EQ(durationOf(std::chrono::microseconds(static_cast<std::int64_t>(seconds * 1e6))),
              wanted);
  }
}

TEST(WordsTest, CountsNameOnlyWhatThereIs) {
  EXPECT_EQ(countsOf({}), "no tests");
  EXPECT_EQ(countsOf({1, 2, 3, 4, 5}), "1 passed, 2 warned, 3 failed, 4 unfinished, 5 skipped");
  EXPECT_EQ(countsOf({0, 0, 1, 0, 0}), "1 failed");
}

TEST(WordsTest, ColumnsAreCountedInCharacters) {
  EXPECT_EQ(columnsOf("Läufe"), 5U);
  EXPECT_EQ(padded("ä", 3), "ä  ");
  EXPECT_EQ(paddedBefore("ä", 3), "  ä");
  EXPECT_EQ(padded("abcd", 3), "abcd");
}

}  // namespace
}  // namespace history
