#pragma once

#include "engine/events/Event.h"
#include "engine/worker/tasks/Session.h"

namespace engine::tasks {

/// Runs the test of the last run once more on a thread of its own, behind a percentage that is
/// estimated for a run of `minutes`, and follows its job to its end, which an order to end brings
/// about as with the first run; one that came before leaves it out. A worse outcome than that of
/// the first run takes its place in `ended`, with its record. An exception of the run ends the
/// process, once that was told: the display would wait for ever.
void runAgain(Session& session, unsigned minutes, Ended& ended);

}  // namespace engine::tasks
