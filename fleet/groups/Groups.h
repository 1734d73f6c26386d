#pragma once

#include <vector>

#include "fleet/Answer.h"
#include "fleet/gather/Member.h"

namespace fleet {

/// What the failing machines and parts have in common: fills the groups of the answer from its
/// machines and findings, and the parts of the members, which are in the machines' order.
void findGroups(Answer& answer, const std::vector<Member>& members, const Names& names);

}  // namespace fleet
