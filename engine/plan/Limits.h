#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engine/events/Event.h"
#include "engine/plan/Plan.h"

namespace engine {

enum class Compliance : std::uint8_t {
  kUnlimited,  ///< nothing is asked of it
  kInside,
  kBelow,
  kAbove,
  kNoNumber  ///< a number is asked for, and this is none
};

struct CheckedMeasurement {
  Measurement measurement;  ///< with the limits that hold
  Compliance compliance = Compliance::kUnlimited;
};

/// The measurement with the limits of the plan in place of its own, bound by bound. Of several that
/// are about it each bound is taken from the last that has one. Bounds belong to what is all right.
/// NaN keeps to no bounds, a text or true or false not to the plan's; those that it brought along
/// itself ask nothing of it.
CheckedMeasurement checked(Measurement measurement, const std::vector<Limit>& limits);

/// Whether the verdict of the test suffers.
constexpr bool isOutside(Compliance compliance) noexcept {
  return compliance != Compliance::kUnlimited && compliance != Compliance::kInside;
}

/// The limits that are about none of the measurements of these names: what they watch was not
/// measured.
std::vector<Limit> unmetLimits(const std::vector<Limit>& limits,
                               const std::vector<std::string>& measured);

/// "memory bandwidth 3.2 GiB/s is below 5 GiB/s", for a measurement that is outside; empty
/// otherwise.
std::string complaintAbout(const CheckedMeasurement& checked);

}  // namespace engine
