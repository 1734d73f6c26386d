#include "integrations/slurm/Budget.h"

#include <algorithm>

namespace slurm {
namespace {

/// What the program itself takes to come to its end.
constexpr Duration kOwn{100};
/// More than these no controller and no `diags` needs.
constexpr Duration kMostOfSlurm{8'000};
constexpr Duration kMostToEnd{2'000};

}  // namespace

Shares sharesOf(Duration budget) {
  const Duration ofSlurm = std::min(kMostOfSlurm, budget / 4);
  Shares shares{};
  shares.drained = budget - kOwn;
  shares.asked = shares.drained - ofSlurm / 2;
  shares.kill = shares.drained - ofSlurm;
  shares.terminate = shares.kill - std::min(kMostToEnd, shares.kill / 6);
  shares.grace = std::min(kMostToEnd, shares.kill / 6);
  // Its reports are closed, and its worker has gone, by the time that it would be told to end.
  const Duration closing = std::min(kMostToEnd, shares.kill / 6);
  shares.deadline = shares.terminate - shares.grace - closing;
  return shares;
}

}  // namespace slurm
