#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "engine/worker/tasks/Session.h"
#include "framework/TCIMReference.h"

namespace engine::tasks {

/// The run of one test, while it can be told to end in good order: its job is the one that was not
/// there before. The order comes on another thread than the one that the run holds.
class Stopping {
 public:
  /// To be made before the run starts; so many pauses the runner makes at most when its job is
  /// over. `session` outlives it.
  Stopping(Session& session, int pauses);
  Stopping(const Stopping&) = delete;
  Stopping& operator=(const Stopping&) = delete;
  /// Waits for a job that is just being told.
  ~Stopping();

  /// Terminates the jobs of the run, or those that it is about to start, and has the runner look at
  /// them as soon as they are over; returns when the run is. Without a run only the order is
  /// remembered.
  static void order();

  static bool isOrdered();

 private:
  static bool attendRun();
  bool attend();
  bool terminateJobs();
  bool areJobsOver();
  void watch();

  Session& m_session;
  int m_pauses;
  std::set<std::string> m_former;
  std::vector<NZELVOR20::TCIMReference> m_jobs;  ///< of the run, told to end where they had not
  bool m_isOver = false;                         ///< and so are all of them
  std::size_t m_records = 0;                     ///< that there are, of whatever run
};

}  // namespace engine::tasks
