#pragma once

#include <cstdint>
#include <ostream>

#include "fleet/Answer.h"

namespace fleet {

struct TableOptions {
  std::uint64_t most = 20;  ///< lines of each section; what is left out is counted
  bool isVerbose = false;   ///< every line, and the tests that passed everywhere
};

/// Writes the answer for people: failing machines, tests, what the failing ones have in common,
/// what is slow and who is silent. Whatever the streams hold, it is harmless on a terminal.
void writeTable(std::ostream& out, const Answer& answer, const TableOptions& options);

}  // namespace fleet
