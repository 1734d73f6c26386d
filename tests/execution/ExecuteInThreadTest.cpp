#include <gtest/gtest.h>

#include "tests/support/Outcome.h"
#include "tests/support/WithRunner.h"

namespace support {
namespace {

using Access = DiagsRunnerAccess;
using NZELVOR20::TCIMValue;

class ExecuteInThread : public testing::Test {
 protected:
  ExecuteInThread() {
    runner.Execute(machine.memory.id, "", machine.hostHandle);
    machine.journal.clear();
  }

  WithRunner<Machine> machine;
  DiagsRunner& runner = machine.listed();
};

TEST_F(ExecuteInThread, InvokesTheMethodWithTheParametersAsTheRunLeftThem) {
  EXPECT_EQ(DiagsRunner::ExecuteInThread(nullptr), nullptr);
  EXPECT_EQ(machine.journal.all(),
            lines({"inst service1.InvokeMethod(\"RunDiagnostic\", "
                   "{Job=root/cimv2:CIM_ConcreteJob.InstanceID=\"job-mem\"}, {})"}));
  EXPECT_TRUE(Access::runFinished(runner).isSet());
}

TEST_F(ExecuteInThread, DoesNotReadItsArgument) {
  int argument = 7;
  EXPECT_EQ(DiagsRunner::ExecuteInThread(&argument), nullptr);
  EXPECT_EQ(argument, 7);
  EXPECT_TRUE(Access::runFinished(runner).isSet());
}

TEST_F(ExecuteInThread, TheOutputParametersLandInThoseOfTheRun) {
  machine.memory.service->setMethodOutput("RunDiagnostic", {{"Out", TCIMValue("put")}});
  DiagsRunner::ExecuteInThread(nullptr);
  EXPECT_EQ(describe(Access::runParams(runner)), "{Out=\"put\"}");
}

TEST_F(ExecuteInThread, TheFlagIsRaisedAfterTheMethod) {
  bool isUp = true;
  machine.script.onCall("InvokeMethod", [&] { isUp = Access::runFinished(runner).isSet(); });
  DiagsRunner::ExecuteInThread(nullptr);
  EXPECT_FALSE(isUp);
}

TEST_F(ExecuteInThread, TheNextRunLowersTheFlag) {
  DiagsRunner::ExecuteInThread(nullptr);
  runner.Execute(machine.processor.id, "", machine.hostHandle);
  EXPECT_FALSE(Access::runFinished(runner).isSet());
}

TEST_F(ExecuteInThread, AnExceptionPassesAndLeavesTheFlagDown) {
  for (const Fault fault : {Fault::vorException, Fault::standardException, Fault::otherException}) {
    machine.script.failOn("InvokeMethod", fault);
    const Outcome outcome = outcomeOf([] {
      DiagsRunner::ExecuteInThread(nullptr);
      return std::string();
    });
    EXPECT_FALSE(outcome.returned()) << nameOf(fault);
    EXPECT_FALSE(Access::runFinished(runner).isSet()) << nameOf(fault);
  }
}

TEST(ExecuteInThreadAlone, WithoutARunnerDoesNothing) {
  World world;
  DiagsRunnerAccess::forgetRunner();
  EXPECT_EQ(DiagsRunner::ExecuteInThread(nullptr), nullptr);
  EXPECT_EQ(world.journal.all(), "");
}

TEST(ExecuteInThreadAlone, AfterTheReleaseOfTheRunnerDoesNothing) {
  WithRunner<Machine> machine;
  machine.listed().Execute(machine.memory.id, "", machine.hostHandle);
  DiagsRunner::FreeDiagsRunner();
  machine.journal.clear();
  EXPECT_EQ(DiagsRunner::ExecuteInThread(nullptr), nullptr);
  EXPECT_EQ(machine.journal.all(), "");
}

TEST(ExecuteInThreadAlone, BeforeAnyRunTheMissingServiceIsNamedInTheException) {
  WithRunner<> world;
  world.runner();
  const Outcome outcome = outcomeOf([] {
    DiagsRunner::ExecuteInThread(nullptr);
    return std::string();
  });
  EXPECT_EQ(outcome.kind, Outcome::Kind::standardException);
  EXPECT_EQ(outcome.text, "diagsrunner: no CMPI instance of the diagnostic service");
  EXPECT_FALSE(Access::runFinished(world.runner()).isSet());
}

}  // namespace
}  // namespace support
