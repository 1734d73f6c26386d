#pragma once

#include <string>
#include <vector>

#include "fleet/Answer.h"

/// The answer's parts in words. What comes from the streams is in them as it is.
namespace fleet {

/// "3 machines: 2 passed, 1 failed" and what was read.
std::vector<std::string> headlines(const Answer& answer);

/// The tests of the machine with that verdict, and what the first of them found.
std::string whyOf(const Answer& answer, std::uint32_t machine, Verdict verdict);

std::string sentenceOf(const Answer& answer, const Silent& silent);
std::string sentenceOf(const Answer& answer, const Slow& slow);
std::string sentenceOf(const Group& group);

/// "n7.jsonl, line 5: is no JSON at byte 7".
std::string sentenceOf(const Complaint& complaint);

}  // namespace fleet
