#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "history/Records.h"

/// What the history answers, as lines for people and as JSON for programs. All of it is harmless to
/// a terminal. Each throws what the stream throws.
namespace history {

/// A line each, below a line of headings; or that there is none.
void writeRuns(std::ostream& stream, const std::vector<RunRecord>& runs);
/// What changed, test by test; what did not is only counted.
void writeDifference(std::ostream& stream, const Difference& difference);

/// One JSON text each, without a line end. Times are as in the lines of events, members without a
/// value are left out.
std::string jsonOf(const std::vector<RunRecord>& runs);
std::string jsonOf(const Difference& difference);
std::string jsonOf(const std::vector<Trend>& trends);

}  // namespace history
