#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "history/Records.h"

namespace history {

/// The series as a drawing in SVG that can stand within a page: it takes the page's colour of text,
/// and has its values as texts that show on pointing. Nothing of it is markup but its own.
std::string svgOf(const Trend& trend);

/// A figure for each of the series, with what it shows above it: a piece of a page in HTML, without
/// a head of its own. Throws what the stream throws.
void writeFigures(std::ostream& stream, const std::vector<Trend>& trends);

/// A whole page of them, for tests of that name; it loads nothing.
void writeTrendPage(std::ostream& stream, const std::string& name,
                    const std::vector<Trend>& trends);

}  // namespace history
