#include <gtest/gtest.h>

#include <memory>

#include "tests/support/FaultSweep.h"
#include "tests/support/WithRunner.h"

namespace support {
namespace {

using Access = DiagsRunnerAccess;

TEST(WithRunner, TheRunnerIsBuiltOnTheRootNamespaceAndNotInTheJournal) {
  WithRunner<> world;
  EXPECT_EQ(Access::theNamespace(world.runner()), world.root->handle());
  EXPECT_EQ(Access::biosID(world.runner()), "abe1xx");
  EXPECT_EQ(world.journal.all(), "");
}

TEST(WithRunner, EachWorldHasARunnerOfItsOwn) {
  for (const char* biosID : {"first", "second"}) {
    WithRunner<> world;
    world.os.biosID = biosID;
    EXPECT_EQ(Access::biosID(world.runner()), biosID);
  }
}

TEST(WithRunner, TheTestsOfAMachineAreListed) {
  WithRunner<Machine> machine;
  EXPECT_EQ(machine.runner().EnumerateDiagTests(""),
            machine.memory.id + "|" + machine.processor.id + "|");
}

TEST(WithRunner, TheTestsOfAMachineRunThrough) {
  WithRunner<Machine> machine;
  EXPECT_EQ(machine.listed().Execute(machine.memory.id, "", machine.hostHandle), "Pass");
  EXPECT_EQ(machine.platform.sleptMilliseconds() % 5000, 0U);
  EXPECT_EQ(machine.runner().ExtendedResults(machine.memory.id, machine.hostHandle),
            machine.memoryRecord->value("RecordData").ToText());
}

TEST(WithRunner, TablesCanBeFilledWithoutAQuery) {
  WithRunner<Machine> machine;
  machine.setListed(machine.memory.id, "pegasus");
  machine.setFinished(machine.memory.id, "job-mem");
  EXPECT_EQ(describe(Access::diagNS(machine.runner())), "{" + machine.memory.id + "=\"pegasus\"}");
  EXPECT_EQ(machine.runner().SimpleResults(machine.memory.id, machine.hostHandle), "(Pass)");
}

TEST(WithRunner, AReadingOfTheClockCanRaiseTheFlag) {
  WithRunner<> world;
  DiagsRunner& runner = world.runner();
  world.platform.setReadings({0, 42, 42});
  world.platform.atReading(3, [&] { Access::runFinished(runner).set(true); });
  runner.printStatus(1);
  EXPECT_EQ(world.platform.readings(), 3);
  EXPECT_EQ(world.platform.sleptMilliseconds(), 3000U);
}

TEST(WithRunner, ASweepReleasesTheRunnerWithItsWorld) {
  const auto makeMachine = [] {
    auto machine = std::make_unique<WithRunner<Machine>>();
    machine->listed();
    machine->setFinished(machine->memory.id, "job-mem");
    return machine;
  };
  const SweepResult result = faultSweep(
      makeMachine,
      [](WithRunner<Machine>& machine) {
        return machine.runner().SimpleResults(machine.memory.id, machine.hostHandle);
      },
      [](const FaultPoint& point, const Outcome& outcome, WithRunner<Machine>&) {
        if (point.fault == Fault::standardException) {
          EXPECT_EQ(outcome.text, kScriptedFailure);
        }
      });
  EXPECT_GE(result.calls, 2);
  EXPECT_EQ(result.faultless.text, "(Pass)");
}

}  // namespace
}  // namespace support
