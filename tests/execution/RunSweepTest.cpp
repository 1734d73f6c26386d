#include <gtest/gtest.h>

#include "tests/execution/RunCourse.h"

/// Each framework call of a run fails in each way; each time the journal, the answer and the
/// runner's tables are as the course says, and no handle is kept.
namespace support {
namespace {

using Access = DiagsRunnerAccess;

bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

struct NamedPlan {
  const char* name;
  RunPlan plan;
};

std::ostream& operator<<(std::ostream& stream, const NamedPlan& named) {
  return stream << named.name;
}

RunPlan planned(void (*change)(RunPlan&)) {
  RunPlan plan;
  change(plan);
  return plan;
}

void makeBRCM(RunPlan& plan) {
  plan.testName = "BRCM Test";
  plan.isSlow = true;
  plan.isVendor = true;
}

void makeFamily(RunPlan& plan) {
  plan.testName = "ZEL:ssd:diag service";
  plan.isAssociated = true;
  plan.isVendor = true;
  plan.isFamily = true;
}

const NamedPlan kPlans[] = {
    {"Searched", planned([](RunPlan&) {})},
    {"Indexed", planned([](RunPlan& plan) { plan.isIndexed = true; })},
    {"SearchedByUpcall", planned([](RunPlan& plan) { plan.isByUpcall = true; })},
    {"IndexedByUpcall", planned([](RunPlan& plan) { plan.isByUpcall = plan.isIndexed = true; })},
    {"Fallback", planned([](RunPlan& plan) { plan.isFallback = true; })},
    {"Pegasus", planned([](RunPlan& plan) { plan.family = "pegasus"; })},
    {"SlowVendor", planned(makeBRCM)},
    {"Associated", planned(makeFamily)},
    {"AssociatedFallback", planned([](RunPlan& plan) {
       makeFamily(plan);
       plan.isFallback = true;
     })}};

/// The entry of the former run stays until the job is over, goes with a test that is gone, and is
/// replaced before the results are asked for.
Access::Texts finishedAfter(const RunPlan& plan, const FaultPoint& point, const Outcome& outcome,
                            const std::string& id) {
  if (contains(outcome.log, "Entering DiagsRunner::ImmediateResults")) {
    const bool lostAssociation =
        contains(point.callText, "GetClass(\"CIM_RecordAppliesToElement\"");
    if (plan.isAssociated && !lostAssociation) {
      return {{id, "rec-1"}};
    }
    return {{id, "job-1"}};
  }
  const bool isErased = contains(outcome.log, "erased test from") ||
                        contains(outcome.calls, "CIM_RecordAppliesToElement");
  return isErased ? Access::Texts{} : Access::Texts{{id, "job-0"}};
}

class RunSweep : public testing::TestWithParam<NamedPlan> {
 protected:
  const RunPlan& plan = GetParam().plan;
  std::unique_ptr<PlannedWorld> makeWorld() const { return std::make_unique<PlannedWorld>(plan); }
};

TEST_P(RunSweep, HandleConcreteGoesItsCourse) {
  sweepAlong(
      handleConcreteCourse(plan), [&] { return makeWorld(); },
      [](PlannedWorld& world) { return world.handleConcrete(); },
      [&](const FaultPoint& point, const Outcome& outcome, PlannedWorld& world) {
        EXPECT_EQ(Access::finishedTests(world.runner()),
                  finishedAfter(plan, point, outcome, world.test.id));
      });
}

TEST_P(RunSweep, ExecuteGoesItsCourse) {
  sweepAlong(
      executeCourse(plan), [&] { return makeWorld(); },
      [](PlannedWorld& world) { return world.execute(); },
      [&](const FaultPoint& point, const Outcome& outcome, PlannedWorld& world) {
        DiagsRunner& runner = world.runner();
        const bool isFound = contains(outcome.calls, "InvokeMethod");
        EXPECT_EQ(Access::finishedTests(runner),
                  finishedAfter(plan, point, outcome, world.test.id));
        EXPECT_EQ(Access::testIndex(runner).count(world.test.id),
                  plan.isIndexed || isFound ? 1U : 0U);
        EXPECT_EQ(describe(Access::runService(runner)), isFound ? "inst service2" : "inst (empty)");
        EXPECT_FALSE(Access::runFinished(runner).isSet()) << "a display that waits would end";
      });
}

INSTANTIATE_TEST_SUITE_P(Plans, RunSweep, testing::ValuesIn(kPlans),
                         [](const testing::TestParamInfo<NamedPlan>& row) {
                           return std::string(row.param.name);
                         });

}  // namespace
}  // namespace support
