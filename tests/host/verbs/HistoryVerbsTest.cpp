#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>

#include "history/Recorder.h"
#include "host/Messages.h"
#include "host/verbs/KeptVerbs.h"

namespace host {
namespace {

namespace fs = std::filesystem;

class HistoryVerbs : public testing::Test {
 protected:
  ~HistoryVerbs() override { fs::remove_all(m_folder); }

  static engine::Event eventOf(std::uint64_t test, engine::Body body) {
    engine::Event event;
    event.test = test;
    event.body = std::move(body);
    return event;
  }

  /// Keeps a run that nobody ends.
  void keepBeginning() const {
    history::History kept = history::History::open(m_folder);
    history::Recorder recorder(kept);
    recorder.take(eventOf(0, engine::RunStarted()));
    engine::TestStarted test;
    test.name = "A,a0,x";
    recorder.take(eventOf(1, test));
  }

  const fs::path& folder() const { return m_folder; }

  Options options() const {
    Options all;
    all.state = m_folder.u8string();
    return all;
  }

 private:
  fs::path m_folder =
      fs::temp_directory_path() / ("diags kept " + std::to_string(std::random_device()()));
};

// Catches a run that was cut off and reads like one that came to its end.
TEST_F(HistoryVerbs, ARunThatWasCutOffIsToldToBe) {
  keepBeginning();
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  EXPECT_EQ(reportRun(options()), ExitStatus::kPassed);
  const std::string out = testing::internal::GetCapturedStdout();
  const std::string err = testing::internal::GetCapturedStderr();
  EXPECT_NE(out.find("Verdict: none"), std::string::npos) << out;
  EXPECT_NE(err.find("A,a0,x: The stream ends before the test does."), std::string::npos) << err;
  EXPECT_NE(err.find("The stream ends before the run does."), std::string::npos) << err;
}

/// What a trend's verb answers, after two runs of three tests.
class TrendNames : public HistoryVerbs {
 protected:
  static void measure(history::Recorder& recorder, std::uint64_t test, const std::string& service,
                      const std::string& device) {
    engine::TestStarted started;
    started.name = service + "," + device + ",x";
    started.service = service;
    started.device = device;
    recorder.take(eventOf(test, started));
    engine::Measurement measurement;
    measurement.name = "rate";
    measurement.value = 5.0;
    recorder.take(eventOf(test, measurement));
    recorder.take(eventOf(test, engine::Ended()));
  }

  void keepTwoRuns() const {
    for (int run = 0; run < 2; ++run) {
      history::History kept = history::History::open(folder());
      history::Recorder recorder(kept);
      recorder.take(eventOf(0, engine::RunStarted()));
      measure(recorder, 1, "Disk Read", "sda");
      measure(recorder, 2, "Disk Read", "sdb");
      measure(recorder, 3, "Disk, Write", "sda");
      recorder.take(eventOf(0, engine::Ended()));
    }
  }

  /// How many series the answer has; none with its status.
  std::string trendsOf(const std::string& name) const {
    Options all = options();
    all.trend = name;
    all.json = true;
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const ExitStatus status = showHistory(all);
    const std::string out = testing::internal::GetCapturedStdout();
    testing::internal::GetCapturedStderr();
    std::string tests;
    const std::string key = "\"test\":";
    for (std::size_t at = out.find(key); at != std::string::npos; at = out.find(key, at)) {
      at = out.find('"', at + key.size()) + 1;
      tests += out.substr(at, out.find('"', at) - at) + ";";
    }
    return tests.empty() ? "status " + std::to_string(static_cast<int>(status)) : tests;
  }
};

TEST_F(TrendNames, AreThoseOfEveryOtherVerb) {
  keepTwoRuns();
  EXPECT_EQ(trendsOf("Disk Read,sda,x"), "Disk Read,sda,x;");
  EXPECT_EQ(trendsOf("Disk Read"), "Disk Read,sda,x;Disk Read,sdb,x;");
  EXPECT_EQ(trendsOf("sda"), "Disk Read,sda,x;Disk, Write,sda,x;");
  EXPECT_EQ(trendsOf("*Read*"), "Disk Read,sda,x;Disk Read,sdb,x;");
  EXPECT_EQ(trendsOf("*,sd[b-z],*"), "Disk Read,sdb,x;");
  EXPECT_EQ(trendsOf("sdc"), "status 4");
  EXPECT_EQ(trendsOf("*Fan*"), "status 4");
}

// Catches a file of the name "-", and a plot in front of the page.
TEST_F(TrendNames, APageGoesToStandardOutputAlone) {
  keepTwoRuns();
  Options all = options();
  all.trend = "Disk Read,sda,x";
  all.trendPage = "-";
  testing::internal::CaptureStdout();
  EXPECT_EQ(showHistory(all), ExitStatus::kPassed);
  const std::string out = testing::internal::GetCapturedStdout();
  EXPECT_EQ(out.rfind("<!DOCTYPE html>", 0), 0U) << out;
  EXPECT_EQ(out.substr(out.size() - 8), "</html>\n");
  EXPECT_FALSE(fs::exists("-"));
  all.json = true;
  EXPECT_THROW(showHistory(all), UsageError);
}

#if !defined(_WIN32)

// Catches a full disk that is told as a wrong command line.
TEST_F(TrendNames, APageThatCannotBeWrittenIsNoMistakeOfTheUsers) {
  keepTwoRuns();
  Options all = options();
  all.trend = "Disk Read,sda,x";
  all.trendPage = "/dev/full";
  try {
    showHistory(all);
    FAIL() << "it is full";
  } catch (const UsageError& error) {
    FAIL() << error.what();
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "/dev/full cannot be written: No space left on device");
  }
}

#endif

}  // namespace
}  // namespace host
