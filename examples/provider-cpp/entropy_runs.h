// The test of the entropy source, and its runs: each is a job while it goes on, and leaves records.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "cmpi_objects.h"

// JobState and CompletionState, as the value maps of the CIM schema number them.
enum class JobState : CMPIUint16 { Running = 4, ShuttingDown = 6, Completed = 7, Terminated = 8 };
/// The results of a run, with their limits.
constexpr const char* kResultFormat =
    "|uint32 LargestDeviation|string LargestDeviationUnits|uint32 LargestDeviationMaximum"
    "|uint32 LongestRun|string LongestRunUnits|uint32 LongestRunMaximum"
    "|uint32 Errors|uint32 ErrorsMaximum";

enum class Verdict : CMPIUint16 { Ok = 2, Failed = 5, Aborted = 6 };

/// What is known of a run.
struct RunState {
  std::string id;  ///< the job's InstanceID; of fixed width, so that none is part of another
  JobState jobState = JobState::Running;
  CMPIUint16 percent = 0;
  bool ended = false;      ///< from here on the following is set
  CMPIUint64 endedAt = 0;  ///< microseconds since 1970
  Verdict verdict = Verdict::Ok;
  std::string summary;
  std::string results;  ///< as kResultFormat declares them
};

/// The runs of the provider. Safe to use from any thread.
class EntropyRuns {
 public:
  explicit EntropyRuns(const CMPIBroker* broker) : m_broker(broker) {}
  ~EntropyRuns() { endAll(); }

  /// Starts a run on a thread of its own and answers the job's id; an empty text where a run is
  /// going on already.
  std::string start(const CMPIContext* context);

  /// Asks a run to end, which it does a little later. False where no such run is going on.
  bool stop(const std::string& id);

  /// The runs that are known, the oldest first.
  std::vector<RunState> states() const;

  /// Ends every run, waits for its thread, and forgets all.
  void endAll();

 private:
  struct Run {
    RunState state;
    bool stopRequested = false;
    std::thread thread;
  };

  void work(Run& run);
  bool showProgress(Run& run, unsigned blocksDone);

  const CMPIBroker* const m_broker;
  mutable std::mutex m_mutex;  ///< guards the list and what is in it
  std::vector<std::unique_ptr<Run>> m_runs;
};
