#pragma once

#include "engine/plan/Prepared.h"

namespace engine {

/// Leaves what can be done and told in `bound` by the estimates: the tests with the shortest ones,
/// as many as fit in one after the other, each group's in the order of their estimates. A test
/// without an estimate may take for ever and is left out; repetitions count.
void keepQuickest(PreparedPlan& plan, Duration bound);

}  // namespace engine
