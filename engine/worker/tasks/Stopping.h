#pragma once

#include <set>
#include <string>

#include "engine/worker/tasks/Session.h"

namespace engine::tasks {

/// The run of one test, while it can be told to end in good order: its job is the one that was not
/// there before. The order comes on another thread than the one that the run holds.
class Stopping {
 public:
  /// To be made before the run starts. `session` outlives it.
  explicit Stopping(Session& session);
  Stopping(const Stopping&) = delete;
  Stopping& operator=(const Stopping&) = delete;
  /// Waits for a job that is just being told.
  ~Stopping();

  /// Terminates the jobs of the run, those that it still starts too, until it is over. Without a
  /// run only the order is remembered.
  static void order();

  static bool isOrdered();

 private:
  bool terminateJobs();

  Session& m_session;
  std::set<std::string> m_former;
};

}  // namespace engine::tasks
