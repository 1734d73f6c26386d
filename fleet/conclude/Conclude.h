#pragma once

#include <optional>
#include <string>
#include <vector>

#include "fleet/Answer.h"
#include "fleet/gather/Member.h"

/// The steps from what was gathered to the answer, each of which fills a part of it. The members
/// are in the order of the machines.
namespace fleet {

/// The tests, the machines and their verdicts. Where a machine's stream was cut off, tests that
/// most other machines have and it has not are unfinished.
void concludeMachines(Answer& answer, const std::vector<Member>& members, const Tables& tables);

/// Moves the findings out of the members.
void concludeFindings(Answer& answer, std::vector<Member>& members, const Tables& tables);

/// Moves the measured values out of the members, and tells those that stand out.
void concludeSlow(Answer& answer, std::vector<Member>& members, const Tables& tables);

/// Who did not answer, or not to the end; and who was not expected.
void concludeSilent(Answer& answer, const std::vector<Member>& members,
                    const std::optional<std::vector<std::string>>& expected);

/// Whose run, by its machine's clock, is far from when most machines were tested, or still to come.
void concludeClocks(Answer& answer, engine::Time now);

/// Machines with a test in common; that there are several such fleets is a complaint.
void concludeComponents(Answer& answer);

void concludeTotals(Answer& answer);

}  // namespace fleet
