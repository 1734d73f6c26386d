#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>
#include <utility>

#include "history/Recorder.h"
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

}  // namespace
}  // namespace host
