#pragma once

#include <string>

#include "engine/Engine.h"
#include "host/ExitStatus.h"

namespace host {

/// What a run tells the caller: a hardware fault outweighs a test that could not finish or is
/// missing (`isComplete` false), which outweighs the passes; that the user ended it comes between.
ExitStatus statusOf(const engine::RunSummary& summary, bool isComplete);

/// "3 tests: 1 passed, 1 failed, 1 without a verdict", and what was skipped behind it.
std::string summaryOf(const engine::RunSummary& summary);

/// How many tests ran, or began to.
std::uint64_t countOf(const engine::RunSummary& summary);

}  // namespace host
