#pragma once

#include "host/Session.h"

namespace host {

/// Runs the test that the runner ran last once more, on a thread of its own, with an estimated
/// percentage for a run of `minutes` on standard output. When that run ends by an exception, the
/// display would wait for ever: one error line is written, and the process ends at once with
/// `ExitStatus::kCouldNotRun`.
void runAgainOnThread(Session& session, unsigned minutes);

}  // namespace host
