#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "fleet/Answer.h"
#include "fleet/reading/Identity.h"
#include "fleet/reading/Series.h"

namespace fleet {

/// How a test ended on one of a machine's devices; the names by number.
struct Outcome {
  std::uint32_t test = 0;
  std::uint32_t device = 0;
  Verdict verdict = Verdict::kNone;
};

/// With no machine yet, and the names by number.
struct StreamFinding {
  std::uint32_t device = 0;
  Finding finding;  ///< its test is the number of a name, or `kNowhere`
};

/// What one stream says.
struct StreamResult {
  std::string file;
  bool isLeftOut = false;  ///< nothing below counts, but for the complaints
  Identity machine;
  std::optional<engine::Time> began;
  bool hasEnded = false;
  Verdict run = Verdict::kNone;  ///< where the run says more than its tests: failed or unfinished
  std::string lastOpen;          ///< a test that had not ended where the stream does
  std::vector<Outcome> outcomes;
  std::vector<Value> values;
  std::vector<StreamFinding> findings;
  std::uint64_t measurements = 0;
  std::vector<Complaint> complaints;
};

}  // namespace fleet
