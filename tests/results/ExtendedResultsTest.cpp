#include <gtest/gtest.h>

#include "substitute/vorcore/inmem/InmemNamespace.h"
#include "tests/results/Events.h"
#include "tests/results/FinishedRun.h"
#include "tests/support/Outcome.h"

namespace support {
namespace {

using Access = DiagsRunnerAccess;
using NZELVOR20::TCIMValue;

const char kNone[] = "No extended results.\n";
const std::string kEntering = trace("Entering DiagsRunner::ExtendedResults");
const Events kNoResult = {trace("DiagsRunner::ExtendedResults - Returning: No extended results"),
                          trace("Exiting DiagsRunner::ExtendedResults")};
const Events kNoInstance =
    joined({{trace("DiagsRunner::ExtendedResults  - No Valid Instance Found")}, kNoResult});
/// Unlike the other levels, this one enumerates with the family of the test.
const Events kLookup = {recordClassCall("host", "{nspID=\"cmpi\"}"),
                        recordEnumeration("{nspID=\"cmpi\"}")};

TEST(ExtendedResults, AreTheRenderedDataOfTheRecord) {
  FinishedRun run;
  run.addOwnRecord("OK")->set("RecordData", TCIMValue("value"), "rendered\ndata");
  EXPECT_EQ(run.extended(), "rendered\ndata");
  EXPECT_EQ(run.journal.all(), text(joined({{kEntering},
                                            kLookup,
                                            selectionRead("record1"),
                                            renderingRead("record1", "RecordData")})));
}

TEST(ExtendedResults, AnUnknownTestIsRefusedAndNoEntryIsMade) {
  FinishedRun run;
  EXPECT_EQ(run.runner().ExtendedResults("Other,a,b", run.hostHandle),
            "testID is not found in m_diagNS.\n");
  EXPECT_EQ(
      run.journal.all(),
      lines({kEntering, trace("DiagsRunner::ExtendedResults testID is not found in m_diagNS")}));
  EXPECT_EQ(Access::diagNS(run.runner()).size(), 1U);
}

TEST(ExtendedResults, AnIdentifierThatCannotBeSplitHasNone) {
  FinishedRun run;
  run.setListed("Disk Test,disk0");
  EXPECT_EQ(run.runner().ExtendedResults("Disk Test,disk0", run.hostHandle), kNone);
  EXPECT_EQ(run.journal.all(),
            text(joined({{kEntering, trace("DiagsRunner::ExtendedResults - GetTestName Failed")},
                         kNoResult})));
}

TEST(ExtendedResults, ATestThatNeverFinishedHasNoneAndTheNamespaceIsNotAsked) {
  FinishedRun run;
  run.addOwnRecord("OK", "data");
  Access::finishedTests(run.runner()).clear();
  EXPECT_EQ(run.extended(), kNone);
  EXPECT_EQ(run.journal.all(), text(joined({{kEntering}, kNoInstance})));
}

TEST(ExtendedResults, WithoutARecordOfTheRunThereIsNone) {
  FinishedRun run;
  run.theClass(kCompletionRecord);
  EXPECT_EQ(run.extended(), kNone);
  EXPECT_EQ(run.journal.all(), text(joined({{kEntering}, kLookup, kNoInstance})));
}

TEST(ExtendedResults, AnEmptyClassCountsAsOneWithoutInstances) {
  FinishedRun run;
  run.host->setEmptyClass(kCompletionRecord);
  EXPECT_EQ(run.extended(), kNone);
  EXPECT_EQ(run.journal.all(), text(joined({{kEntering, kLookup[0]}, kNoInstance})));
}

TEST(ExtendedResults, ARecordWithoutAnElementNameIsSkipped) {
  FinishedRun run;
  run.addOwnRecord("OK", "first")->set("ManagedElementName", TCIMValue());
  run.addOwnRecord("OK", "second");
  EXPECT_EQ(run.extended(), "second");
}

// Catches an exception where a run has left no record to be copied.
TEST(ExtendedResults, AReportThatNothingWasCopiedToHasNone) {
  FinishedRun run;
  run.hostHandle = NZELVOR20::TInmemNamespace::make("root/report");
  EXPECT_EQ(run.extended(), "No extended results.\n");
  EXPECT_EQ(run.journal.log(), text(joined({{kEntering}, kNoInstance})));
}

TEST(ExtendedResults, TheFirstOfSeveralRecordsCounts) {
  FinishedRun run;
  run.addOwnRecord("OK", "first");
  run.addOwnRecord("OK", "second");
  EXPECT_EQ(run.extended(), "first");
}

TEST(ExtendedResults, ARecordWithoutDataEndsTheSearchWithItsEmptyText) {
  for (const TCIMValue& data : {TCIMValue(""), TCIMValue()}) {
    FinishedRun run;
    run.addOwnRecord("OK")->set("RecordData", data);
    run.addOwnRecord("OK", "second");
    EXPECT_EQ(run.extended(), "");
    EXPECT_EQ(run.journal.log(), lines({kEntering}));
  }
}

TEST(ExtendedResults, AnEmptyNamespaceOrPropertyIsNamedInTheException) {
  FinishedRun run;
  run.addOwnRecord("OK")->setEmpty("RecordData");
  EXPECT_EQ(outcomeOf([&] { return run.extended(); }).text, "diagsrunner: no property RecordData");
  run.hostHandle.reset();
  EXPECT_EQ(outcomeOf([&] { return run.extended(); }).text, "diagsrunner: no namespace");
}

TEST(ExtendedResults, WithoutALoggerTheAnswersStay) {
  FinishedRun run;
  run.logger.isAbsent = true;
  run.theClass(kCompletionRecord);
  EXPECT_EQ(run.extended(), kNone);
  EXPECT_EQ(run.journal.log(), "");
}

}  // namespace
}  // namespace support
