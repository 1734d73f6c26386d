#pragma once

#include <future>
#include <string>
#include <vector>

#include "engine/protocol/Messages.h"
#include "engine/worker/tasks/Session.h"

/// What a worker can be asked for. Each sends its answers and returns how it ended; throws what the
/// framework and the runner throw.
namespace engine::tasks {

Done list(Session& session, const Request& request);
Done run(Session& session, const Request& request);
Done showProviders(Session& session);
Done inspect(Session& session, const Request& request);
Done check(Session& session);

/// What every answer that relies on the installation is to be read with: who could change it, and
/// data files that cannot be read to their end. These are read on a thread of their own, beside
/// whatever is done between `begin` and `end`.
class Warnings {
 public:
  /// Tells what is known at once. `session` outlives this.
  void begin(const Session& session);
  /// Tells of the data files; throws what reading them threw.
  void end();

 private:
  std::future<std::vector<std::string>> m_dataFiles;
};

}  // namespace engine::tasks
