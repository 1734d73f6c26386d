#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>

#include "reports/events/EventsReader.h"
#include "reports/events/EventsWriter.h"
#include "reports/ocp/OcpWriter.h"
#include "reports/recover/Recovery.h"
#include "reports/verify/OcpVerifier.h"
#include "tests/reports/SampleRun.h"

namespace reports {
namespace {

using engine::Outcome;

std::string recovered(const std::string& stream) {
  std::istringstream in(stream);
  const Recovery recovery = recoveryOf(in, "f");
  EXPECT_EQ(recovery.kept + recovery.dropped, stream.size());
  std::string whole = stream.substr(0, recovery.kept);
  for (const std::string& line : recovery.closing) whole += line + "\n";
  return whole;
}

/// What is wrong with the order of events; nothing where all is well.
std::string faultsOf(const std::string& stream) {
  std::istringstream in(stream);
  EventsReader reader(in, "f");
  std::map<std::uint64_t, int> ends;
  std::uint64_t sequence = 0;
  while (const auto event = reader.next()) {
    if (event->sequence != sequence++) return "a gap at " + std::to_string(sequence);
    int& ended = ends[event->test];
    if (ended != 0) return "something behind the end of " + std::to_string(event->test);
    if (std::holds_alternative<engine::Ended>(event->body)) ++ended;
  }
  for (const auto& [test, ended] : ends) {
    if (ended != 1) return "no end of " + std::to_string(test);
  }
  return "";
}

std::string ocpFaultsOf(const std::string& stream) {
  std::istringstream in(stream);
  std::string faults;
  verifyOcp(in, "f", [&](const Finding& finding) { faults += finding.text + "; "; });
  return faults;
}

TEST(Recovery, AStreamOfEventsIsMadeWholeWhereverItWasCut) {
  const std::string stream = written<EventsWriter>(shortRun());
  for (std::size_t size = stream.find('\n') + 1; size <= stream.size(); ++size) {
    const std::string cut = stream.substr(0, size);
    const std::string whole = recovered(cut);
    const std::string kept = cut.substr(0, cut.rfind('\n') + 1);
    ASSERT_EQ(whole.substr(0, kept.size()), kept) << size;
    ASSERT_EQ(faultsOf(whole), "") << size;
    ASSERT_EQ(recovered(whole), whole) << size;
  }
}

TEST(Recovery, AnOcpStreamIsMadeWholeWhereverItWasCut) {
  const std::string stream = written<OcpWriter>(shortRun());
  for (std::size_t size = stream.find('\n') + 1; size <= stream.size(); ++size) {
    const std::string whole = recovered(stream.substr(0, size));
    ASSERT_EQ(ocpFaultsOf(whole), "") << size;
    ASSERT_EQ(recovered(whole), whole) << size;
  }
}

TEST(Recovery, OpenSeriesAreClosedWithTheirCount) {
  std::ifstream file(DIAGS_SOURCE_DIR "/tests/reports/verify/every_kind.jsonl", std::ios::binary);
  std::string stream;
  for (std::string line; std::getline(file, line);) {
    stream += line + "\n";
    const std::string whole = recovered(stream);
    EXPECT_EQ(ocpFaultsOf(whole), "") << line;
  }
}

TEST(Recovery, AWholeStreamNeedsNothing) {
  for (const std::string& stream :
       {written<EventsWriter>(sampleRun()), written<OcpWriter>(sampleRun())}) {
    std::istringstream in(stream);
    const Recovery recovery = recoveryOf(in, "f");
    EXPECT_EQ(recovery.kept, stream.size());
    EXPECT_EQ(recovery.dropped, 0U);
    EXPECT_TRUE(recovery.closing.empty());
  }
}

TEST(Recovery, WhatWasOpenEndsBrokenWithAnErrorAtTheTimeOfTheLastLine) {
  EventList run;
  run.add(0, engine::RunStarted()).begin(1).begin(2).end(1, Outcome::kPassed);
  std::istringstream in(written<EventsWriter>(run.events()) + "{\"sequence\":4,");
  const Recovery recovery = recoveryOf(in, "f");
  EXPECT_EQ(recovery.format, StreamFormat::kEvents);
  EXPECT_EQ(recovery.open, 1U);
  EXPECT_EQ(recovery.dropped, 14U);
  const std::string begin = R"("time":"2026-09-21T14:13:20.003000Z","source":"engine",)";
  const std::vector<std::string> lines = {
      R"({"sequence":4,)" + begin + R"("testId":2,"error":{"cause":"other",)" +
          R"("text":"The stream ends before the test does."}})",
      R"({"sequence":5,)" + begin + R"("testId":2,"end":{"outcome":"broken",)" +
          R"("text":"The stream ends before the test does.","seconds":0.0}})",
      R"({"sequence":6,)" + begin +
          R"("error":{"cause":"other","text":"The stream ends before the run does."}})",
      R"({"sequence":7,)" + begin + R"("end":{"outcome":"broken",)" +
          R"("text":"The stream ends before the run does.","seconds":0.0}})"};
  EXPECT_EQ(recovery.closing, lines);
}

TEST(Recovery, AFailureThatWasFoundOutranksWhatWasNotFinished) {
  EventList run;
  run.add(0, engine::RunStarted()).begin(1).begin(2).end(1, Outcome::kFailed);
  std::istringstream events(written<EventsWriter>(run.events()));
  EXPECT_NE(recoveryOf(events, "f").closing.back().find(R"("outcome":"failed")"),
            std::string::npos);
  std::istringstream ocp(written<OcpWriter>(run.events()));
  const Recovery recovery = recoveryOf(ocp, "f");
  EXPECT_EQ(recovery.format, StreamFormat::kOcp);
  EXPECT_NE(recovery.closing.back().find(R"({"status":"COMPLETE","result":"FAIL"})"),
            std::string::npos);
}

TEST(Recovery, RubbishAtTheEndIsDropped) {
  const std::string stream = written<EventsWriter>(sampleRun());
  for (const std::string& rubbish :
       {std::string(4096, '\0'), std::string("\xFF\n"), std::string("{}\n{"), std::string("\n")}) {
    std::istringstream in(stream + rubbish);
    const Recovery recovery = recoveryOf(in, "f");
    EXPECT_EQ(recovery.kept, stream.size());
    EXPECT_EQ(recovery.dropped, rubbish.size());
  }
}

struct UnreadableRow {
  const char* name;
  std::string stream;
  const char* reason;
};

class Unreadable : public testing::TestWithParam<UnreadableRow> {};

TEST_P(Unreadable, IsRefusedWithFileAndLine) {
  std::istringstream in(GetParam().stream);
  try {
    recoveryOf(in, "f");
    FAIL() << "it was taken";
  } catch (const std::runtime_error& refusal) {
    EXPECT_STREQ(refusal.what(), GetParam().reason);
  }
}

const UnreadableRow kUnreadableRows[] = {
    {"Empty", "", "f: there is no whole line to go on from"},
    {"ACutFirstLine", R"({"sequence":0,)", "f: there is no whole line to go on from"},
    {"AnotherFile", "<html>\n", "f, line 1: the line is no JSON at byte 1"},
    {"AnotherStream", "{}\n",
     "f, line 1: the file is neither a stream of events nor an OCP stream"},
    {"RubbishInBetween", written<OcpWriter>(sampleRun()).substr(0, 120) + "\nx\n{}\n",
     "f, line 2: the line is no JSON at byte 20"},
};
INSTANTIATE_TEST_SUITE_P(All, Unreadable, testing::ValuesIn(kUnreadableRows),
                         [](const auto& row) { return std::string(row.param.name); });

class RecoverFile : public testing::Test {
 protected:
  RecoverFile() {
    std::filesystem::create_directories(m_folder);
    std::ofstream(path(), std::ios::binary) << "";
  }
  ~RecoverFile() override { std::filesystem::remove_all(m_folder); }

  std::filesystem::path path() const { return m_folder / "run.jsonl"; }
  void write(const std::string& text) { std::ofstream(path(), std::ios::binary) << text; }
  std::string read() const {
    std::ifstream file(path(), std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
  }

 private:
  std::filesystem::path m_folder =
      std::filesystem::temp_directory_path() /
      ("diags-recover-" +
       std::string(testing::UnitTest::GetInstance()->current_test_info()->name()));
};

TEST_F(RecoverFile, MakesItWholeInItsPlace) {
  const std::string stream = written<OcpWriter>(sampleRun());
  for (const std::size_t size : {stream.size() / 3, stream.size() / 2, stream.size()}) {
    write(stream.substr(0, size));
    recoverFile(path());
    EXPECT_EQ(read(), recovered(stream.substr(0, size)));
  }
}

TEST_F(RecoverFile, LeavesAFileAloneThatItDoesNotKnow) {
  write("a letter\nto somebody");
  EXPECT_THROW(recoverFile(path()), std::runtime_error);
  EXPECT_EQ(read(), "a letter\nto somebody");
}

TEST_F(RecoverFile, NamesAFileThatIsNotThere) {
  try {
    recoverFile(path().parent_path() / "none");
    FAIL() << "it was recovered";
  } catch (const std::runtime_error& fault) {
    EXPECT_NE(std::string(fault.what()).find("none: cannot be opened"), std::string::npos);
  }
}

}  // namespace
}  // namespace reports
