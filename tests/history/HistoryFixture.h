#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "engine/events/EventSink.h"
#include "history/History.h"
#include "history/Recorder.h"

namespace history {

/// 2026-11-22T01:30:00Z.
engine::Time firstTime();

/// An empty folder of its own, gone with it.
class ScratchFolder {
 public:
  ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder();
  const std::filesystem::path& path() const { return m_path; }

 private:
  std::filesystem::path m_path;
};

/// Collects what it is given, as lines.
class LineSink : public engine::EventSink {
 public:
  void take(const engine::Event& event) override;
  std::vector<std::string> lines;
};

/// The events of a run, said one after the other; each a tenth of a second after the one before it.
class Tale {
 public:
  explicit Tale(engine::EventSink& sink, engine::Time start = firstTime());

  Tale& runStarts(const std::string& host = "host");
  /// The next test; what is said next is about it.
  Tale& testStarts(const std::string& name = "Memory Test,mem0,Memory");
  Tale& says(engine::Body body);
  Tale& measures(const std::string& name, engine::MeasuredValue value,
                 const std::string& unit = "MB/s");
  Tale& testEnds(engine::Outcome outcome = engine::Outcome::kPassed);
  Tale& runEnds(engine::Outcome outcome = engine::Outcome::kPassed);
  Tale& wait(std::chrono::microseconds time);

 private:
  void take(std::uint64_t test, engine::Body body);

  engine::EventSink& m_sink;
  engine::Event m_event;
  std::uint64_t m_test = 0;
};

/// Records a whole run with one test and one measurement; returns its identifier.
std::string recordRun(History& history, engine::Time start = firstTime(),
                      engine::Outcome outcome = engine::Outcome::kPassed);

/// The lines of a run's events.
std::vector<std::string> linesOf(const History& history, const std::string& id);

class HistoryFixture : public testing::Test {
 protected:
  std::filesystem::path folder() const { return m_scratch.path() / "state"; }
  History open(const Options& options = {}) const { return History::open(folder(), options); }
  /// What opening the history complains about; empty where it succeeds.
  std::string complaint(const Options& options = {}) const;

 private:
  ScratchFolder m_scratch;
};

}  // namespace history
