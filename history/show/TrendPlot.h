#pragma once

#include <cstddef>
#include <ostream>

#include "history/Records.h"

namespace history {

struct PlotOptions {
  std::size_t columns = 72;  ///< of the terminal
  std::size_t lines = 8;     ///< of the plot itself
  bool usesBraille = true;   ///< eight points in a character; else plain ASCII
};

/// Draws the series for a terminal: what was measured, a curve between the values on its left, with
/// its limits as dashed lines, and the first and the last run below. Harmless to a terminal; throws
/// what the stream throws.
void writePlot(std::ostream& stream, const Trend& trend, const PlotOptions& options = {});

}  // namespace history
