#pragma once

#include <iosfwd>

#include "reports/html/Badge.h"
#include "reports/html/RunPicture.h"

/// The parts of a page, in their order on it. A part that has nothing to say writes nothing.
namespace reports::html {

/// The verdict, when and where, how many tests ended how.
void writeVerdict(std::ostream& out, const RunPicture& run);

/// What is recommended, from all tests that did not pass.
void writeActions(std::ostream& out, const RunPicture& run);

/// The machine, and which of its parts are faulty.
void writeMachine(std::ostream& out, const RunPicture& run);

/// The list of the tests, a line each.
void writeTestList(std::ostream& out, const RunPicture& run);

/// What ran when.
void writeTimeline(std::ostream& out, const RunPicture& run);

/// How measurements changed from one run of a test to the next.
void writeTrends(std::ostream& out, const RunPicture& run);

/// Each test with all that it says.
void writeTests(std::ostream& out, const RunPicture& run);

/// The command line, and what concerns no test.
void writeRun(std::ostream& out, const RunPicture& run);

/// What several parts need.
bool didNotPass(const TestPicture& test);
/// Whether there are so many tests that those that passed are folded away.
bool isLong(const RunPicture& run);
void writeMeasurements(std::ostream& out, const std::vector<Series>& measurements);
void writeMeasurementRow(std::ostream& out, const Series& series, const std::string& of);
/// Findings, messages and errors.
void writeSayings(std::ostream& out, const TestPicture& test);
/// Record, steps, output and log, folded away.
void writeFolded(std::ostream& out, const TestPicture& test);

}  // namespace reports::html
