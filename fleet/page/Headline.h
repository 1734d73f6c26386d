#pragma once

#include <string>

#include "fleet/Answer.h"

namespace fleet::page {

/// The whole fleet in a line; of numbers and words of the page's own.
struct Headline {
  std::string style;  ///< "pass", "warn", "fail" or "open"
  std::string text;
  std::string lead;  ///< what else has to be known; may be empty
};

Headline headlineOf(const Answer& answer);

}  // namespace fleet::page
