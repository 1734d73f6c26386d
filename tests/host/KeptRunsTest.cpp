// The command with its files: formats, history, what becomes of a stream that was cut off.

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "history/store/Database.h"
#include "tests/host/CommandRunner.h"

#if !defined(_WIN32)
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace host_test {
namespace {

namespace fs = std::filesystem;

const std::string kScripted = std::string(DIAGS_TEST_INSTALLATIONS) + "/scripted";

class KeptRuns : public testing::Test {
 protected:
  KeptRuns() {
    fs::remove_all(m_folder);
    fs::create_directories(m_folder);
  }
  ~KeptRuns() override { fs::remove_all(m_folder); }

  std::string file(const std::string& name) const { return (m_folder / name).u8string(); }

  CommandResult run(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "run");
    arguments.insert(arguments.end(), {"--root", kScripted, "--state", file("state")});
    return runCommand(arguments);
  }
  CommandResult kept(std::vector<std::string> arguments) const {
    arguments.insert(arguments.end(), {"--state", file("state")});
    return runCommand(arguments);
  }

 private:
  fs::path m_folder = fs::u8path(std::string(DIAGS_TEST_INSTALLATIONS) + "/../kept-" +
                                 testing::UnitTest::GetInstance()->current_test_info()->name());
};

std::size_t countOf(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

TEST_F(KeptRuns, ARunIsWrittenInEveryFormatAtOnce) {
  const CommandResult result =
      run({"Scripted Pass", "Scripted Fail", "--events", file("events"), "--jsonl", file("ocp"),
           "--junit", file("junit"), "--html", file("page"), "--metrics", file("metrics")});
  EXPECT_EQ(result.status, 1) << result.err;
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(countOf(readText(file("events")), "\"end\":"), 3U);
  EXPECT_EQ(countOf(readText(file("ocp")), "\"testStepEnd\""), 2U);
  EXPECT_EQ(countOf(readText(file("junit")), "<testcase "), 2U);
  EXPECT_EQ(countOf(readText(file("junit")), "<failure"), 1U);
  EXPECT_EQ(countOf(readText(file("page")), "</html>"), 1U);
  EXPECT_EQ(countOf(readText(file("metrics")), "diags_test_duration_seconds{"), 2U);
  EXPECT_EQ(runCommand({"verify", file("ocp")}).status, 0);
}

/// All that a stream of events gives as the member of that name.
std::vector<std::string> valuesOf(const std::string& events, const std::string& member) {
  const std::string key = "\"" + member + "\":\"";
  std::vector<std::string> values;
  for (std::size_t at = events.find(key); at != std::string::npos; at = events.find(key, at)) {
    at += key.size();
    values.push_back(events.substr(at, events.find('"', at) - at));
  }
  return values;
}

TEST_F(KeptRuns, EveryFormatNamesTheMachineUnlessItIsTakenOut) {
  run({"Scripted Pass", "--events", file("named")});
  const std::string named = readText(file("named"));
  ASSERT_EQ(valuesOf(named, "host").size(), 1U) << named;
  run({"Scripted Pass", "--redact", "--events", file("events"), "--jsonl", file("ocp"), "--junit",
       file("junit"), "--html", file("page"), "--metrics", file("metrics")});
  const std::string host = valuesOf(named, "host").front();
  const bool isTelling = host.rfind("localhost", 0) != 0;
  for (const char* format : {"events", "ocp", "junit", "page", "metrics"}) {
    const std::string report = readText(file(format));
    if (isTelling) {
      EXPECT_NE(report.find("host-1"), std::string::npos) << format;
    }
    for (const std::string& serial : valuesOf(named, "serial")) {
      EXPECT_EQ(report.find(serial), std::string::npos) << format;
    }
  }
}

// Catches an answer of the history that names what reports do not.
TEST_F(KeptRuns, TheHistoryNamesNoMachineEither) {
  run({"Scripted Pass", "--events", file("named")});
  run({"Scripted Pass"});
  const std::vector<std::string> hosts = valuesOf(readText(file("named")), "host");
  const std::string host = hosts.empty() ? std::string("localhost") : hosts.front();
  if (host.rfind("localhost", 0) == 0) GTEST_SKIP() << "this machine has no name to take out";
  for (const std::vector<std::string>& command : std::vector<std::vector<std::string>>{
           {"history"}, {"history", "--json"}, {"history", "--diff", "last-1", "last", "--json"}}) {
    std::vector<std::string> redacted = command;
    redacted.emplace_back("--redact");
    EXPECT_NE(kept(command).out.find(host), std::string::npos) << command.back();
    const CommandResult result = kept(redacted);
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out.find(host), std::string::npos) << result.out;
    EXPECT_NE(result.out.find("host-1"), std::string::npos) << result.out;
  }
}

// Catches one damaged run that hides all the others, and a command that is shown though nobody
// knows the names of its machine.
TEST_F(KeptRuns, ARunWhoseMachineCannotBeReadIsListedWithoutItsCommand) {
  run({"Scripted Pass"});
  run({"Scripted Fail"});
  run({"Scripted Fail"});
  {
    history::Database kept(file("state") + "/history.db", nullptr, std::chrono::seconds(1));
    kept.run("DELETE FROM chunks WHERE run = (SELECT max(run) FROM chunks)");
    kept.run("UPDATE chunks SET lines = 'no event' WHERE run = (SELECT max(run) FROM chunks)");
  }
  const CommandResult result = kept({"history", "--redact", "--json"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_NE(result.out.find("Scripted Pass"), std::string::npos) << result.out;
  EXPECT_EQ(result.out.find("Scripted Fail"), std::string::npos) << result.out;
  EXPECT_EQ(countOf(result.out, "(its machine cannot be read)"), 2U) << result.out;
}

TEST_F(KeptRuns, NothingElseIsWrittenWhereAFormatGoesToStandardOutput) {
  const CommandResult result = run({"Scripted Pass", "--jsonl", "-"});
  EXPECT_EQ(result.status, 0);
  EXPECT_NE(result.err.find("Verdict: Pass"), std::string::npos) << result.err;
  std::ofstream(fs::u8path(file("ocp")), std::ios::binary) << result.out;
  EXPECT_EQ(runCommand({"verify", file("ocp")}).status, 0) << result.out;
}

TEST_F(KeptRuns, AReportOfAKeptRunIsTheOneThatWasWrittenAtOnce) {
  run({"Scripted Pass", "--events", file("first")});
  const CommandResult report = kept({"report", "--events", file("again")});
  EXPECT_EQ(report.status, 0) << report.err;
  EXPECT_EQ(readText(file("again")), readText(file("first")));
  EXPECT_NE(readText(file("first")), "");
}

TEST_F(KeptRuns, AKeptRunIsShownInAsMuchDetailAsIsWanted) {
  run({"Scripted Incomplete"});
  EXPECT_NE(kept({"report"}).out.find("Verdict: Incomplete"), std::string::npos);
  EXPECT_NE(kept({"report", "--level", "simple"}).out.find("Verdict: (Incomplete)"),
            std::string::npos);
  EXPECT_EQ(kept({"report"}).out.find("Log: "), std::string::npos);
  EXPECT_NE(kept({"report", "--verbose"}).out.find("Log: "), std::string::npos);
  EXPECT_EQ(kept({"report", "--quiet"}).out.find("Percent"), std::string::npos);
  const CommandResult refused = kept({"report", "--verbose", "--junit", file("junit")});
  EXPECT_EQ(refused.status, 2);
  EXPECT_FALSE(fs::exists(fs::u8path(file("junit"))));
}

TEST_F(KeptRuns, TheHistoryTellsWhatChanged) {
  run({"Scripted Pass"});
  run({"Scripted Fail", "Scripted Pass"});
  const CommandResult list = kept({"history"});
  EXPECT_EQ(list.status, 0);
  EXPECT_EQ(countOf(list.out, "\n"), 3U) << list.out;
  const CommandResult difference = kept({"history", "--diff", "last-1", "last"});
  EXPECT_EQ(difference.status, 0) << difference.err;
  EXPECT_NE(difference.out.find("Scripted Fail"), std::string::npos) << difference.out;
  EXPECT_EQ(kept({"history", "--json"}).out.front(), '[');
}

// Catches files that are emptied or made for a run that never begins.
TEST_F(KeptRuns, ACommandThatIsRefusedLeavesItsFilesAsTheyWere) {
  std::ofstream(fs::u8path(file("old"))) << "yesterday's";
  const CommandResult result = run(
      {"Scripted Pas", "--events", file("old"), "--jsonl", file("new"), "--html", file("page")});
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(readText(file("old")), "yesterday's");
  EXPECT_FALSE(fs::exists(fs::u8path(file("new"))));
  EXPECT_FALSE(fs::exists(fs::u8path(file("page"))));
}

TEST_F(KeptRuns, ARunThatIsNotToBeKeptIsNot) {
  EXPECT_EQ(run({"Scripted Pass", "--no-history"}).status, 0);
  EXPECT_EQ(kept({"history"}).status, 4);
}

TEST_F(KeptRuns, AHistoryThatCannotBeWrittenCostsNoRun) {
  std::ofstream(fs::u8path(file("state"))) << "a file";
  const CommandResult result = run({"Scripted Pass"});
  EXPECT_EQ(result.status, 0);
  EXPECT_NE(result.out.find("Verdict: Pass"), std::string::npos);
  EXPECT_EQ(result.err.rfind("diags: the run is not kept: ", 0), 0U) << result.err;
}

#if !defined(_WIN32)

// Catches a run that goes with the program that shows it, as Ctrl-C takes the other half of a pipe
// along: no report would be written, and the history would have it as cut off.
TEST_F(KeptRuns, ARunOutlivesWhoReadsItsOutput) {
  for (const auto& [test, status] : {std::pair("Scripted Pass", 3), {"Scripted Fail", 1}}) {
    const std::string pipe = file(test);
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    std::thread reader([&pipe] { ::close(::open(pipe.c_str(), O_RDONLY | O_CLOEXEC)); });
    const CommandResult result = runCommand(
        {"run", test, "--root", kScripted, "--state", file("state"), "--junit", file("junit")},
        pipe);
    reader.join();
    EXPECT_EQ(result.status, status);
    EXPECT_EQ(result.err, "diags: standard output cannot be written\n");
    EXPECT_EQ(countOf(readText(file("junit")), "<testcase "), 1U);
  }
  const std::string runs = kept({"history", "--json"}).out;
  EXPECT_NE(runs.find("\"outcome\":\"passed\""), std::string::npos);
  EXPECT_NE(runs.find("\"outcome\":\"failed\""), std::string::npos);
}

// Catches a command that hears no request to end while it waits for who reads its report: only a
// kill, which is status 137, would end it. A slow machine may be asked before it hears for itself
// (143).
TEST_F(KeptRuns, ARunThatWaitsForAReaderCanBeEnded) {
#if defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "the thread sanitizer keeps a signal back until the pipe has its reader";
#endif
  const std::string pipe = file("pipe");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  const CommandResult result = runCommand(
      {"run", "Scripted Pass", "--root", kScripted, "--state", file("state"), "--events", pipe},
      std::string(), "timeout --preserve-status --kill-after=30 1 ");
  EXPECT_TRUE(result.status == 130 || result.status == 143) << result.status << result.err;
}

#endif

/// The stream up to the middle of what happens in its test, however much it says of the machine.
std::string cutOff(const std::string& whole) {
  const std::size_t start = whole.find("\"device\":\"fan0\"");
  return start > whole.size() ? std::string() : whole.substr(0, (start + whole.size()) / 2);
}

TEST_F(KeptRuns, AStreamThatWasCutOffIsMadeWhole) {
  for (const char* format : {"--events", "--jsonl"}) {
    run({"Scripted Pass", format, file("whole")});
    const std::string whole = readText(file("whole"));
    std::ofstream(fs::u8path(file("cut")), std::ios::binary) << cutOff(whole);
    const CommandResult recovered = runCommand({"recover", file("cut")});
    EXPECT_EQ(recovered.status, 0) << recovered.err;
    const std::string text = readText(file("cut"));
    ASSERT_FALSE(text.empty());
    EXPECT_EQ(text.back(), '\n');
    EXPECT_EQ(runCommand({"recover", file("cut")}).out, file("cut") + ": is whole\n");
  }
  EXPECT_EQ(runCommand({"verify", file("cut")}).status, 0);
}

}  // namespace
}  // namespace host_test
