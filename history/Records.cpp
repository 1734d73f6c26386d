#include "history/Records.h"

#include <algorithm>

namespace history {
namespace {

bool areSame(const Measured& one, const Measured& other) {
  return one.mean == other.mean && one.text == other.text;
}

}  // namespace

bool MeasurementDifference::isSame() const { return before && after && areSame(*before, *after); }

bool TestDifference::hasSameVerdict() const {
  return before && after && before->worst == after->worst;
}

bool TestDifference::isSame() const {
  return hasSameVerdict() &&
         std::all_of(measurements.begin(), measurements.end(),
                     [](const MeasurementDifference& each) { return each.isSame(); });
}

}  // namespace history
