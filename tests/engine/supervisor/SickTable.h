#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "engine/events/Event.h"
#include "host/ExitStatus.h"

/// What befalls a provider, and what comes of its test.
namespace sick {

struct Row {
  std::string sickness;  ///< "phase:kind"
  engine::Outcome outcome;
  std::optional<engine::Cause> cause;  ///< of one of the test's errors; none: it has none to have
  bool names = false;                  ///< the error names the provider and the operation
  bool hangs = false;                  ///< it ends by the test's time limit

  /// What `diags run` ends with, whose other test passes.
  host::ExitStatus status() const {
    return outcome == engine::Outcome::kPassed ? host::ExitStatus::kPassed
                                               : host::ExitStatus::kCouldNotRun;
  }
};

void PrintTo(const Row& row, std::ostream* stream);

/// What befalls it in a run.
std::vector<Row> rows();
/// What befalls it while it is loaded or asked for a listing.
std::vector<Row> listingRows();
/// What befalls it there and costs no test.
std::vector<Row> survivedListingRows();

std::string nameOf(const testing::TestParamInfo<Row>& info);

/// What only this system has, of the same.
struct Kind {
  const char* name;
  engine::Outcome outcome;
  std::optional<engine::Cause> cause;
  bool names;
};
const std::vector<Kind>& kindsOfThisSystem();
const std::vector<const char*>& listingKindsOfThisSystem();
const std::vector<const char*>& survivedKindsOfThisSystem();
/// What takes memory or has no end.
const std::vector<const char*>& endlessKindsOfThisSystem();

}  // namespace sick
