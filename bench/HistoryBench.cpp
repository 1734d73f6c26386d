#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "bench/RatioReporter.h"
#include "history/Recorder.h"
#include "history/show/Tables.h"
#include "history/store/Database.h"
#include "history/store/Statement.h"
#include "history/store/Store.h"
#include "reports/events/EventsWriter.h"

namespace {

namespace fs = std::filesystem;
using history::Database;
using history::History;

constexpr int kEvents = 100'000;
constexpr double kMostMilliseconds = 50;

fs::path folderOf(int runs) {
  return fs::temp_directory_path() / ("diags-bench-history-" + std::to_string(runs));
}

/// A run of three tests with five measurements each, recorded as any other.
void recordOne(History& history) {
  history::Recorder recorder(history);
  engine::Event event;
  event.time = engine::Time(std::chrono::seconds(1'790'000'000));
  const auto say = [&](std::uint64_t test, engine::Body body) {
    event.test = test;
    event.body = std::move(body);
    recorder.take(event);
    ++event.sequence;
  };
  say(0, engine::RunStarted{"1.0", {"diags", "run", "--all"}, {}, "host", "id", {}, 3});
  for (std::uint64_t test = 1; test <= 3; ++test) {
    const std::string name = "Test " + std::to_string(test);
    say(test, engine::TestStarted{name + ",d,e", name, "d", "e", 1, 5});
    for (int i = 0; i < 5; ++i) {
      say(test, engine::Measurement{"value " + std::to_string(i), 5.0, "MB/s", 1.0, 9.0, ""});
    }
    say(test, engine::Ended{engine::Outcome::kPassed, "", 5, "(Pass)", "", ""});
  }
  say(0, engine::Ended{engine::Outcome::kPassed, "", 15, "", "", ""});
}

/// Repeats that run, a minute later each time, without waiting for the disk at each.
void repeat(const fs::path& folder, int runs) {
  Database database(history::fileIn(folder), nullptr, std::chrono::seconds(10));
  history::Transaction transaction(database);
  const std::string others =
      "WITH RECURSIVE copy(n) AS (SELECT 2 UNION ALL SELECT n + 1 FROM copy "
      "WHERE n < " +
      std::to_string(runs) + ") ";
  database.run(
      others +
      "INSERT INTO runs SELECT n, printf('20270101-%06d-0000', n), started + n * 60000000, "
      "ended + n * 60000000, outcome, host, version, command, passed, warned, failed, "
      "unfinished, skipped, bytes, left_out FROM copy, runs");
  database.run(others +
               "INSERT INTO tests SELECT n, test, name, service, repetition, started, seconds, "
               "outcome, remark FROM copy, tests");
  database.run(
      others +
      "INSERT INTO measurements SELECT n, test, sequence, name, part, unit, number + n, text, "
      "minimum, maximum FROM copy, measurements");
  database.run(others + "INSERT INTO chunks SELECT NULL, n, lines FROM copy, chunks");
  transaction.commit();
}

void makeHistory(int runs) {
  fs::remove_all(folderOf(runs));
  {
    History history = History::open(folderOf(runs));
    recordOne(history);
  }
  repeat(folderOf(runs), runs);
}

/// What the command does from its opening to the last line.
std::size_t list(int runs) {
  const History history = History::open(folderOf(runs));
  std::ostringstream stream;
  history::writeRuns(stream, history.runs());
  return stream.str().size();
}

void listRuns(benchmark::State& state, int runs) {
  for (auto iteration : state) benchmark::DoNotOptimize(list(runs));
}

/// The same rows, read by the library alone.
void readRows(benchmark::State& state, int runs) {
  for (auto iteration : state) {
    Database database(history::fileIn(folderOf(runs)), nullptr, std::chrono::seconds(10));
    history::Statement rows(database, "SELECT * FROM runs ORDER BY id DESC");
    std::size_t bytes = 0;
    while (rows.step()) {
      for (int column = 0; column < 15; ++column) bytes += rows.text(column).size();
    }
    benchmark::DoNotOptimize(bytes);
  }
}

void followTrend(benchmark::State& state, int runs) {
  const History history = History::open(folderOf(runs));
  for (auto iteration : state) {
    benchmark::DoNotOptimize(history.trend("Test 2", "value 3", static_cast<std::size_t>(runs)));
  }
}

engine::Event outputLine() {
  engine::Event event;
  event.test = 1;
  event.body = engine::OutputLine{engine::Stream::kOutput, std::string(60, 'x'), false};
  return event;
}

void record(benchmark::State& state) {
  const fs::path folder = folderOf(0);
  for (auto iteration : state) {
    fs::remove_all(folder);
    History history = History::open(folder);
    history::Recorder recorder(history);
    engine::Event event = outputLine();
    for (int i = 0; i < kEvents; ++i) recorder.take(event);
  }
  fs::remove_all(folder);
}

/// The same events into a file, each line of it flushed.
void writeLines(benchmark::State& state) {
  const fs::path file = folderOf(0).string() + ".jsonl";
  const engine::Event event = outputLine();
  for (auto iteration : state) {
    std::ofstream out(file, std::ios::binary);
    reports::EventsWriter writer(out, file.string());
    for (int i = 0; i < kEvents; ++i) writer.take(event);
  }
  fs::remove(file);
}

/// In time of the processor, which is all that it takes once the file has been read, and the best
/// of some: the machine does other things, too.
bool answersInTime(int runs) {
  double best = 1e9;
  for (int attempt = 0; attempt < 10; ++attempt) {
    const std::clock_t start = std::clock();
    list(runs);
    best = std::min(best, 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
  }
  const bool isMet = best <= kMostMilliseconds;
  std::printf("listing %d runs takes %.1f ms  (goal: at most %.0f ms)%s\n", runs, best,
              kMostMilliseconds, isMet ? "" : "  MISSED");
  return isMet;
}

}  // namespace

int main(int argc, char** argv) {
  for (const int runs : {1000, 10'000}) makeHistory(runs);
  const auto add = [](const char* name, auto function, auto... arguments) {
    benchmark::RegisterBenchmark(name, function, arguments...)->Unit(benchmark::kMillisecond);
  };
  add("list 10000 runs", listRuns, 10'000);
  add("read 10000 rows", readRows, 10'000);
  add("trend over 1000 runs", followTrend, 1000);
  add("trend over 10000 runs", followTrend, 10'000);
  add("record 100000 events", record);
  add("write 100000 lines", writeLines);
  int status = runWithGoals(argc, argv,
                            {{"10000 runs as a table, beside reading their rows", "list 10000 runs",
                              "read 10000 rows", 1, 2.5},
                             {"a run of a trend, of 10000 / of 1000", "trend over 10000 runs",
                              "trend over 1000 runs", 10, 1.5},
                             {"keeping an event, beside writing it to a file",
                              "record 100000 events", "write 100000 lines", 1, 1.5}});
  if (!answersInTime(10'000)) status = 1;
  for (const int runs : {1000, 10'000}) fs::remove_all(folderOf(runs));
  return status;
}
