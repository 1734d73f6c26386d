#pragma once

#include "host/ExitStatus.h"
#include "host/Options.h"
#include "host/Session.h"

/// The commands: each carries `options` out, writes its answer to standard output and says how the
/// program ends. What it cannot do leaves it by `UsageError` or an exception of the framework.
namespace host {

ExitStatus listTests(Session& session, const Options& options);
ExitStatus runTests(Session& session, const Options& options);
ExitStatus showResults(Session& session, const Options& options);
ExitStatus inspectClass(Session& session, const Options& options);
ExitStatus listProviders(Session& session, const Options& options);
ExitStatus checkInstallation(Session& session, const Options& options);

}  // namespace host
