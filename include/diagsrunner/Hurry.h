#pragma once

#include "diagsrunner/Export.h"

/// To be called by a host that has just ended the running job by itself, from any thread: the
/// runner looks at a job every five seconds only, and waits as long for a record. A wait that goes
/// on ends now, and those that follow are short at first, a tenth of a second, and each a quarter
/// longer than the one before, up to their usual length. What the runner does, and what it answers,
/// stays the same.
DIAGSRUNNER_API void hurryDiagsRunner() noexcept;
