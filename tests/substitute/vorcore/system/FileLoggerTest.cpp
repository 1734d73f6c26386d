#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <regex>
#include <thread>
#include <vector>

#include "substitute/vorcore/system/FileLogger.h"
#include "tests/substitute/vorcore/Expectations.h"
#include "tests/substitute/vorcore/ScratchFolder.h"

namespace vorcore {
namespace {

class FileLoggerTest : public testing::Test {
 protected:
  std::string path() const { return m_folder.path() + "/core.log"; }
  void open(int level) { m_log = std::make_unique<FileLogger>(path(), level); }

  /// What the file holds, with "TIME" in the place of every time.
  std::string logged() {
    const std::regex time("\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3}[+-]\\d\\d:\\d\\d");
    std::string withoutReturns;
    for (const char letter : m_folder.read("core.log")) {
      if (letter != '\r') withoutReturns += letter;
    }
    return std::regex_replace(withoutReturns, time, "TIME");
  }

  ScratchFolder m_folder;
  std::unique_ptr<FileLogger> m_log;
};

TEST_F(FileLoggerTest, EveryLineHasItsTimeAndLevelName) {
  open(3);
  for (int level = -1; level <= 3; ++level) m_log->Log(level, "{} text");
  EXPECT_EQ(logged(),
            "TIME [error] {} text\nTIME [error] {} text\nTIME [warning] {} text\n"
            "TIME [info] {} text\nTIME [trace] {} text\n");
}

TEST_F(FileLoggerTest, LinesAboveTheLevelAreNotWritten) {
  open(1);
  for (int level = 0; level <= 3; ++level) {
    m_log->Log(level, std::to_string(level));
  }
  EXPECT_EQ(logged(), "TIME [error] 0\nTIME [warning] 1\n");
}

TEST_F(FileLoggerTest, ATraceLineAboveThreeIsStillATraceLine) {
  open(9);
  m_log->Log(5, "deep");
  EXPECT_EQ(logged(), "TIME [trace] deep\n");
}

TEST_F(FileLoggerTest, EveryLineReachesTheFileAtOnce) {
  open(3);
  m_log->Log(3, "now");
  EXPECT_EQ(logged(), "TIME [trace] now\n");
}

TEST_F(FileLoggerTest, TheFileIsAppendedTo) {
  m_folder.write("core.log", "before\n");
  open(3);
  m_log->Log(0, "after");
  EXPECT_EQ(logged(), "before\nTIME [error] after\n");
}

TEST_F(FileLoggerTest, LinesOfSeveralThreadsStayWhole) {
  open(3);
  std::vector<std::thread> threads;
  for (int number = 0; number < 4; ++number) {
    threads.emplace_back([this] {
      for (int line = 0; line < 200; ++line) m_log->Log(3, "0123456789");
    });
  }
  for (std::thread& thread : threads) thread.join();
  std::string wanted;
  for (int line = 0; line < 800; ++line) wanted += "TIME [trace] 0123456789\n";
  EXPECT_EQ(logged(), wanted);
}

struct Text {
  const char* name;
  std::string text;
  std::string entry;
};

class TextsInTheLog : public FileLoggerTest, public testing::WithParamInterface<Text> {};

TEST_P(TextsInTheLog, CannotPassForSomethingElse) {
  open(3);
  m_log->Log(0, GetParam().text);
  EXPECT_EQ(logged(), "TIME [error] " + GetParam().entry + "\n");
}

const Text kTexts[] = {
    {"SeveralLines", "one\n  two", "one\n      two"},
    {"AForgedEntry", "name\n2026-01-01 00:00:00.000+00:00 [error] all is lost",
     "name\n    TIME [error] all is lost"},
    {"ALineEndOfWindows", "one\r\ntwo", "one\n    two"},
    {"AReturnAlone", "one\rtwo", "one\\x0dtwo"},
    {"AnEscapeSequence", "\x1b[2Jgone", "\\x1b[2Jgone"},
    {"ASequenceOfTheSecondSet", "\xC2\x9B[2Jgone", "\\u009b[2Jgone"},
    {"AZeroByte", std::string("a\0b", 3), "a\\x00b"},
    {"Delete", "a\x7F", "a\\x7f"},
    {"ATab", "a\tb", "a\tb"},
    {"LettersBeyondAscii", "\xC3\xA9\xC2\xA0", "\xC3\xA9\xC2\xA0"},
    {"ALeadByteAtTheEnd", "a\xC2", "a\\xc2"},
    {"ASequenceInBytesThatAreNoText", "\x9B[2Jgone", "\\x9b[2Jgone"},
    {"ALineBreakOfOtherScripts", "a\xE2\x80\xA8z", "a\\u2028z"},
    {"AnOverrideOfTheDirection", "a\xE2\x80\xAEz", "a\\u202ez"},
};
INSTANTIATE_TEST_SUITE_P(All, TextsInTheLog, testing::ValuesIn(kTexts),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(FileLoggerTest, NoFolderIsMade) {
  const std::string file = m_folder.path() + "/missing/core.log";
  EXPECT_THAT(failureOf([&] { FileLogger(file, 3); }),
              testing::StartsWith("access denied: log file " + file + ": "));
  EXPECT_FALSE(std::filesystem::exists(std::filesystem::u8path(m_folder.path() + "/missing")));
}

TEST_F(FileLoggerTest, AFolderIsNoLogFile) {
  EXPECT_NE(failureOf([&] { FileLogger(m_folder.path(), 3); }), "");
}

}  // namespace
}  // namespace vorcore
