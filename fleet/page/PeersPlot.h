#pragma once

#include <string>

#include "fleet/Answer.h"

namespace fleet::page {

/// Where a value stands beside those of its peers, as a small picture: a band in which nearly all
/// of them are, their median, and the value. Empty where a number cannot be drawn.
std::string peersPlot(const Slow& slow);

}  // namespace fleet::page
