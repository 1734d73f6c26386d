#pragma once

#include "engine/Engine.h"
#include "host/ExitStatus.h"
#include "host/options/Options.h"

namespace host {

/// One operation a verb. Each writes its answer to standard output and returns how the program
/// ends; throws `UsageError` and `engine::PlanError` for what the user asked for and cannot be had,
/// and what the engine throws.
ExitStatus listTests(engine::Engine& engine, const Options& options);
ExitStatus runTests(engine::Engine& engine, const Options& options);
ExitStatus showResults(engine::Engine& engine, const Options& options);
ExitStatus inspectClass(engine::Engine& engine, const Options& options);
ExitStatus listProviders(engine::Engine& engine, const Options& options);
ExitStatus checkInstallation(engine::Engine& engine, const Options& options);

}  // namespace host
