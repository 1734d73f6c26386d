#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/support/FaultSweep.h"

namespace support {

/// What an operation does about a failure: the events that follow the failed call, and the section
/// where it goes on; nowhere when it ends.
struct Recovery {
  std::vector<std::string> events;
  std::string resumeAt;
};

using Recover = std::function<Recovery(const FaultPoint&)>;

/// A part of what an operation does, within which every failing call is dealt with in one way.
struct Section {
  std::string name;
  std::vector<std::string> events;  ///< as in the journal
  Recover recover;                  ///< may be empty where no framework call is made
  std::string adds = {};            ///< what its end adds to the result
  bool isDetour = false;            ///< only entered when a failure leads to it
};

/// An operation as it should be, section by section.
using Course = std::vector<Section>;

/// What should happen in the end.
struct CourseEnd {
  std::string journal;
  std::vector<std::string> added;
  bool isWhole = false;  ///< the last section was reached
};

/// The course without a failure.
CourseEnd faultlessEnd(const Course& course);

/// The course with the failure of `point`. Throws `std::logic_error` when the course has no such
/// call, or another one at that place.
CourseEnd endAfter(const Course& course, const FaultPoint& point);

}  // namespace support
