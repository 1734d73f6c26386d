#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <sstream>
#include <stdexcept>

#include "host/display/Display.h"
#include "host/display/Terminal.h"
#include "host/display/Ticker.h"
#include "tests/host/display/Screen.h"

namespace host {
namespace {

using engine::Outcome;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

engine::Ended endOf(Outcome outcome, const std::string& text, const std::string& remark = "") {
  return {outcome, text, 5, "(" + text + ")", remark, text + " in detail\nand more"};
}

/// A display with a clock and a terminal of the test's own.
class DisplayTest : public testing::Test {
 protected:
  DisplayStyle& style() { return m_style; }

  void onTerminal(unsigned columns, unsigned rows = 24) {
    m_style.redraws = true;
    resize(columns, rows);
  }

  void resize(unsigned columns, unsigned rows = 24) {
    m_size = {columns, rows};
    if (m_screen) m_screen->resize(columns);
  }

  void take(std::uint64_t test, engine::Body body) {
    display().take({0, {}, engine::Source::kEngine, test, std::move(body)});
  }

  void begin(std::uint64_t test, const std::string& name, double estimate = 0) {
    take(test, engine::TestStarted{name, "", "", "", 1, estimate});
  }

  void later(double seconds) {
    m_now += std::chrono::duration_cast<DisplayStyle::Clock::duration>(
        std::chrono::duration<double>(seconds));
  }

  Display& display() {
    if (m_display) return *m_display;
    m_style.now = [this] { return m_now; };
    m_style.size = [this] { return m_size; };
    m_screen = std::make_unique<Screen>(m_size.columns);
    m_display = std::make_unique<Display>(m_out, m_err, m_style);
    return *m_display;
  }

  void endDisplay() { m_display.reset(); }

  std::string out() const { return m_out.str(); }
  std::string err() const { return m_err.str(); }

  /// What stands on the terminal.
  std::vector<std::string> seen() {
    m_screen->write(out().substr(m_written));
    m_written = out().size();
    EXPECT_EQ(m_screen->unknown(), "");
    return m_screen->lines();
  }

  bool hasWrapped() const { return m_screen->hasWrapped(); }
  std::ostringstream& stream() { return m_out; }

 private:
  std::ostringstream m_out;
  std::ostringstream m_err;
  DisplayStyle m_style;
  DisplayStyle::Clock::time_point m_now;
  ScreenSize m_size;
  std::unique_ptr<Screen> m_screen;
  std::unique_ptr<Display> m_display;
  std::size_t m_written = 0;
};

TEST_F(DisplayTest, PlainLinesNameTheTestItsProgressAndItsVerdict) {
  begin(1, "S,d,e");
  take(1, engine::Progress{0});
  later(2);
  take(1, engine::Progress{90.7});
  take(1, endOf(Outcome::kPassed, "Pass", "Tested 1 of 1"));
  take(0, engine::Ended{});
  EXPECT_EQ(out(),
            "Test: S,d,e\nPercent Complete: 0%\nPercent Complete: 90%\n"
            "Verdict: Pass - Tested 1 of 1\n");
}

TEST_F(DisplayTest, SeveralTestsHaveASummary) {
  begin(1, "a");
  take(1, endOf(Outcome::kPassed, "Pass"));
  begin(2, "b");
  take(2, endOf(Outcome::kFailed, "Fail"));
  take(0, engine::Ended{});
  EXPECT_EQ(out(),
            "Test: a\nVerdict: Pass\nTest: b\nVerdict: Fail\n"
            "2 tests: 1 passed, 1 failed, 0 without a verdict\n");
}

TEST_F(DisplayTest, PlainProgressIsToldOnceASecondAndAtItsEnd) {
  begin(1, "a");
  for (int i = 0; i <= 1000; ++i) {
    take(1, engine::Progress{i / 10.0});
    later(0.0025);
  }
  EXPECT_EQ(out(),
            "Test: a\nPercent Complete: 0%\nPercent Complete: 40%\nPercent Complete: 80%\n"
            "Percent Complete: 100%\n");
}

TEST_F(DisplayTest, PlainLinesOfSeveralTestsSayWhichOneTheyAreAbout) {
  begin(1, "a");
  begin(2, "b");
  take(1, engine::Progress{50});
  take(2, engine::Progress{60});
  take(1, endOf(Outcome::kPassed, "Pass"));
  take(2, endOf(Outcome::kFailed, "Fail"));
  EXPECT_EQ(out(),
            "Test: a\nTest: b\nPercent Complete: 60%\nTest: a\nVerdict: Pass\n"
            "Test: b\nVerdict: Fail\n");
}

TEST_F(DisplayTest, AtTheLevelExtendedTheRecordStandsBehindAMargin) {
  style().level = Level::kExtended;
  begin(1, "a");
  take(1, endOf(Outcome::kPassed, "Pass", "short"));
  EXPECT_EQ(out(), "Test: a\nVerdict: Pass\n  Pass in detail\n  and more\n");
}

TEST_F(DisplayTest, AtTheLevelSimpleTheVerdictStandsInBrackets) {
  style().level = Level::kSimple;
  begin(1, "a");
  take(1, endOf(Outcome::kPassed, "Pass"));
  EXPECT_EQ(out(), "Test: a\nVerdict: (Pass)\n");
}

TEST_F(DisplayTest, AFaultIsToldWithWhatToDo) {
  begin(1, "a");
  take(1, engine::Diagnosis{engine::Verdict::kPass, "", "DIMM 1", {}});
  take(1, engine::Diagnosis{engine::Verdict::kFail, "bit 5", "DIMM 2", {"Replace it."}});
  EXPECT_EQ(out(), "Test: a\n  Fault: DIMM 2: bit 5\n    To do: Replace it.\n");
}

TEST_F(DisplayTest, ErrorsGoToStandardErrorWithTheTestsName) {
  begin(1, "S,d,e");
  take(1, engine::Error{engine::Cause::kCrashed, "signal 11", 11, "P", "start", {}});
  take(0, engine::Error{engine::Cause::kOther, "no more", 0, "", "", {}});
  EXPECT_EQ(err(), "diags: S,d,e: signal 11 (in P: start)\ndiags: no more\n");
  EXPECT_EQ(out(), "Test: S,d,e\n");
}

TEST_F(DisplayTest, QuietTellsWhatIsNoPassAndTheSummary) {
  style().detail = Detail::kQuiet;
  begin(1, "a");
  take(1, engine::Progress{50});
  take(1, endOf(Outcome::kPassed, "Pass"));
  begin(2, "b");
  take(2, engine::Diagnosis{engine::Verdict::kFail, "bit 5", "DIMM 2", {}});
  take(2, endOf(Outcome::kFailed, "Fail"));
  take(0, engine::Ended{});
  EXPECT_EQ(out(), "Test: b\nVerdict: Fail\n2 tests: 1 passed, 1 failed, 0 without a verdict\n");
}

TEST_F(DisplayTest, QuietSaysThatOneTestPassed) {
  style().detail = Detail::kQuiet;
  begin(1, "a");
  take(1, endOf(Outcome::kPassed, "Pass"));
  take(0, engine::Ended{});
  EXPECT_EQ(out(), "1 test: 1 passed, 0 failed, 0 without a verdict\n");
}

// Catches a line that is drawn anew although nothing was to be seen but what went wrong.
TEST_F(DisplayTest, QuietIsQuietOnATerminalToo) {
  onTerminal(80);
  style().detail = Detail::kQuiet;
  begin(1, "a");
  take(1, engine::Progress{50});
  later(2);
  display().tick();
  take(1, endOf(Outcome::kPassed, "Pass"));
  EXPECT_EQ(out(), "");
}

TEST_F(DisplayTest, OnlyVerboseTellsDetails) {
  begin(1, "a");
  take(1, engine::OutputLine{engine::Stream::kOutput, "x", false});
  EXPECT_THAT(out(), Not(HasSubstr("Output")));
}

TEST_F(DisplayTest, VerboseTellsOutputLogAndMeasurements) {
  style().detail = Detail::kVerbose;
  take(0, engine::LogLine{2, "begun"});
  begin(1, "a");
  take(1, engine::OutputLine{engine::Stream::kOutput, "x", false});
  take(1, engine::Measurement{"read", 1.5, "MB/s", {}, {}, ""});
  take(0, engine::LogLine{2, "on"});
  EXPECT_EQ(out(),
            "  Log: info: begun\nTest: a\n  Output: x\n  Measured: read: 1.5 MB/s\n"
            "The run:\n  Log: info: on\n");
}

TEST_F(DisplayTest, OnATerminalARunningTestHasOneLine) {
  onTerminal(80);
  begin(1, "Memory Test", 60);
  later(12);
  take(1, engine::Progress{20});
  EXPECT_THAT(seen(),
              ElementsAre("Memory Test" + std::string(33, ' ') + "   20%   0:12   0:48 left"));
}

TEST_F(DisplayTest, ItsVerdictTakesItsPlace) {
  onTerminal(80);
  begin(1, "Memory Test");
  seen();
  take(1, endOf(Outcome::kPassed, "Pass", "1 of 2"));
  EXPECT_THAT(seen(), ElementsAre("Memory Test" + std::string(33, ' ') + "  Pass  0:05  1 of 2"));
}

TEST_F(DisplayTest, TimeGoesOnWithoutEvents) {
  onTerminal(80);
  begin(1, "a");
  later(61);
  display().tick();
  EXPECT_THAT(seen(), ElementsAre(HasSubstr("   0%   1:01")));
}

TEST_F(DisplayTest, SeveralTestsHaveALineEachAndVerdictsStandAboveThem) {
  onTerminal(80);
  begin(1, "a");
  begin(2, "b");
  begin(3, "c");
  seen();
  take(2, endOf(Outcome::kFailed, "Fail"));
  EXPECT_THAT(seen(), ElementsAre(testing::MatchesRegex("b +Fail  0:05"), testing::StartsWith("a "),
                                  testing::StartsWith("c ")));
}

TEST_F(DisplayTest, MoreTestsThanRowsAreCounted) {
  onTerminal(80, 4);
  for (std::uint64_t i = 1; i <= 5; ++i) begin(i, "test " + std::to_string(i));
  EXPECT_THAT(seen(), ElementsAre(testing::StartsWith("test 1 "), testing::StartsWith("test 2 "),
                                  "... and 3 more"));
}

TEST_F(DisplayTest, ARemarkThatDoesNotFitIsWrapped) {
  onTerminal(40);
  begin(1, "Memory Test");
  take(1, endOf(Outcome::kPassed, "Pass", "Tested 256 MiB of 23.5 GiB (1.1 %), cut short"));
  EXPECT_THAT(seen(), ElementsAre("Memory Test                  Pass  0:05",
                                  "  Tested 256 MiB of 23.5 GiB (1.1 %),", "  cut short"));
  EXPECT_FALSE(hasWrapped());
}

TEST_F(DisplayTest, NoLineOfATestIsWiderThanTheTerminal) {
  for (unsigned columns = 1; columns < 60; ++columns) {
    onTerminal(columns);
    begin(columns, std::string(100, 'x') + "\x1b[2J", 60);
    take(columns, engine::Progress{20});
    seen();
    take(columns, endOf(Outcome::kPassed, "Pass", "Tested 256 MiB of 23.5 GiB"));
    seen();
    EXPECT_FALSE(hasWrapped()) << columns;
  }
}

TEST_F(DisplayTest, ANarrowerTerminalKeepsWhatStandsAbove) {
  onTerminal(80);
  begin(1, "a");
  take(1, endOf(Outcome::kPassed, "Pass"));
  begin(2, "b");
  begin(3, "c");
  seen();
  resize(30);
  display().tick();
  EXPECT_THAT(seen(), ElementsAre(testing::MatchesRegex("a +Pass  0:05"),
                                  testing::MatchesRegex("b +0%   0:00"),
                                  testing::MatchesRegex("c +0%   0:00")));
}

TEST_F(DisplayTest, AFloodOfProgressIsNotDrawnEachTime) {
  onTerminal(80);
  begin(1, "a");
  const std::size_t before = out().size();
  for (int i = 0; i < 100'000; ++i) take(1, engine::Progress{i / 1000.0});
  EXPECT_EQ(out().size(), before);
  later(0.2);
  take(1, engine::Progress{50});
  EXPECT_THAT(seen(), ElementsAre(HasSubstr(" 50%")));
}

TEST_F(DisplayTest, AWarningOfTheEngineIsNeverLeftOut) {
  begin(1, "S,d,e");
  take(1, engine::Message{engine::Severity::kWarning, "its time was up", {}});
  take(1, engine::Message{engine::Severity::kInfo, "by the way", {}});
  display().take({0,
                  {},
                  engine::Source::kProvider,
                  1,
                  engine::Message{engine::Severity::kWarning, "of the test", {}}});
  EXPECT_EQ(err(), "diags: S,d,e: its time was up\n");
  EXPECT_EQ(out(), "Test: S,d,e\n");
}

TEST_F(DisplayTest, AWarningThatWasToldBeforeTheRunIsNotToldAgain) {
  style().told = {"provider P did not come to an end of cleaning up, and was ended"};
  take(0, engine::Message{engine::Severity::kWarning, style().told.front(), {}});
  take(0, engine::Message{engine::Severity::kWarning, "1 test was not begun any more", {}});
  EXPECT_EQ(err(), "diags: 1 test was not begun any more\n");
}

TEST_F(DisplayTest, AnErrorStandsBetweenLinesNotInThem) {
  onTerminal(80);
  begin(1, "a");
  seen();
  take(1, engine::Error{engine::Cause::kCrashed, "signal 11", 11, "", "", {}});
  EXPECT_EQ(err(), "diags: a: signal 11\n");
  EXPECT_THAT(seen(), ElementsAre(testing::StartsWith("a ")));
}

// What is written next, such as the shell's prompt, must not stand behind the last line.
TEST_F(DisplayTest, ARunWithoutAnEndLeavesItsLinesWhole) {
  onTerminal(80);
  begin(1, "a");
  endDisplay();
  EXPECT_THAT(out(), testing::EndsWith("   0:00\n"));
}

TEST_F(DisplayTest, ARunWithAnEndIsFollowedByNothing) {
  onTerminal(80);
  begin(1, "a");
  take(1, endOf(Outcome::kPassed, "Pass"));
  take(0, engine::Ended{});
  const std::string before = out();
  endDisplay();
  EXPECT_EQ(out(), before);
}

TEST_F(DisplayTest, ColoursStandAroundTheVerdictAlone) {
  onTerminal(80);
  style().colours = true;
  begin(1, "a");
  take(1, endOf(Outcome::kFailed, "Fail"));
  EXPECT_THAT(out(), HasSubstr("  \x1b[1;31mFail\x1b[0m  0:05"));
}

TEST_F(DisplayTest, WithoutThemThereIsNoSequenceInPlainLines) {
  begin(1, "a");
  take(1, endOf(Outcome::kFailed, "Fail"));
  EXPECT_THAT(out(), Not(HasSubstr("\x1b")));
}

const std::string kHostile = "\x1b[2J\x1b]0;x\x07\nVerdict: Pass\r\xff\u202e";

TEST_F(DisplayTest, NothingFromOutsideReachesTheTerminalRaw) {
  style().detail = Detail::kVerbose;
  style().level = Level::kExtended;
  begin(1, kHostile);
  take(1, engine::StepStarted{kHostile});
  take(1, engine::OutputLine{engine::Stream::kError, kHostile, false});
  take(1, engine::Message{engine::Severity::kError, kHostile, {kHostile}});
  take(1, engine::Measurement{kHostile, kHostile, kHostile, {}, {}, kHostile});
  take(1, engine::Diagnosis{engine::Verdict::kFail, kHostile, kHostile, {kHostile}});
  take(1, engine::Error{engine::Cause::kOther, kHostile, 0, kHostile, kHostile, {kHostile}});
  take(1, engine::Ended{Outcome::kFailed, kHostile, 1, kHostile, kHostile, kHostile});
  for (const std::string& text : {out(), err()}) {
    for (const char* const part : {"\x1b", "\x07", "\r", "\xff", "\u202e", "\nVerdict: Pass"}) {
      EXPECT_THAT(text, Not(HasSubstr(part)));
    }
  }
}

TEST_F(DisplayTest, ANameOfTenMegabytesDoesNotSlowTheRedraw) {
  onTerminal(80);
  begin(1, std::string(10 << 20, 'x'));
  for (int i = 0; i < 200; ++i) {
    later(1);
    display().tick();
  }
  EXPECT_LT(out().size(), 200U * 200U);
}

TEST_F(DisplayTest, WantOfRoomForTheAnswerIsAnError) {
  stream().setstate(std::ios::badbit);
  EXPECT_THROW(begin(1, "a"), std::runtime_error);
}

struct AdaptRow {
  const char* name;
  Surroundings around;
  bool redraws;
  bool colours;
};

const AdaptRow kAdapted[] = {
    {"a terminal", {true, true, ""}, true, true},
    {"no colours wanted", {true, true, "1"}, true, false},
    {"a dumb terminal", {true, false, ""}, false, false},
    {"a file", {false, true, ""}, false, false},
};

TEST(DisplayStyle, FollowsWhatTheOutputLeadsTo) {
  for (const AdaptRow& row : kAdapted) {
    DisplayStyle style;
    adapt(style, row.around);
    EXPECT_EQ(style.redraws, row.redraws) << row.name;
    EXPECT_EQ(style.colours, row.colours) << row.name;
  }
}

TEST(Ticker, CallsUntilItIsGone) {
  std::atomic<int> calls{0};
  std::promise<void> twice;
  {
    const Ticker ticker(
        [&] {
          if (++calls == 2) twice.set_value();
        },
        std::chrono::milliseconds(1));
    twice.get_future().wait();
  }
  const int after = calls;
  EXPECT_GE(after, 2);
  EXPECT_EQ(calls, after);
}

TEST(Ticker, EndsWithACallThatThrows) {
  std::promise<void> called;
  const Ticker ticker(
      [&] {
        called.set_value();  // a second time, it would throw itself
        throw std::runtime_error("no more");
      },
      std::chrono::milliseconds(1));
  EXPECT_NO_THROW(called.get_future().wait());
}

}  // namespace
}  // namespace host
