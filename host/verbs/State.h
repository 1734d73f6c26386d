#pragma once

#include "history/History.h"
#include "host/options/Options.h"

namespace host {

/// The history where `--state` says, or at the user's place. Throws `history::HistoryError`.
history::History openHistory(const Options& options, const history::Options& how = {});

}  // namespace host
