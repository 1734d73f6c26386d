#include <gtest/gtest.h>

#include <utility>

#include "substitute/vorcore/inmem/InmemNamespace.h"
#include "tests/results/Events.h"
#include "tests/results/FinishedRun.h"
#include "tests/support/Outcome.h"

namespace support {
namespace {

using Access = DiagsRunnerAccess;

const std::string kEntering = trace("Entering DiagsRunner::SimpleResults");
const Events kNoResult = {trace("DiagsRunner::SimpleResults - Returning: No extended results"),
                          trace("Exiting DiagsRunner::SimpleResults")};
const Events kNoInstance =
    joined({{trace("DiagsRunner::SimpleResults  - No Valid Instance Found")}, kNoResult});

TEST(SimpleResults, GivesTheVerdictInBracketsAndLogsNoExit) {
  FinishedRun run;
  run.addOwnRecord("OK");
  EXPECT_EQ(run.simple(), "(Pass)");
  EXPECT_EQ(run.journal.all(), text(joined({{kEntering, recordClassCall("host", "{nspID=\"cmpi\"}"),
                                             recordEnumeration("{}")},
                                            selectionRead("record1"),
                                            renderingRead("record1", "CompletionState")})));
}

TEST(SimpleResults, AsksTheFamilyOfTheTest) {
  FinishedRun run;
  run.addOwnRecord("OK");
  run.setListed(run.id, "pegasus");
  EXPECT_EQ(run.simple(), "(Pass)");
  EXPECT_EQ(run.journal.countOf(recordClassCall("host", "{nspID=\"pegasus\"}")), 1);
}

TEST(SimpleResults, AWarningIsAPassForTheDiagServiceFamilyAlone) {
  for (const auto& [name, answer] : {std::pair<std::string, std::string>{"Disk Test", "(Fail)"},
                                     {"Zel:x:diag service", "(Pass)"}}) {
    FinishedRun run(name);
    run.addOwnRecord("Warning");
    EXPECT_EQ(run.simple(), answer) << name;
  }
}

TEST(SimpleResults, AnUnknownTestIsNotRefusedAndLeavesANullEntry) {
  FinishedRun run;
  run.addRecord("Other", "record for job-9", "OK");
  run.setFinished("Other,disk0,Disk", "job-9");
  EXPECT_EQ(run.runner().SimpleResults("Other,disk0,Disk", run.hostHandle), "(Pass)");
  EXPECT_EQ(run.journal.countOf(recordClassCall("host", "{nspID=null}")), 1);
  EXPECT_EQ(describe(Access::diagNS(run.runner())),
            "{Disk Test,disk0,Disk=\"cmpi\", Other,disk0,Disk=null}");
}

TEST(SimpleResults, AnIdentifierThatCannotBeSplitHasNone) {
  FinishedRun run;
  run.setFinished("Disk Test", "job-1");
  EXPECT_EQ(run.runner().SimpleResults("Disk Test", run.hostHandle), "");
  EXPECT_EQ(run.journal.all(),
            text(joined({{kEntering, trace("DiagsRunner::SimpleResults - GetTestName Failed")},
                         kNoResult})));
}

TEST(SimpleResults, ATestThatNeverFinishedHasNoneAndNothingIsEnumerated) {
  FinishedRun run;
  run.addOwnRecord("OK");
  Access::finishedTests(run.runner()).clear();
  EXPECT_EQ(run.simple(), "");
  EXPECT_EQ(run.journal.all(), text(joined({{kEntering}, kNoInstance})));
}

TEST(SimpleResults, WithoutARecordOfTheRunThereIsNoneAndNothingIsWaitedFor) {
  FinishedRun run;
  run.addRecord("Disk Test", "record for job-2", "OK");
  EXPECT_EQ(run.simple(), "");
  EXPECT_EQ(run.journal.all(), text(joined({{kEntering, recordClassCall("host", "{nspID=\"cmpi\"}"),
                                             recordEnumeration("{}")},
                                            selectionRead("record1"),
                                            kNoInstance})));
}

TEST(SimpleResults, AnEmptyClassCountsAsOneWithoutInstances) {
  FinishedRun run;
  run.host->setEmptyClass(kCompletionRecord);
  EXPECT_EQ(run.simple(), "");
  EXPECT_EQ(run.journal.all(),
            text(joined({{kEntering, recordClassCall("host", "{nspID=\"cmpi\"}")}, kNoInstance})));
}

// Catches an exception where a run has left no record to be copied.
TEST(SimpleResults, AReportThatNothingWasCopiedToHasNone) {
  FinishedRun run;
  run.hostHandle = NZELVOR20::TInmemNamespace::make("root/report");
  EXPECT_EQ(run.simple(), "");
  EXPECT_EQ(run.journal.log(), text(joined({{kEntering}, kNoInstance})));
}

TEST(SimpleResults, TheFirstOfSeveralRecordsCounts) {
  FinishedRun run;
  run.addOwnRecord("Aborted");
  run.addOwnRecord("OK");
  EXPECT_EQ(run.simple(), "(Aborted)");
  EXPECT_EQ(run.journal.calls().find("record2"), std::string::npos);
}

TEST(SimpleResults, AnEmptyNamespaceIsNamedInTheException) {
  FinishedRun run;
  run.hostHandle.reset();
  const Outcome outcome = outcomeOf([&] { return run.simple(); });
  EXPECT_EQ(outcome.kind, Outcome::Kind::standardException);
  EXPECT_EQ(outcome.text, "diagsrunner: no namespace");
}

TEST(SimpleResults, WithoutALoggerNothingIsLoggedAndTheAnswerStays) {
  FinishedRun run;
  run.addOwnRecord("Incomplete");
  run.logger.isAbsent = true;
  EXPECT_EQ(run.simple(), "(Incomplete)");
  EXPECT_EQ(run.journal.log(), "");
}

TEST(SimpleResults, WritesNothingIntoTheRecord) {
  FinishedRun run("BRCM test");
  run.addOwnRecord("OK", "data");
  EXPECT_EQ(run.simple(), "(Pass)");
  EXPECT_EQ(run.journal.calls().find("SetProperty"), std::string::npos);
  EXPECT_EQ(run.journal.calls().find("CopyInstance"), std::string::npos);
}

}  // namespace
}  // namespace support
