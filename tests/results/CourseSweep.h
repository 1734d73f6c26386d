#pragma once

#include <string>

#include "tests/results/Events.h"
#include "tests/support/Course.h"
#include "tests/support/FaultSweep.h"

namespace support {

/// Leaves a failure to the caller of the operation.
Recovery passOn(const FaultPoint& point);

/// A failure that passes on, and for an empty handle one that goes on at `section`.
Recover emptyGoesOnAt(const std::string& section, const Recover& otherwise = passOn);

/// A section that only a failure leads to.
Section detour(const std::string& name, const Events& events, const std::string& adds = {});

/// The operation ended as its course says for the failure: the whole journal, and the text that was
/// returned or the exception that left it.
void expectCourse(const Course& course, const FaultPoint& point, const Outcome& outcome);

/// The same without a failure.
void expectCourse(const Course& course, const Outcome& outcome);

/// Sweeps `operation` along its course. `check(point, outcome, world)` looks at what else there is.
template <typename MakeWorld, typename Operation, typename Check>
void sweepAlong(const Course& course, MakeWorld makeWorld, Operation operation, Check check) {
  const SweepResult swept = faultSweep(
      makeWorld, operation, [&](const FaultPoint& point, const Outcome& outcome, auto& world) {
        expectCourse(course, point, outcome);
        check(point, outcome, world);
      });
  expectCourse(course, swept.faultless);
  EXPECT_GE(swept.points, 3 * swept.calls);
}

}  // namespace support
