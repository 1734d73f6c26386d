#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "providers/common/Diagnostic.h"

namespace providers {

/// The values of CIM_ConcreteJob.JobState that are in use.
enum class JobState : std::uint16_t {
  New = 2,
  Starting = 3,
  Running = 4,
  ShuttingDown = 6,
  Completed = 7,
  Terminated = 8,
  Killed = 9,
  Exception = 10
};
bool isFinal(JobState state);

/// What is asked for when a job is opened.
struct JobRequest {
  std::string name;
  std::string serviceName;
  std::string deviceId;
  std::string elementName;
  Exclusive exclusive = Exclusive::Itself;
  bool deleteOnCompletion = true;
  std::int64_t keepJob = 300'000'000;                        ///< microseconds after the end
  std::optional<std::int64_t> keepRecords = 86'400'000'000;  ///< the same; without: for ever
};

/// A job as it stands. All times are in microseconds, points in time since 1970-01-01 UTC.
struct Job {
  std::string id;
  JobRequest request;
  JobState state = JobState::New;
  std::uint16_t percent = 0;
  std::string statusText;
  std::int64_t submitted = 0;
  std::int64_t started = 0;
  std::int64_t changed = 0;
  std::int64_t ended = 0;
  std::string errorText;  ///< why it did not end well
  bool stopRequested = false;
  unsigned records = 0;  ///< how many were written

  std::int64_t elapsed(std::int64_t now) const;
};

/// A record as it was written.
struct Record {
  std::string id;  ///< the job's, ":", and the number within the job
  RecordType type = RecordType::Results;
  bool completion = false;
  std::string format;  ///< how the text is to be read; empty: by people
  std::string serviceName;
  std::string deviceId;
  std::string elementName;
  Outcome outcome;  ///< of a record that is not the completion record: what a note has
  std::int64_t created = 0;
  std::optional<std::int64_t> expires;
};

/// What became of a wish for another state: the return values of CIM_ConcreteJob's
/// RequestStateChange.
enum class StateChange : std::uint32_t {
  Done = 0,
  NotSupported = 1,
  InvalidParameter = 5,
  Started = 4096,
  Invalid = 4097,
  NoTimeouts = 4098
};

/// The jobs of a library and the records of their runs. The percentage of a job never falls and is
/// 100 in every final state; a job's records are written before its final state can be seen. What
/// is past its time is dropped at the next question. Safe to use from any thread.
class JobRegistry {
 public:
  using Clock = std::function<std::int64_t()>;
  using IdMaker = std::function<std::string()>;

  /// `clock` tells the microseconds since 1970-01-01 UTC, `makeId` a new job identifier.
  JobRegistry(Clock clock, IdMaker makeId);

  /// Opens a job and returns its identifier; nothing when it has to wait for another run, whose
  /// name goes to `rival`. A job that was killed is one until its thread has told how it ended.
  std::optional<std::string> open(const JobRequest& request, std::string* rival = nullptr);
  /// Forgets a job that could not be started.
  void discard(const std::string& id);

  /// Marks the job as on its way to a thread, and then as running there.
  void launch(const std::string& id);
  void start(const std::string& id);
  void progress(const std::string& id, double fraction);
  void status(const std::string& id, const std::string& text);
  /// True also for a job that has ended or is unknown: there is nothing left to do for it.
  bool stopRequested(const std::string& id) const;

  /// Ends the job with what the run found, whose thread has come to its end. Does nothing to a job
  /// that has ended.
  void finish(const std::string& id, const Outcome& outcome);
  /// The same, with an error of the test itself.
  void fail(const std::string& id, const std::string& reason);

  StateChange requestState(const std::string& id, std::uint64_t state);
  /// Ends the job at once. False when it is unknown or has ended.
  bool kill(const std::string& id, std::optional<bool> deleteAfterwards);
  /// Asks every job to stop.
  void stopAll();
  bool anyRunning() const;
  /// Forgets all jobs and records; no run may be under way.
  void clear();

  std::vector<Job> jobs();
  std::optional<Job> job(const std::string& id);
  std::vector<Record> records();
  /// Removes a job that has ended, or a record. False when it is unknown or still running.
  bool removeJob(const std::string& id);
  bool removeRecord(const std::string& id);

  std::int64_t now() const { return m_clock(); }

 private:
  /// A run that has been opened, and whose thread may still be at work.
  struct UnderWay {
    std::string id;
    JobRequest request;
  };

  Job* find(const std::string& id);
  void move(const std::string& id, JobState from, JobState to);
  void write(Job& job, const Record& record);
  void writeMeasured(Job& job, const std::vector<Measured>& measured);
  void end(Job& job, JobState state, const Outcome& outcome);
  void prune();

  const Clock m_clock;
  const IdMaker m_makeId;
  mutable std::mutex m_mutex;
  std::vector<Job> m_jobs;
  std::vector<UnderWay> m_underWay;
  std::vector<Record> m_records;
};

/// "DIAGS:" and a random UUID.
std::string makeJobId();

/// The microseconds since 1970-01-01 UTC.
std::int64_t systemClock();

}  // namespace providers
