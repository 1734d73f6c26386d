#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engine/events/Event.h"

namespace engine::worker {

/// What a record of results says.
struct RecordReading {
  std::vector<Measurement> measurements;  ///< in the order of their declarations
  std::string error;  ///< why there are none though a format was given; names the place
};

/// Reads RecordFormat and RecordData. The format's first character is the delimiter; behind each
/// delimiter stands a declaration, `type name` or `type name[]`. The data begin with the same
/// delimiter and have a value for each declaration, in that order; one that is empty or missing at
/// the end is null, and gives no measurement.
///
/// Beside `real64 Speed`, the declarations `string SpeedUnits`, and `real64 SpeedMinimum` and
/// `real64 SpeedMaximum` of any numeric type, are its unit and its limits; `string Part` is what
/// all of them were measured on. Names are compared without case.
///
/// An empty format is that of free text: no measurement and no error.
RecordReading readMeasurements(std::string_view format, std::string_view data);

}  // namespace engine::worker
