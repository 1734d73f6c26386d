#pragma once

#include <string>
#include <string_view>

namespace reports {

/// The unit of a metric, which has to be a base unit, and how a value gets there:
/// `(value + shift) * times / over`.
struct BaseUnit {
  std::string
      suffix;  ///< of the metric's name, "bytes_per_second"; empty where it is no known unit
  double shift = 0;
  double times = 1;
  double over = 1;

  double of(double value) const { return (value + shift) * times / over; }
};

/// For a unit as people write it: "GiB/s", "ms", "degree C", "%". What is not known has no suffix,
/// and values stay as they are.
BaseUnit baseUnitOf(std::string_view unit);

}  // namespace reports
