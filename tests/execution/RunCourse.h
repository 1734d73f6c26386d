#pragma once

#include <string>

#include "tests/execution/JobCourse.h"
#include "tests/support/WithRunner.h"

namespace support {

/// The world of the plan: another test, the one to run, its job and its record. It has been run
/// before.
class PlannedWorld : public WithRunner<> {
 public:
  explicit PlannedWorld(const RunPlan& plan);

  std::string execute() { return runner().Execute(test.id, "", hostHandle); }
  std::string handleConcrete();

  const ScriptedTest other;
  const ScriptedTest test;
  const NZELVOR20::TCIMReference job;
};

/// The course of `HandleConcrete` on such a world.
Course handleConcreteCourse(const RunPlan& plan);
/// The course of `Execute`.
Course executeCourse(const RunPlan& plan);

}  // namespace support
