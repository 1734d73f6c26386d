#pragma once

#include <vector>

#include "providers/processor/topology/CpuTopology.h"

namespace providers {

/// How much of a processor a fault is of.
enum class Extent {
  Thread,      ///< the other threads of the core do it right
  Core,        ///< the other cores do it right
  Package,     ///< other cores of the package do it wrong, too
  Everywhere,  ///< other packages do it wrong, too
  Undecided    ///< it is one of those that disagree, and there are too few others to tell which
};

/// A thread that was given the same to do.
struct Tried {
  CpuPlace place;
  bool wrong = false;
};

/// What a fault of `blamed` is of, from how all the others did.
Extent extentOf(const CpuPlace& blamed, const std::vector<Tried>& others);

}  // namespace providers
