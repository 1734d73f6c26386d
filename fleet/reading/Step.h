#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "fleet/Answer.h"
#include "fleet/reading/Line.h"

namespace fleet {

/// A test that has begun and not ended.
struct Step {
  std::uint32_t test = 0;
  std::uint32_t device = 0;
  std::string testName;
  std::string deviceName;
  bool hasPass = false;
  bool hasWarning = false;
  bool hasFailure = false;
  bool isUnknown = false;
  bool hasError = false;
  bool hasFinding = false;
  Verdict told = Verdict::kNone;  ///< by this system's own streams
  std::string error;
  std::unordered_map<std::string, std::uint32_t> series;
};

/// The test's name without the number of its repetition.
std::string_view withoutRepetition(std::string_view name);

/// Takes a diagnosis into account. The verdict it is.
Verdict takeDiagnosis(Step& step, const Line& line);

/// The verdict in the word of this system's own streams; none for any other word.
Verdict outcomeNamed(std::string_view word);

/// How the test ended, by its `status` and what was found in between.
Verdict verdictOf(const Step& step, std::string_view status);

}  // namespace fleet
