#pragma once

#include <iosfwd>

#include "reports/html/RunPicture.h"

namespace reports::html {

/// The whole page.
void writePage(std::ostream& out, const RunPicture& run);

}  // namespace reports::html
