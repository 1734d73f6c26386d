#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "tests/support/Fault.h"
#include "tests/support/LiveObject.h"
#include "tests/support/Outcome.h"
#include "tests/support/World.h"

namespace support {

/// Where a sweep let an operation fail.
struct FaultPoint {
  int call;  ///< counted from 1
  std::string callText;
  Fault fault;
};

/// For failure messages: `call 3, class CIM_X.GetName(): vor exception`.
std::string describe(const FaultPoint& point);

/// What a sweep went through.
struct SweepResult {
  int calls = 0;   ///< how many calls the operation makes when none fails
  int points = 0;  ///< how many failures were checked
  Outcome faultless;
};

/// Fails a test when scripted objects have outlived their world.
void expectNothingAlive(const FaultPoint& point);
/// Ends a sweep of an operation that makes more calls each time, by `std::logic_error`.
void checkSweepLength(int call);

/// Runs `operation(world)`, which returns text, again and again, each time in a fresh world
/// (`makeWorld()`, a unique pointer), failing its first, second, third ... framework call in each
/// of the four ways, until it runs through. After each failure calls `check(point, outcome,
/// world)`. An empty handle is tried only where the call returns a handle. Nothing may be alive
/// after a world is gone.
template <typename MakeWorld, typename Operation, typename Check>
SweepResult faultSweep(MakeWorld makeWorld, Operation operation, Check check,
                       Counting counting = Counting::framework) {
  SweepResult result;
  for (int call = 1;; ++call) {
    checkSweepLength(call);
    for (const Fault fault : kEveryFault) {
      FaultPoint point{call, std::string(), fault};
      {
        auto world = makeWorld();
        world->journal.clear();
        world->script.failCall(call, fault, counting);
        const Outcome outcome = outcomeOf([&] { return operation(*world); });
        if (!world->script.reached()) {
          result.calls = call - 1;
          result.faultless = outcome;
          return result;
        }
        point.callText = world->script.reachedText();
        if (!world->script.notApplicable()) {
          SCOPED_TRACE(describe(point));
          check(point, outcome, *world);
          ++result.points;
        }
      }
      expectNothingAlive(point);
    }
  }
}

}  // namespace support
