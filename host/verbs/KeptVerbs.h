#pragma once

#include "host/ExitStatus.h"
#include "host/options/Options.h"

/// The verbs that work on what is kept of runs, and need no installation. Throw `UsageError`,
/// `history::HistoryError` and `std::runtime_error` that name what cannot be had.
namespace host {

ExitStatus reportRun(const Options& options);
ExitStatus showHistory(const Options& options);
ExitStatus verifyStreams(const Options& options);
ExitStatus recoverStreams(const Options& options);
ExitStatus showFleet(const Options& options);

}  // namespace host
