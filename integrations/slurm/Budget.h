#pragma once

#include "integrations/slurm/Duration.h"

namespace slurm {

/// How the time that the program may take is shared out. Each is a time since its start; they come
/// one after the other, the last within the budget.
struct Shares {
  Duration deadline;   ///< until then `diags` runs tests ...
  Duration grace;      ///< ... and so long it gives those that are under way
  Duration terminate;  ///< then `diags` is told to end,
  Duration kill;       ///< and is ended.
  Duration asked;      ///< Until then the controller is asked for the node's state,
  Duration drained;    ///< and told to drain it.
};

/// The least that makes sense.
constexpr Duration kLeastBudget{2'000};

Shares sharesOf(Duration budget);

}  // namespace slurm
