#pragma once

#include <cstdint>
#include <string>

namespace cmpinsp::broker {

/// A date and time, or an interval (DSP0004, 5.2.4): its 25 characters and what they count.
struct CimDateTime {
  std::string text;
  std::uint64_t microseconds = 0;  ///< since 1970-01-01 00:00 UTC, or the interval's length
  bool isInterval = false;
  std::int64_t instant = 0;  ///< the microseconds for comparing: of a time before 1970 below 0

  /// Reads the 25 characters; asterisks count as the least value of their field. Throws `Failure`
  /// (invalid parameter).
  static CimDateTime parse(const std::string& text);
  /// Throws `Failure` (invalid parameter) for what 25 characters cannot express.
  static CimDateTime fromBinary(std::uint64_t microseconds, bool isInterval);
  static CimDateTime now();
};

}  // namespace cmpinsp::broker
