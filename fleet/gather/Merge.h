#pragma once

#include <vector>

#include "fleet/gather/Member.h"

namespace fleet {

/// The results of a stream or of another record of the same machine.
struct Results {
  std::vector<Standing> standings;
  std::vector<Value> values;
  std::vector<StreamFinding> findings;
};

/// Which of two results of one test counts.
enum class Precedence { kNewer, kWorse };

/// Adds the results to the machine's, test by test.
void merge(Member& member, Results&& results, Precedence precedence, const Tables& tables);

}  // namespace fleet
