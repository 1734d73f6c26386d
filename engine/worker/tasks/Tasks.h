#pragma once

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
/// data files that cannot be read to their end.
void warn(const Session& session);

}  // namespace engine::tasks
