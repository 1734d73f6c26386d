#pragma once

#include <string>

#include "tests/results/CourseSweep.h"

namespace support {

/// Adds the four tests that `label` passes as the record of the run. A null where one is asked
/// about goes on at `next`; every other failure is dealt with by `recover`.
void addSelection(Course& course, const std::string& label, const std::string& next,
                  const Recover& recover);

/// What `ImmediateResults` finds, and what it makes of it.
struct ImmediateRun {
  std::string testID;
  std::string options;       ///< of the class lookup
  std::string state = "OK";  ///< of `record1`, which is there at once
  std::string verdict = "Pass";
  bool isFamily = false;  ///< its state is logged, and its vendor's key replaced
  bool isVendor = false;
  std::string loweredState = "ok";
  std::string loweredName = {};  ///< of a vendor's test
  std::string newData = {};      ///< what a vendor's record has for its data in the end
};

/// Adds the course of `ImmediateResults`, from section "results" to the answer, and the detours
/// behind it.
void addImmediateResults(Course& course, const ImmediateRun& run);

}  // namespace support
