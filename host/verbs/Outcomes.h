#pragma once

#include "engine/Engine.h"
#include "host/ExitStatus.h"

namespace host {

/// What a run tells the caller: a hardware fault outweighs a test that could not finish or is
/// missing (`isComplete` false), which outweighs the passes; that the user ended it comes between.
ExitStatus statusOf(const engine::RunSummary& summary, bool isComplete);

}  // namespace host
