#include <gtest/gtest.h>

#include "tests/results/Events.h"
#include "tests/results/FinishedRun.h"
#include "tests/support/Outcome.h"

namespace support {
namespace {

using Access = DiagsRunnerAccess;

const char kNoResults[] = "No Results.\n";
const std::string kReturning =
    trace("DiagsRunner::ImmediateResults - Returning: No extended results");
const Events kNoInstance = {trace("DiagsRunner::ImmediateResults  - No Valid Instance Found"),
                            kReturning};

Events entered(const std::string& id) {
  return {trace("Entering DiagsRunner::ImmediateResults, testID is: " + id),
          trace("testID in ImmediateResults:" + id)};
}

/// A vendor's test with a record, "former", and a message for "ok".
class VendorRun : public FinishedRun {
 public:
  VendorRun() : FinishedRun("BRCM Test"), record(addOwnRecord("OK", "former")) {
    Access::vendorMessages(runner()).emplace(
        "brcm test", VendorMessageRecord{"brcm test", "0x1", "ok", {"Fine."}, {}});
  }

  InstancePtr record;
};

TEST(ImmediateResults, FindTheRecordInTheRunnersNamespaceAndCopyItToTheHosts) {
  FinishedRun run;
  run.addOwnRecord("OK", "data");
  EXPECT_EQ(run.immediate(), "Pass");
  EXPECT_EQ(run.journal.all(),
            text(joined({entered(run.id),
                         {recordClassCall("root", "{nspID=\"cmpi\"}"), recordEnumeration("{}")},
                         valueRead("record1", "ServiceName"),
                         selectionRead("record1"),
                         renderingRead("record1", "CompletionState"),
                         {"TCIMCopy.CopyInstance(inst record1, ns host)"}})));
}

TEST(ImmediateResults, AVendorsTestIsExplainedBeforeItIsCopied) {
  VendorRun run;
  EXPECT_EQ(run.immediate(), "Pass");
  EXPECT_EQ(run.journal.all(),
            text(joined({entered(run.id),
                         {recordClassCall("root", "{nspID=\"cmpi\"}"), recordEnumeration("{}")},
                         valueRead("record1", "ServiceName"),
                         selectionRead("record1"),
                         renderingRead("record1", "CompletionState"),
                         renderingRead("record1", "CompletionState"),
                         {trace("testName :brcm test")},
                         renderingRead("record1", "RecordData"),
                         {"inst record1.SetProperty(\"RecordData\", \"0x1 : Fine.\\nformer\", {})",
                          "TCIMCopy.CopyInstance(inst record1, ns host)"}})));
}

TEST(ImmediateResults, TheDiagServiceFamilyLogsVerdictAndLookup) {
  FinishedRun run("ZEL:ssd:diag service");
  run.addOwnRecord("Warning", "former");
  EXPECT_EQ(run.immediate(), "Pass");
  EXPECT_EQ(run.journal.log(),
            text(joined({entered(run.id),
                         {trace("tempResult :Warning"), trace("testName :zel:ssd:diag service"),
                          trace("update test name for :fusion-io:diag service"),
                          trace("testStatus :warning")}})));
}

TEST(ImmediateResults, AFamilyNameInAnotherCaseHasAVerdictButNoExplanation) {
  FinishedRun run("zel:ssd:diag service");
  run.addOwnRecord("Warning", "former");
  EXPECT_EQ(run.immediate(), "Pass");
  EXPECT_EQ(run.journal.calls().find("SetProperty"), std::string::npos);
}

TEST(ImmediateResults, TheVendorIsSoughtInTheWholeIdentifier) {
  FinishedRun run("Link Test", "BRCM0");
  run.addOwnRecord("Aborted", "former");
  EXPECT_EQ(run.immediate(), "Aborted");
  EXPECT_EQ(run.journal.countOf("inst record1.SetProperty(\"RecordData\", \"former\", {})"), 1);
}

TEST(ImmediateResults, ThePlainTestsRecordIsLeftAsItIs) {
  FinishedRun run;
  run.addOwnRecord("OK", "former");
  Access::vendorMessages(run.runner())
      .emplace("disk test", VendorMessageRecord{"", "1", "ok", {}, {}});
  EXPECT_EQ(run.immediate(), "Pass");
  EXPECT_EQ(run.journal.calls().find("SetProperty"), std::string::npos);
}

TEST(ImmediateResults, EachVerdictIsABareWord) {
  for (const auto& [state, word] : {std::pair<const char*, const char*>{"OK", "Pass"},
                                    {"Aborted", "Aborted"},
                                    {"Incomplete", "Incomplete"},
                                    {"Warning", "Fail"}}) {
    FinishedRun run;
    run.addOwnRecord(state);
    EXPECT_EQ(run.immediate(), word) << state;
  }
}

TEST(ImmediateResults, AnUnknownTestIsRefusedAndNoEntryIsMade) {
  FinishedRun run;
  EXPECT_EQ(run.runner().ImmediateResults("Other,a,b", run.hostHandle), kNoResults);
  EXPECT_EQ(run.journal.all(),
            lines({trace("Entering DiagsRunner::ImmediateResults, testID is: Other,a,b"),
                   trace("DiagsRunner::ImmediateResults testID is not found in m_diagNS")}));
  EXPECT_EQ(Access::diagNS(run.runner()).size(), 1U);
}

TEST(ImmediateResults, AnIdentifierThatCannotBeSplitHasNone) {
  FinishedRun run;
  run.setListed("Disk Test");
  EXPECT_EQ(run.runner().ImmediateResults("Disk Test", run.hostHandle), kNoResults);
  EXPECT_EQ(
      run.journal.all(),
      text(joined({entered("Disk Test"),
                   {trace("DiagsRunner::ImmediateResults - GetTestName Failed"), kReturning}})));
}

TEST(ImmediateResults, ATestThatNeverFinishedHasNoneWithoutAWord) {
  FinishedRun run;
  run.addOwnRecord("OK");
  Access::finishedTests(run.runner()).clear();
  EXPECT_EQ(run.immediate(), kNoResults);
  EXPECT_EQ(run.journal.all(), text(entered(run.id)));
}

TEST(ImmediateResults, ATapeDriveTestIsLikeAnyOther) {
  FinishedRun run("Tape Drive Test");
  run.addOwnRecord("OK");
  EXPECT_EQ(run.immediate(), "Pass");
  EXPECT_EQ(run.journal.log(), text(entered(run.id)));
}

TEST(ImmediateResults, AnEmptyClassIsNotWaitedFor) {
  FinishedRun run;
  run.root->setEmptyClass(kCompletionRecord);
  EXPECT_EQ(run.immediate(), kNoResults);
  EXPECT_EQ(
      run.journal.all(),
      text(joined({entered(run.id), {recordClassCall("root", "{nspID=\"cmpi\"}")}, kNoInstance})));
}

TEST(ImmediateResults, ARecordIsFoundUpToTheEleventhEnumeration) {
  for (int appearsAt = 1; appearsAt <= 12; ++appearsAt) {
    FinishedRun run;
    run.addOwnRecord("OK", "", appearsAt);
    EXPECT_EQ(run.immediate(), appearsAt <= 11 ? "Pass" : kNoResults) << appearsAt;
    const unsigned int sleeps = static_cast<unsigned int>(appearsAt < 11 ? appearsAt - 1 : 10);
    EXPECT_EQ(run.platform.sleptMilliseconds(), 5000U * sleeps) << appearsAt;
  }
}

TEST(ImmediateResults, WithoutARecordFiftySecondsAreWaited) {
  FinishedRun run;
  run.theClass(kCompletionRecord);
  EXPECT_EQ(run.immediate(), kNoResults);
  Events wanted = joined(
      {entered(run.id), {recordClassCall("root", "{nspID=\"cmpi\"}"), recordEnumeration("{}")}});
  for (int i = 0; i < 10; ++i) {
    wanted = joined({wanted, {recordEnumeration("{}"), sleptFor(5000)}});
  }
  EXPECT_EQ(run.journal.all(), text(joined({wanted, kNoInstance})));
}

TEST(ImmediateResults, ARecordOfAnEarlierRunEndsTheWaitWithoutAResult) {
  FinishedRun run;
  run.addRecord(run.testName, "record for job-0", "OK");
  run.addOwnRecord("OK", "", 2);
  EXPECT_EQ(run.immediate(), kNoResults);
  EXPECT_EQ(run.journal.log(), text(joined({entered(run.id), kNoInstance})));
  EXPECT_EQ(run.journal.sleeps(), "");
}

TEST(ImmediateResults, TheFirstOfSeveralRecordsIsCopied) {
  FinishedRun run;
  run.addRecord(run.testName, "record for job-0", "OK");
  run.addOwnRecord("Aborted");
  run.addOwnRecord("OK");
  EXPECT_EQ(run.immediate(), "Aborted");
  EXPECT_EQ(run.journal.countOf("TCIMCopy.CopyInstance(inst record2, ns host)"), 1);
  EXPECT_EQ(run.journal.calls().find("record3"), std::string::npos);
}

TEST(ImmediateResults, TheHandleOfTheCopyIsReleasedAtOnce) {
  FinishedRun run;
  run.addOwnRecord("OK");
  const int alive = LiveObject::count();
  run.immediate();
  EXPECT_EQ(LiveObject::count(), alive);
}

TEST(ImmediateResults, TwiceForOneRunExplainsTwice) {
  VendorRun run;
  run.immediate();
  EXPECT_EQ(run.immediate(), "Pass");
  EXPECT_EQ(run.record->value("RecordData").ToText(), "0x1 : Fine.\n0x1 : Fine.\nformer");
}

TEST(ImmediateResults, AFrameworkExceptionIsLoggedAndAnswered) {
  for (const char* call : {"GetClass", "EnumerateInstances", "ServiceName", "CompletionState.ToStr",
                           "SetProperty", "CopyInstance"}) {
    VendorRun run;
    run.script.failOn(call, Fault::vorException);
    EXPECT_EQ(run.immediate(), kNoResults) << call;
    const std::string caught = lines({trace("DiagsRunner::ImmediateResults caught Exception")});
    const std::string log = run.journal.log();
    ASSERT_GE(log.size(), caught.size());
    EXPECT_EQ(log.substr(log.size() - caught.size()), caught) << call;
    EXPECT_EQ(log.find("Returning"), std::string::npos) << call;
  }
}

TEST(ImmediateResults, ARecordThatCannotBeCopiedHasItsDataExplainedAllTheSame) {
  VendorRun run;
  run.script.failOn("CopyInstance", Fault::vorException);
  EXPECT_EQ(run.immediate(), kNoResults);
  EXPECT_EQ(run.record->value("RecordData").ToText(), "0x1 : Fine.\nformer");
}

TEST(ImmediateResults, AnEmptyNamespaceOfTheHostIsTheCopysAffair) {
  FinishedRun run;
  run.addOwnRecord("OK");
  run.hostHandle.reset();
  EXPECT_EQ(run.immediate(), "Pass");
  EXPECT_EQ(run.journal.countOf("TCIMCopy.CopyInstance(inst record1, ns (empty))"), 1);
}

TEST(ImmediateResults, WithoutALoggerTheAnswerStays) {
  VendorRun run;
  run.logger.isAbsent = true;
  EXPECT_EQ(run.immediate(), "Pass");
  EXPECT_EQ(run.journal.log(), "");
}

}  // namespace
}  // namespace support
