#pragma once

#include <string>

#include "reports/html/Series.h"
#include "reports/html/Timeline.h"

/// Small pictures for a page, as SVG. What a picture shows stands in its title too, for those who
/// do not see it.
namespace reports::html {

/// One value between its limits, or several in their order with their limits; empty where no value
/// is a number, or there is one alone and no limit.
std::string plot(const Series& series);

/// The bars of a row between the times of the run.
std::string bars(const Timeline::Row& row, engine::Time from, engine::Time to);

/// "1 to 2 MB/s", "at least 1 MB/s", "at most 2 MB/s", or empty.
std::string limitsText(const engine::Measurement& measurement);

}  // namespace reports::html
