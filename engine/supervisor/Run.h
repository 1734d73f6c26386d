#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "engine/plan/Schedule.h"
#include "engine/supervisor/RunningTest.h"

namespace engine {

/// What came of all tests.
struct RunSummary {
  std::map<Outcome, std::uint64_t> outcomes;
  bool wasCancelled = false;
  bool isTimeUp = false;
  std::vector<std::string> sinkFailures;  ///< of those that could not take every event
};

/// A plan on its way: begins what may begin, and ends when nothing is left.
class Run {
 public:
  struct Options {
    WorkerProgram program;
    InstallationOptions installation;
    RunStarted start;
    std::vector<Message> notes;  ///< of the run as a whole, for its reader
    std::optional<std::uint64_t> threadedMinutes;
    double listSeconds = 60;  ///< for the listing that comes before each test
    int logLevel = 1;
    std::optional<Duration> deadline;
  };

  Run(Options options, Schedule schedule, std::vector<EventSink*> sinks);
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;
  ~Run();

  /// To the end of the last test. Throws what cannot be helped, `std::bad_alloc` for instance.
  RunSummary carryOut();

  /// From any thread, at any time: the first call ends the running tests in good order, and begins
  /// none any more; another one ends them at once.
  void cancel();

 private:
  bool step();
  void begin(const PlannedRun& run);
  void tellSkipped();
  void skip(std::uint64_t id, const OfferedTest& test, const std::string& reason);
  void tellMissing();
  void tellUnbegun();
  std::string reasonOfUnbegun() const;
  void note(const PlannedRun& run, Outcome outcome);
  void noteDawdler(const std::string& provider);
  void stopAll(const std::string& why);
  void obeyCancel();
  Duration elapsed() const;
  bool wasStopped() const;
  Outcome overallOutcome() const;

  Options m_options;
  Schedule m_schedule;
  EventStream m_events;
  Loop m_loop;
  Timer m_deadline;
  Timer m_recurrence;
  RunningTest::Course m_course;
  std::vector<std::unique_ptr<RunningTest>> m_running;
  std::set<std::string> m_dawdlers;
  std::set<const OfferedTest*> m_tests;  ///< those of which at least one run began
  std::uint64_t m_skipped = 0;
  std::uint64_t m_begun = 0;
  std::uint64_t m_lastNumber = 0;  ///< the greatest of the runs that began
  RunSummary m_summary;
  std::chrono::steady_clock::time_point m_start;
};

}  // namespace engine
