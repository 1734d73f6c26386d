#include <gtest/gtest.h>

#include "providers/processor/services/FaultText.h"
#include "providers/processor/services/ReportText.h"

namespace providers {
namespace {

void nothing(const std::uint64_t*, std::uint64_t*, std::size_t) {}

CpuPackage twoThreads() {
  CpuPackage package;
  package.model = "Fast CPU";
  package.online = {0, 1};
  package.cpus = {0, 1};
  return package;
}

ProcessorReport goodReport() {
  ProcessorReport report;
  report.tested = {0, 1};
  report.operations = 33;
  report.fewestBlocks = 400;
  report.mostBlocks = 410;
  report.seconds = 7.04;
  report.busy = 0.986;
  return report;
}

CalculationFault finding() {
  CalculationFault result;
  result.suspicion.cpu = 5;
  result.suspicion.answeredBy = 1;
  result.suspicion.operation = {
      "Integer division", Unit::Integer, 1, 1, 4, nullptr, nothing, nullptr};
  result.suspicion.seed = 7;
  result.verdict.place = {5, 2, 1};
  result.verdict.extent = Extent::Core;
  result.verdict.comesBack = true;
  result.verdict.tries = 10;
  result.verdict.wrongAlone = 9;
  result.verdict.wrongToo = {4};
  result.verdict.right = {0, 1, 2, 3};
  result.verdict.mismatch = {1, 0, 0x10, 0x11};
  result.count = 3;
  return result;
}

Outcome outcomeOf(const ProcessorReport& report) {
  return calculationOutcome(report, twoThreads(), 42, {});
}

TEST(ReportText, AGoodRunTellsWhatWasTested) {
  const Outcome outcome =
      calculationOutcome(goodReport(), twoThreads(), 42, {{}, {"zstd: not there"}, {}});
  EXPECT_EQ(outcome.state, CompletionState::Ok);
  EXPECT_EQ(outcome.summary, "Tested 2 of 2 threads");
  EXPECT_EQ(outcome.text,
            "Tested 2 of 2 threads of Fast CPU, 33 operations, 0 errors\n"
            "CPUs 0-1: 400 to 410 blocks of results each in 7.0 s, at least 99 % busy\n"
            "Seed 42\n"
            "Without zstd: not there\n");
  EXPECT_TRUE(outcome.notes.empty());
}

// Catches a pass of a test whose parts were refused.
TEST(ReportText, AModuleThatIsRefusedMakesAPassIncompleteAndTellsWhy) {
  const Kernels kernels{{}, {}, {"libx.so is not loaded: /x can be written by other users"}};
  Outcome outcome = calculationOutcome(goodReport(), twoThreads(), 42, kernels);
  EXPECT_EQ(outcome.state, CompletionState::Incomplete);
  EXPECT_NE(outcome.text.find("Not tested: libx.so is not loaded: /x can be written by other users"
                              "\n"),
            std::string::npos)
      << outcome.text;
  EXPECT_EQ(outcome.correctiveAction,
            "Install the package again, into folders that its users cannot write\n");
  ASSERT_EQ(outcome.notes.size(), 1U);
  ProcessorReport report = goodReport();
  report.errors = 1;
  outcome = calculationOutcome(report, twoThreads(), 42, kernels);
  EXPECT_EQ(outcome.state, CompletionState::Failed);
}

TEST(ReportText, AFaultNamesWhereWhatAndWhatToDo) {
  ProcessorReport report = goodReport();
  report.errors = 3;
  report.findings = {finding()};
  const Outcome outcome = outcomeOf(report);
  EXPECT_EQ(outcome.state, CompletionState::Failed);
  ASSERT_EQ(outcome.notes.size(), 1U);
  const std::string operands = operandText(report.findings[0].suspicion.operation, 7, {1, 0, 0, 0});
  EXPECT_EQ(outcome.notes[0].text,
            "CPU 5 (core 2 of processor 1): Integer division, 3 wrong results\n"
            "  First with operands " +
                operands +
                ": expected 0x0000000000000010, found 0x0000000000000011, wrong bits "
                "0x0000000000000001\n"
                "  Tried again: wrong 9 of 10 times alone; wrong on CPU 4, too; right on CPUs 0-3\n"
                "  A fault of core 2 of processor 1 that comes back\n"
                "  Replace processor 1; until then keep CPU 5 off\n");
  EXPECT_EQ(outcome.notes[0].correctiveAction, "Replace processor 1; until then keep CPU 5 off\n");
  EXPECT_EQ(outcome.notes[0].part.name, "core 2 of processor 1");
  ASSERT_EQ(outcome.errors.size(), 1U);
  EXPECT_EQ(outcome.errors[0].code, "Processor error: core 2 of processor 1, Integer division");
  EXPECT_EQ(outcome.errors[0].count, 3U);
}

struct ExtentTextRow {
  Extent extent;
  bool comesBack;
  const char* part;
  const char* action;
};

TEST(FaultText, TellsThePartAndWhatToReplace) {
  for (const ExtentTextRow& row :
       {ExtentTextRow{Extent::Thread, true, "thread CPU 5 of core 2 of processor 1",
                      "Replace processor 1; until then keep CPU 5 off"},
        ExtentTextRow{Extent::Package, true, "processor 1 as a whole", "Replace processor 1"},
        ExtentTextRow{
            Extent::Core, false, "core 2 of processor 1",
            "Check cooling and power supply, update the microcode, and test longer; replace "
            "processor 1 if it happens again"},
        ExtentTextRow{
            Extent::Everywhere, true, "more than one processor",
            "Update firmware and microcode and test again; the same fault in several processors "
            "is rarely theirs"},
        ExtentTextRow{Extent::Undecided, false, "CPU 5 or CPU 1",
                      "Test again with more threads allowed; replace the processor if they still "
                      "disagree"}}) {
    CalculationFault one = finding();
    one.verdict.extent = row.extent;
    one.verdict.comesBack = row.comesBack;
    EXPECT_EQ(partText(one), row.part);
    EXPECT_EQ(correctiveAction(one), row.action);
  }
}

TEST(FaultText, TellsThatNothingWasTriedAgain) {
  CalculationFault one = finding();
  one.verdict.extent = Extent::Undecided;
  one.verdict.wasTried = false;
  one.verdict.whyLeftOut = "the run was stopped";
  const std::string text = faultText(one);
  EXPECT_NE(text.find("  Not tried again, since the run was stopped\n  Run the test again to its "
                      "end\n"),
            std::string::npos)
      << text;
  EXPECT_EQ(text.find("disagree"), std::string::npos);
}

TEST(FaultText, TellsOfAFaultThatDidNotComeBack) {
  CalculationFault one = finding();
  one.verdict.comesBack = false;
  one.verdict.wrongAlone = 0;
  one.verdict.wrongUnderLoad = 0;
  one.verdict.wrongToo = {};
  const std::string text = faultText(one);
  EXPECT_NE(text.find("wrong 0 of 10 times alone, 0 with all the others busy; right on CPUs 0-3\n"
                      "  A fault of core 2 of processor 1 that did not come back\n"),
            std::string::npos)
      << text;
}

TEST(FaultText, TellsOnHowManyItWasNotTriedAndWhy) {
  CalculationFault one = finding();
  one.verdict.leftOut = 250;
  one.verdict.whyLeftOut = "it would take too long";
  one.verdict.wrongAlone = 0;
  EXPECT_NE(
      faultText(one).find("wrong 0 of 10 times alone; wrong on CPU 4, too; right on CPUs 0-3; "
                          "not tried on 250 other threads, since it would take too long\n"),
      std::string::npos)
      << faultText(one);
}

TEST(FaultText, TellsOfAnAnswerThatWasKnown) {
  CalculationFault one = finding();
  one.suspicion.isAnswer = true;
  EXPECT_NE(faultText(one).find("First with the answer known for it: expected"), std::string::npos);
}

ExchangeFault exchangeFault() {
  ExchangeFault fault;
  fault.cpu1 = 2;
  fault.cpu2 = 6;
  fault.wrong = {6, 3, 0x10, 0x30};
  fault.wasTried = true;
  fault.comesBack = true;
  fault.hadOthers = true;
  fault.secondWithOthers = true;
  return fault;
}

TEST(FaultText, OfAMessageNamesBothAndHowTheyDidWithOthers) {
  EXPECT_EQ(faultText(exchangeFault()),
            "CPU 2 and CPU 6: a message arrived wrong at CPU 6, word 3\n"
            "  expected 0x0000000000000010, found 0x0000000000000030, wrong bits "
            "0x0000000000000020\n"
            "  Tried again: wrong between the two, right between CPU 2 and others, wrong between "
            "CPU 6 and others\n"
            "  Replace the processor that has CPU 6\n");
}

TEST(FaultText, OfAMessageTellsWhatToReplace) {
  ExchangeFault fault = exchangeFault();
  fault.firstWithOthers = true;
  EXPECT_NE(correctiveAction(fault).find("one after the other"), std::string::npos);
  fault.secondWithOthers = false;
  EXPECT_EQ(correctiveAction(fault), "Replace the processor that has CPU 2");
  fault.comesBack = false;
  EXPECT_NE(correctiveAction(fault).find("test longer"), std::string::npos);
}

TEST(FaultText, OfAMessageTellsWhatWasNotTried) {
  ExchangeFault fault = exchangeFault();
  fault.leftOut = 9;
  fault.whyLeftOut = "it would take too long";
  EXPECT_NE(faultText(fault).find("; not tried with 9 other threads, since it would take too long"),
            std::string::npos);
  fault.wasTried = false;
  EXPECT_NE(faultText(fault).find("\n  Not tried again, since it would take too long\n  Run the "
                                  "test again to its end\n"),
            std::string::npos)
      << faultText(fault);
}

struct StateRow {
  const char* name;
  std::vector<unsigned> tested;
  std::vector<unsigned> unusable;
  bool stopped;
  std::uint64_t errors;
  CompletionState state;
};

TEST(ReportText, CoverageThatFallsShortIsNoPass) {
  for (const StateRow& row :
       {StateRow{"all", {0, 1}, {}, false, 0, CompletionState::Ok},
        StateRow{"not allowed", {0}, {}, false, 0, CompletionState::Incomplete},
        StateRow{"unusable", {0}, {1}, false, 0, CompletionState::Incomplete},
        StateRow{"none", {}, {}, false, 0, CompletionState::Incomplete},
        StateRow{"stopped", {0, 1}, {}, true, 0, CompletionState::Stopped},
        StateRow{"error", {0}, {1}, true, 1, CompletionState::Failed}}) {
    ProcessorReport report = goodReport();
    report.tested = row.tested;
    report.unusable = row.unusable;
    report.stopped = row.stopped;
    report.errors = row.errors;
    const Outcome outcome = outcomeOf(report);
    EXPECT_EQ(outcome.state, row.state) << row.name;
    const bool isShort = row.state == CompletionState::Incomplete;
    EXPECT_EQ(outcome.notes.size(), isShort ? 1U : 0U) << row.name;
  }
}

TEST(ReportText, AThreadThatCouldNotBeUsedIsNamed) {
  ProcessorReport report = goodReport();
  report.unusable = {1};
  EXPECT_NE(outcomeOf(report).text.find("CPUs 1 could not be used\n"), std::string::npos);
}

TEST(ReportText, WhatTheSystemStartedNoThreadForMakesARunIncomplete) {
  ProcessorReport report = goodReport();
  report.tested = {0};
  report.unusable = {1};
  report.unstarted = 1;
  EXPECT_NE(
      outcomeOf(report).text.find("CPUs 1 could not be used\nFor 1 of them the system started "
                                  "no thread: it allows no more\n"),
      std::string::npos);
  ExchangeReport messages;
  messages.tested = {0, 1};
  messages.unstarted = 1;
  const Outcome outcome = exchangeOutcome(messages, twoThreads());
  EXPECT_EQ(outcome.state, CompletionState::Incomplete);
  EXPECT_NE(outcome.text.find("1 pair exchanged nothing: the system started no more threads\n"),
            std::string::npos);
}

TEST(ReportText, ARunTellsWhatItMeasured) {
  const auto measured = outcomeOf(goodReport()).measured;
  ASSERT_EQ(measured.size(), 7U);
  EXPECT_EQ(measured[1].name, "TestedThreads");
  EXPECT_EQ(measured[1].value, 2);
  EXPECT_EQ(measured[3].name, "Blocks");
  EXPECT_EQ(measured[3].value, 400);
  EXPECT_EQ(measured[4].name, "Busy");
  EXPECT_DOUBLE_EQ(measured[4].value, 98.6);
  EXPECT_EQ(measured[5].name, "BlockRate");
  EXPECT_NEAR(measured[5].value, 56.8, 0.1);
  EXPECT_EQ(measured[6].name, "Errors");
  EXPECT_EQ(measured[6].maximum, 0);
}

TEST(ReportText, WithoutTimeThereIsNoRate) {
  ProcessorReport report = goodReport();
  report.seconds = 0;
  EXPECT_EQ(outcomeOf(report).measured.size(), 6U);
}

TEST(ReportText, AnExchangeTellsPairsAndMessages) {
  ExchangeReport report;
  report.tested = {0, 1};
  report.pairs = 1;
  report.messages = 12;
  report.seconds = 2;
  Outcome outcome = exchangeOutcome(report, twoThreads());
  EXPECT_EQ(outcome.state, CompletionState::Ok);
  EXPECT_EQ(outcome.text,
            "Tested 2 of 2 threads of Fast CPU, 1 pair, 0 errors\n"
            "12 messages exchanged in 2.0 s\n");
  report.errors = 1;
  report.faults = {exchangeFault()};
  outcome = exchangeOutcome(report, twoThreads());
  EXPECT_EQ(outcome.state, CompletionState::Failed);
  EXPECT_EQ(outcome.errors.at(0).code, "Processor error: messages between CPU 2 and CPU 6");
  EXPECT_EQ(outcome.notes.at(0).correctiveAction, correctiveAction(report.faults[0]) + "\n");
}

}  // namespace
}  // namespace providers
