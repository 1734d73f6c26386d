#include <gmock/gmock.h>

#include <limits>

#include "engine/events/EventLine.h"
#include "history/History.h"
#include "tests/engine/events/SampleEvents.h"
#include "tests/history/HistoryFixture.h"

namespace history {
namespace {

using engine::Outcome;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class HistoryTest : public HistoryFixture {};

engine::Time minutesLater(int minutes) { return firstTime() + std::chrono::minutes(minutes); }

std::vector<std::string> idsOf(const std::vector<RunRecord>& runs) {
  std::vector<std::string> ids;
  for (const RunRecord& run : runs) ids.push_back(run.id);
  return ids;
}

std::string complaintOf(const std::function<void()>& act) {
  try {
    act();
    return {};
  } catch (const HistoryError& error) {
    return error.what();
  }
}

TEST_F(HistoryTest, ANewOneHasNoRuns) {
  const History history = open();
  EXPECT_THAT(history.runs(), IsEmpty());
  EXPECT_EQ(history.notice(), "");
}

TEST_F(HistoryTest, GivesEventsBackAsTheyWere) {
  History history = open();
  std::vector<std::string> lines;
  std::string id;
  {
    Recorder recorder(history);
    for (const engine::Sample& sample : engine::sampleEvents()) {
      recorder.take(sample.event);
      lines.push_back(sample.line);
    }
    id = recorder.id();
  }
  EXPECT_EQ(linesOf(history, id), lines);
}

TEST_F(HistoryTest, RemembersRunsWhenItIsOpenedAgain) {
  std::string id;
  {
    History history = open();
    id = recordRun(history);
  }
  const History history = open();
  const RunRecord run = history.run(id);
  EXPECT_EQ(run.state, RunState::kEnded);
  EXPECT_EQ(run.outcome, Outcome::kPassed);
  EXPECT_EQ(run.host, "host");
  EXPECT_EQ(run.command, "diags run");
  EXPECT_EQ(run.started, firstTime());
  EXPECT_EQ(*run.ended - run.started, std::chrono::milliseconds(400));
  EXPECT_EQ(linesOf(history, id).size(), 5U);
}

TEST_F(HistoryTest, CountsHowTheTestsOfARunEnded) {
  History history = open();
  Recorder recorder(history);
  Tale tale(recorder);
  tale.runStarts();
  for (const Outcome outcome :
       {Outcome::kPassed, Outcome::kWarned, Outcome::kFailed, Outcome::kAborted,
        Outcome::kIncomplete, Outcome::kBroken, Outcome::kSkipped}) {
    tale.testStarts().testEnds(outcome);
  }
  const Counts counts = history.run(recorder.id()).tests;
  EXPECT_EQ(counts.passed, 1U);
  EXPECT_EQ(counts.warned, 1U);
  EXPECT_EQ(counts.failed, 1U);
  EXPECT_EQ(counts.unfinished, 3U);
  EXPECT_EQ(counts.skipped, 1U);
}

TEST_F(HistoryTest, ListsTheNewestRunFirst) {
  History history = open();
  const std::string late = recordRun(history, minutesLater(5));
  const std::string early = recordRun(history, minutesLater(0));
  EXPECT_THAT(idsOf(history.runs()), ElementsAre(late, early));
}

TEST_F(HistoryTest, ListsNoMoreThanAskedFor) {
  History history = open();
  recordRun(history, minutesLater(0));
  const std::string late = recordRun(history, minutesLater(5));
  EXPECT_THAT(idsOf(history.runs({}, 1)), ElementsAre(late));
}

TEST_F(HistoryTest, FiltersBySinceUntilOutcomeAndTest) {
  History history = open();
  const std::string first = recordRun(history, minutesLater(0), Outcome::kFailed);
  const std::string second = recordRun(history, minutesLater(1));
  RunFilter since, until, outcome, test, service, another;
  since.since = minutesLater(1);
  until.until = minutesLater(0);
  outcome.outcome = Outcome::kFailed;
  test.test = "Memory Test,mem0,Memory";
  service.test = "Memory Test";
  another.test = "Memory";
  EXPECT_THAT(idsOf(history.runs(since)), ElementsAre(second));
  EXPECT_THAT(idsOf(history.runs(until)), ElementsAre(first));
  EXPECT_THAT(idsOf(history.runs(outcome)), ElementsAre(first));
  EXPECT_THAT(idsOf(history.runs(test)), ElementsAre(second, first));
  EXPECT_THAT(idsOf(history.runs(service)), ElementsAre(second, first));
  EXPECT_THAT(history.runs(another), IsEmpty());
}

TEST_F(HistoryTest, FindsARunByItsIdentifierItsBeginningAndItsPlace) {
  History history = open();
  const std::string first = recordRun(history, minutesLater(0));
  const std::string second = recordRun(history, minutesLater(1));
  EXPECT_EQ(history.resolve(first), first);
  EXPECT_EQ(history.resolve("20261122-0131"), second);
  EXPECT_EQ(history.resolve("last"), second);
  EXPECT_EQ(history.resolve("last-1"), first);
}

TEST_F(HistoryTest, SaysWhyAWordStandsForNoRun) {
  History history = open();
  recordRun(history, minutesLater(0));
  recordRun(history, minutesLater(1));
  const auto complain = [&](const char* word) {
    return complaintOf([&] { history.resolve(word); });
  };
  EXPECT_THAT(complain("2026"), HasSubstr("several runs begin with \"2026\""));
  EXPECT_THAT(complain("2027"), HasSubstr("there is no run \"2027\" in "));
  EXPECT_THAT(complain("last-2"), HasSubstr("history.db has 2"));
  EXPECT_THAT(complain("last-"), HasSubstr("there is no run \"last-\""));
  EXPECT_THAT(complain("\x1b[2J"), HasSubstr("\"\\x1b[2J\""));
  EXPECT_THAT(complain(""), HasSubstr("several runs begin"));
}

TEST_F(HistoryTest, ARunIsRunningWhileItsRecorderIsThereAndCutOffAfterwards) {
  History history = open();
  const History other = open();
  std::string id;
  {
    Recorder recorder(history);
    Tale(recorder).runStarts();
    id = recorder.id();
    EXPECT_EQ(history.run(id).state, RunState::kRunning);
    EXPECT_EQ(other.run(id).state, RunState::kRunning);
  }
  EXPECT_EQ(history.run(id).state, RunState::kCutOff);
  EXPECT_EQ(other.run(id).state, RunState::kCutOff);
}

TEST_F(HistoryTest, OthersSeeATestAsSoonAsItHasEnded) {
  History history = open();
  Recorder recorder(history);
  Tale(recorder).runStarts().testStarts().testEnds();
  const History other = open();
  EXPECT_EQ(other.run(recorder.id()).tests.passed, 1U);
  EXPECT_EQ(linesOf(other, recorder.id()).size(), 3U);
}

TEST_F(HistoryTest, OthersSeeWhatIsASecondOld) {
  History history = open();
  Recorder recorder(history);
  Tale tale(recorder);
  tale.runStarts().testStarts().says(engine::Progress{40});
  EXPECT_EQ(linesOf(open(), recorder.id()).size(), 2U);
  tale.wait(std::chrono::seconds(1)).says(engine::Progress{50});
  EXPECT_EQ(linesOf(open(), recorder.id()).size(), 4U);
}

// Catches a machine that went down in the middle of a test, whose history does not tell of which.
TEST_F(HistoryTest, KeepsThatATestHasBegunAtOnce) {
  History history = open();
  Recorder recorder(history);
  Tale tale(recorder);
  tale.runStarts().testStarts("Disk,sda,x");
  const History other = open();
  EXPECT_EQ(linesOf(other, recorder.id()).size(), 2U);
  ASSERT_EQ(other.tests().size(), 1U);
  EXPECT_EQ(other.tests().front().identifier, "Disk,sda,x");
}

TEST_F(HistoryTest, KeepsWhatARecorderHadWhenItGoes) {
  History history = open();
  std::string id;
  {
    Recorder recorder(history);
    Tale(recorder).runStarts().testStarts().says(engine::Progress{50});
    id = recorder.id();
  }
  EXPECT_EQ(linesOf(history, id).size(), 3U);
}

TEST_F(HistoryTest, TakesNothingBehindTheEndOfARun) {
  History history = open();
  Recorder recorder(history);
  Tale tale(recorder);
  tale.runStarts().runEnds();
  EXPECT_THAT(complaintOf([&] { tale.runStarts(); }), HasSubstr("has ended"));
}

TEST_F(HistoryTest, RunsOfTheSameSecondHaveIdentifiersOfTheirOwn) {
  History history = open();
  EXPECT_NE(recordRun(history), recordRun(history));
  EXPECT_EQ(history.runs().size(), 2U);
}

TEST_F(HistoryTest, RemovesARunWithAllThatBelongsToIt) {
  History history = open();
  const std::string first = recordRun(history, minutesLater(0));
  const std::string second = recordRun(history, minutesLater(1));
  history.remove(first);
  EXPECT_THAT(idsOf(history.runs()), ElementsAre(second));
  EXPECT_THAT(complaintOf([&] { linesOf(history, first); }), HasSubstr("there is no run"));
  ASSERT_EQ(history.trend("Memory Test").size(), 1U);
  EXPECT_EQ(history.trend("Memory Test")[0].points.size(), 1U);
}

TEST_F(HistoryTest, DoesNotRemoveARunThatGoesOn) {
  History history = open();
  Recorder recorder(history);
  Tale(recorder).runStarts();
  EXPECT_THAT(complaintOf([&] { history.remove(recorder.id()); }), HasSubstr("still goes on"));
  EXPECT_THAT(complaintOf([&] { open().remove(recorder.id()); }), HasSubstr("still goes on"));
}

TEST_F(HistoryTest, MakesRoomByRemovingTheOldestButNoneThatGoesOn) {
  History history = open();
  Recorder recorder(history);
  Tale(recorder, minutesLater(-1)).runStarts();
  recordRun(history, minutesLater(0));
  recordRun(history, minutesLater(1));
  EXPECT_EQ(history.keepWithin(1), 2U);
  EXPECT_THAT(idsOf(history.runs()), ElementsAre(recorder.id()));
}

TEST_F(HistoryTest, TheFileStaysAsLargeAsItMayBe) {
  Options options;
  options.mostBytes = 1'000'000;
  History history = open(options);
  for (int run = 0; run < 40; ++run) {
    Recorder recorder(history);
    Tale tale(recorder, minutesLater(run));
    tale.runStarts().testStarts();
    tale.says(engine::OutputLine{engine::Stream::kOutput, std::string(100'000, 'x'), false});
    tale.testEnds().runEnds();
  }
  EXPECT_LE(std::filesystem::file_size(folder() / "history.db"), 1'100'000U);
  EXPECT_GE(history.runs().size(), 7U);
}

TEST_F(HistoryTest, ARunThatIsTooLongLosesItsChatterAndSaysSo) {
  Options options;
  options.mostBytes = 1'000'000;
  History history = open(options);
  Recorder recorder(history);
  Tale tale(recorder);
  tale.runStarts().testStarts();
  for (int line = 0; line < 200; ++line) {
    tale.says(engine::OutputLine{engine::Stream::kOutput, std::string(10'000, 'x'), false});
  }
  tale.measures("read", 5.0).testEnds(Outcome::kFailed).runEnds(Outcome::kFailed);
  const RunRecord run = history.run(recorder.id());
  const std::vector<std::string> lines = linesOf(history, recorder.id());
  EXPECT_GT(run.leftOut, 140U);
  EXPECT_EQ(run.tests.failed, 1U);
  // One of those that were left out has made place for the message.
  EXPECT_EQ(lines.size(), 205 - run.leftOut + 1);
  EXPECT_THAT(lines[lines.size() - 4], HasSubstr("does not keep all of its events"));
  EXPECT_THAT(lines[lines.size() - 3], HasSubstr("measurement"));
  EXPECT_LE(std::filesystem::file_size(folder() / "history.db"), 1'100'000U);
}

TEST_F(HistoryTest, HostileTextsComeBackInTheirLinesAndHarmNothing) {
  const std::string large(10'000'000, 'x');
  const std::string controls(1'000'000, '\x01');
  const std::string nul("a\0b", 3);
  for (const std::string& text : {large, controls, nul, std::string("\x1b[2J\r\n"),
                                  std::string("\xff\xc3"), std::string("'); DROP")}) {
    History history = open();
    Recorder recorder(history);
    Tale tale(recorder);
    engine::OutputLine line{engine::Stream::kError, text, false};
    tale.runStarts(text)
        .testStarts(text)
        .says(line)
        .measures(text, text, text)
        .testEnds()
        .runEnds();
    EXPECT_EQ(linesOf(history, recorder.id()).size(), 6U);
    EXPECT_EQ(history.run(recorder.id()).state, RunState::kEnded);
  }
  EXPECT_EQ(open().runs().size(), 6U);
}

TEST_F(HistoryTest, MeasurementsThatAreNoNumbersAreKeptAsTexts) {
  History history = open();
  Recorder recorder(history);
  Tale tale(recorder);
  tale.runStarts().testStarts();
  tale.measures("nan", std::numeric_limits<double>::quiet_NaN());
  tale.measures("locked", true).measures("mode", std::string("fast")).testEnds().runEnds();
  EXPECT_THAT(history.trend("Memory Test"), IsEmpty());
  const Difference difference = history.diff(recorder.id(), recorder.id());
  ASSERT_EQ(difference.tests.size(), 1U);
  ASSERT_EQ(difference.tests[0].measurements.size(), 3U);
  EXPECT_EQ(difference.tests[0].measurements[0].before->text, "true");
  EXPECT_EQ(difference.tests[0].measurements[1].before->text, "fast");
  EXPECT_EQ(difference.tests[0].measurements[2].before->text, "nan");
}

}  // namespace
}  // namespace history
