#pragma once

#include <string>

#include "reports/html/RunPicture.h"

namespace reports::html {

/// What the whole run comes to, for whoever reads nothing else.
struct Headline {
  std::string style;  ///< "pass", "warn", "fail" or "open"
  std::string text;   ///< in one line
  std::string lead;   ///< what has to be known besides; may be empty
};

Headline headlineOf(const RunPicture& run);

}  // namespace reports::html
