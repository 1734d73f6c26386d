#pragma once

#include <iosfwd>

#include "fleet/Answer.h"
#include "fleet/page/PageLimits.h"

/// The parts of the page, in their order on it. A part that has nothing to say writes nothing.
namespace fleet::page {

/// What the whole fleet comes to, and how many machines came to what.
void writeVerdict(std::ostream& out, const Answer& answer);

/// What fails clearly more often than the rest, with what is recommended.
void writeGroups(std::ostream& out, const Answer& answer, const PageLimits& limits);

/// The tests that machines failed.
void writeFailedTests(std::ostream& out, const Answer& answer, const PageLimits& limits);

/// What is far from its peers.
void writeSlow(std::ostream& out, const Answer& answer, const PageLimits& limits);

/// Who did not answer, or not to the end.
void writeSilent(std::ostream& out, const Answer& answer, const PageLimits& limits);

/// Machines without a test in common, where there are such.
void writeFleets(std::ostream& out, const Answer& answer, const PageLimits& limits);

/// Files that were left out, and what else was odd.
void writeComplaints(std::ostream& out, const Answer& answer, const PageLimits& limits);

/// The machines that failed as text, in whose place the script puts the table of all of them, and
/// the data that it draws.
void writeMachines(std::ostream& out, const Answer& answer, const PageLimits& limits);

/// "12 more are not shown." with what names them in front; nothing for 0.
void writeMore(std::ostream& out, std::size_t all, std::size_t shown);

}  // namespace fleet::page
