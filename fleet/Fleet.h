#pragma once

#include <optional>
#include <string>
#include <vector>

#include "fleet/Answer.h"

namespace fleet {

struct Question {
  std::vector<std::string> names;                    ///< of files and folders, UTF-8
  std::optional<std::vector<std::string>> expected;  ///< the machines that are to answer
  unsigned threads = 0;                              ///< 0: one for each processor, up to 16
  engine::Time now{};
};

/// Reads the streams of a fleet and answers what they say together. Whatever a stream holds is no
/// error but a complaint of the answer. Its memory grows with the machines, not with the streams.
Answer askFleet(const Question& question);

}  // namespace fleet
