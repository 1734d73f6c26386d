#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "diagsrunner/DiagsRunner.h"
#include "tests/support/Outcome.h"
#include "tests/support/WithRunner.h"

namespace support {
namespace {

using Access = DiagsRunnerAccess;

const char kBuiltTrace[] = "Entreing DiagsRunner::DiagsRunner";
const char kLoadedTrace[] = "Exiting DiagsRunner::DiagsRunner";
const char kVendorFile[] = "vendor_diagnostic_msgs.xml";
const char kVendorPath[] = "/opt/diags\\kfr\\data\\vendor_diagnostic_msgs.xml";
const char kExcludedPath[] = "/opt/diags\\kfr\\data\\excludetests.xml";

const char kMemoryMessages[] =
    "<diaganalysis version='1.0'><diagnostictest name='Mem'><result state='Failed'>"
    "<msg>Broken.</msg></result></diagnostictest></diaganalysis>";
constexpr std::size_t kMemorySize = sizeof(kMemoryMessages) - 1;

std::string sizeOf(const std::string& path) {
  return "TOSSpecific.GetFileSize(" + quoted(path) + ")";
}

std::string readOf(const std::string& path, std::size_t size) {
  return "readFile(" + quoted(path) + ", " + std::to_string(size) + ")";
}

std::string allocationOf(std::size_t size) { return "allocate(" + std::to_string(size) + ")"; }

/// How the construction begins, up to the size of the vendor messages' file.
std::string constructionUpToTheSize() {
  return lines({trace(kBuiltTrace), "TOSSpecific.GetBiosID()", "TOSSpecific.GetVORRootPath()",
                sizeOf(kVendorPath)});
}

std::string searchForExcludedTests() {
  return lines({"TOSSpecific.GetVORRootPath()", sizeOf(kExcludedPath)});
}

/// The process-wide runner on the world's namespace, or how asking for it failed.
Outcome getRunner(const World& world) {
  return outcomeOf([&] {
    return std::string(DiagsRunner::GetDiagsRunner(world.root->handle()) ? "a runner" : "null");
  });
}

TEST(GetDiagsRunner, BuildsARunnerAndThenGathersTheExcludedTests) {
  const WithRunner<> world;
  EXPECT_EQ(getRunner(world).all, constructionUpToTheSize() + searchForExcludedTests());
}

TEST(GetDiagsRunner, TheSecondCallDoesNothingAndIgnoresItsNamespace) {
  WithRunner<> world;
  DiagsRunner* first = DiagsRunner::GetDiagsRunner(world.root->handle());
  world.journal.clear();
  DiagsRunner* second = DiagsRunner::GetDiagsRunner(world.host->handle());
  EXPECT_EQ(first, second);
  EXPECT_EQ(world.journal.all(), "");
  EXPECT_EQ(Access::theNamespace(*second), world.root->handle());
}

TEST(GetDiagsRunner, HoldsTheNamespaceOnce) {
  WithRunner<> world;
  const boost::shared_ptr<NZELVOR20::ICIMNamespace> ns = world.root->handle();
  const long before = ns.use_count();
  DiagsRunner::GetDiagsRunner(ns);
  EXPECT_EQ(ns.use_count(), before + 1);
  DiagsRunner::GetDiagsRunner(ns);
  EXPECT_EQ(ns.use_count(), before + 1);
}

TEST(GetDiagsRunner, TakesAnEmptyNamespace) {
  const WithRunner<> world;
  DiagsRunner* runner = DiagsRunner::GetDiagsRunner({});
  ASSERT_NE(runner, nullptr);
  EXPECT_EQ(Access::theNamespace(*runner), nullptr);
}

TEST(GetDiagsRunner, FillsTheExcludedTests) {
  WithRunner<> world;
  world.setDataFile("excludetests.xml", "<vor version='1'><test name='a'/><test name='B'/></vor>");
  EXPECT_EQ(Access::excludedTests(world.runner()), (std::vector<std::string>{"a", "B"}));
}

TEST(GetDiagsRunner, WithoutMemoryForTheVendorMessagesThereIsNoRunner) {
  WithRunner<> world;
  world.setDataFile(kVendorFile, kMemoryMessages);
  world.platform.failAllocation(1);
  const Outcome failed = getRunner(world);
  EXPECT_EQ(failed.kind, Outcome::Kind::vorException);
  EXPECT_EQ(failed.status, 4);
  EXPECT_EQ(failed.all, constructionUpToTheSize() + lines({allocationOf(kMemorySize + 1)}));
  EXPECT_EQ(diagsrunner::processRunner(), nullptr);
}

TEST(GetDiagsRunner, BuildsTheRunnerAtTheNextCallAfterAFailedConstruction) {
  WithRunner<> world;
  world.setDataFile(kVendorFile, kMemoryMessages);
  world.platform.failAllocation(1);
  getRunner(world);
  world.journal.clear();
  const Outcome second = getRunner(world);
  EXPECT_EQ(second.text, "a runner");
  EXPECT_EQ(second.log, lines({trace(kBuiltTrace), trace(kLoadedTrace)}));
}

TEST(GetDiagsRunner, ThePointerStaysWhenGatheringTheExcludedTestsThrows) {
  WithRunner<> world;
  world.setDataFile("excludetests.xml", "<vor version='1'><test name='a'/></vor>");
  world.platform.failAllocation(1);
  const Outcome failed = getRunner(world);
  EXPECT_EQ(failed.kind, Outcome::Kind::vorException);
  EXPECT_EQ(failed.status, 4);
  world.journal.clear();
  const Outcome second = getRunner(world);
  EXPECT_EQ(second.text, "a runner");
  EXPECT_EQ(second.all, "") << "the list is gathered once";
  EXPECT_TRUE(Access::excludedTests(*DiagsRunner::GetDiagsRunner({})).empty());
}

TEST(ForgetProcessRunner, LeavesARunnerToWhoeverHoldsIt) {
  const WithRunner<> world;
  const std::unique_ptr<DiagsRunner> runner(DiagsRunner::GetDiagsRunner(world.root->handle()));
  diagsrunner::forgetProcessRunner();
  EXPECT_EQ(diagsrunner::processRunner(), nullptr);
  EXPECT_EQ(Access::theNamespace(*runner), world.root->handle());
}

TEST(FreeDiagsRunner, WithoutARunnerDoesNothing) {
  const WithRunner<> world;
  DiagsRunner::FreeDiagsRunner();
  EXPECT_EQ(getRunner(world).text, "a runner");
  EXPECT_NE(diagsrunner::processRunner(), nullptr);
}

TEST(FreeDiagsRunner, ReleasesWhatTheRunnerHolds) {
  const WithRunner<> world;
  const long before = world.root->handle().use_count();
  DiagsRunner::GetDiagsRunner(world.root->handle());
  DiagsRunner::FreeDiagsRunner();
  EXPECT_EQ(world.root->handle().use_count(), before);
  EXPECT_EQ(diagsrunner::processRunner(), nullptr);
}

TEST(FreeDiagsRunner, ASecondTimeDoesNothing) {
  WithRunner<> world;
  world.runner();
  DiagsRunner::FreeDiagsRunner();
  DiagsRunner::FreeDiagsRunner();
  EXPECT_EQ(world.journal.all(), "");
}

TEST(FreeDiagsRunner, TheFormerAddressIsHandedOutAfterwardsAndNothingIsBuilt) {
  WithRunner<> world;
  const DiagsRunner* runner = &world.runner();
  DiagsRunner::FreeDiagsRunner();
  EXPECT_EQ(DiagsRunner::GetDiagsRunner(world.root->handle()), runner);
  EXPECT_EQ(world.journal.all(), "");
}

TEST(FreeDiagsRunner, TheWorkerThreadFindsNoRunnerAfterwards) {
  WithRunner<> world;
  DiagsRunner* runner = &world.runner();
  DiagsRunner::FreeDiagsRunner();
  EXPECT_EQ(DiagsRunner::ExecuteInThread(runner), nullptr);
  EXPECT_EQ(world.journal.all(), "");
}

TEST(TheConstruction, LoadsTheVendorMessagesStepByStep) {
  World world;
  world.setDataFile(kVendorFile, kMemoryMessages);
  DiagsRunner runner(world.root->handle());
  EXPECT_EQ(world.journal.all(),
            constructionUpToTheSize() +
                lines({allocationOf(kMemorySize + 1), readOf(kVendorPath, kMemorySize),
                       "TOSSpecific.isOEMBuild()", trace(kLoadedTrace)}));
}

TEST(TheConstruction, KeepsTheVendorMessages) {
  World world;
  world.setDataFile(kVendorFile, kMemoryMessages);
  DiagsRunner runner(world.root->handle());
  const VendorMessages& messages = Access::vendorMessages(runner);
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_EQ(messages.begin()->first, "mem");
  EXPECT_EQ(messages.begin()->second.state, "failed");
  EXPECT_EQ(messages.begin()->second.messages, std::vector<std::string>{"Broken."});
}

TEST(TheConstruction, WithoutAVendorFileLogsItsBeginningAlone) {
  World world;
  DiagsRunner runner(world.root->handle());
  EXPECT_EQ(world.journal.log(), lines({trace(kBuiltTrace)}));
  EXPECT_TRUE(Access::vendorMessages(runner).empty());
}

TEST(TheConstruction, WithAVendorFileThatDoesNotOpenLogsItsBeginningAlone) {
  World world;
  world.os.setSize(kVendorPath, 10);
  DiagsRunner runner(world.root->handle());
  EXPECT_EQ(world.journal.all(),
            constructionUpToTheSize() + lines({allocationOf(11), readOf(kVendorPath, 10)}));
  EXPECT_TRUE(Access::vendorMessages(runner).empty());
}

TEST(TheConstruction, ReadsAnEmptyVendorFileAsAnEmptyDocument) {
  World world;
  world.setDataFile(kVendorFile, "");
  DiagsRunner runner(world.root->handle());
  EXPECT_EQ(world.journal.all(),
            constructionUpToTheSize() + lines({allocationOf(1), readOf(kVendorPath, 0),
                                               "TOSSpecific.isOEMBuild()", trace(kLoadedTrace)}));
  EXPECT_TRUE(Access::vendorMessages(runner).empty());
}

TEST(TheConstruction, KeepsTheSizeOfTheVendorFileAsA32BitCount) {
  World world;
  world.setDataFile(kVendorFile, "<a/>\n<b/>");
  world.os.setSize(kVendorPath, (std::uint64_t{1} << 32U) + 5);
  DiagsRunner runner(world.root->handle());
  EXPECT_EQ(world.journal.files(), lines({allocationOf(6), readOf(kVendorPath, 5)}));
}

TEST(TheConstruction, DoesNotWrapTheBufferOfTheLargestVendorFile) {
  World world;
  world.os.setSize(kVendorPath, 0xFFFFFFFFU);
  const Outcome failed =
      outcomeOf([&] { return DiagsRunner(world.root->handle()), std::string("built"); });
  EXPECT_EQ(failed.status, 4);
  EXPECT_EQ(world.journal.files(), lines({allocationOf(4294967296U)}));
}

TEST(TheConstruction, AFileLongerThanItsSizeIsReadUpToTheSize) {
  World world;
  world.setDataFile(kVendorFile, std::string(kMemoryMessages) + "<never closed");
  world.os.setSize(kVendorPath, kMemorySize);
  DiagsRunner runner(world.root->handle());
  EXPECT_EQ(Access::vendorMessages(runner).size(), 1U);
}

TEST(TheConstruction, AFileShorterThanItsSizeEndsAtTheZeros) {
  World world;
  world.setDataFile(kVendorFile, kMemoryMessages);
  world.os.setSize(kVendorPath, 1000);
  DiagsRunner runner(world.root->handle());
  EXPECT_EQ(Access::vendorMessages(runner).size(), 1U);
}

TEST(TheConstruction, TakesASizeQueryThatThrowsTheFrameworksExceptionForAMissingFile) {
  World world;
  world.setDataFile(kVendorFile, kMemoryMessages);
  world.script.failOn("GetFileSize", Fault::vorException);
  DiagsRunner runner(world.root->handle());
  EXPECT_EQ(world.journal.all(), constructionUpToTheSize());
}

struct QueryFault {
  const char* call;
  Fault fault;
  Outcome::Kind propagates;
};

std::ostream& operator<<(std::ostream& stream, const QueryFault& fault) {
  return stream << fault.call << ": " << nameOf(fault.fault);
}

class TheConstructionPassesOn : public testing::TestWithParam<QueryFault> {};

TEST_P(TheConstructionPassesOn, WhatAQueryThrows) {
  WithRunner<> world;
  world.script.failOn(GetParam().call, GetParam().fault);
  EXPECT_EQ(getRunner(world).kind, GetParam().propagates);
  EXPECT_EQ(diagsrunner::processRunner(), nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    , TheConstructionPassesOn,
    testing::Values(
        QueryFault{"GetBiosID", Fault::vorException, Outcome::Kind::vorException},
        QueryFault{"GetBiosID", Fault::otherException, Outcome::Kind::otherException},
        QueryFault{"GetVORRootPath", Fault::standardException, Outcome::Kind::standardException},
        QueryFault{"GetFileSize", Fault::standardException, Outcome::Kind::standardException},
        QueryFault{"GetFileSize", Fault::otherException, Outcome::Kind::otherException}));

TEST(TheConstruction, KeepsTheFirmwareIdentifierInLowerCase) {
  World world;
  world.os.biosID = "aBE1-XX_9 \xC4";
  DiagsRunner runner(world.root->handle());
  EXPECT_EQ(Access::biosID(runner), "abe1-xx_9 \xC4");
}

TEST(TheConstruction, LeavesTheOtherMembersEmpty) {
  World world;
  DiagsRunner runner(world.root->handle());
  EXPECT_EQ(Access::sharedAux(runner), nullptr);
  EXPECT_TRUE(Access::weakAux(runner).expired());
  EXPECT_FALSE(Access::flagAux(runner));
  EXPECT_FALSE(Access::runFinished(runner).isSet());
  EXPECT_EQ(Access::testList(runner), "");
  EXPECT_TRUE(Access::excludedTests(runner).empty());
  EXPECT_TRUE(Access::testIndex(runner).empty());
  EXPECT_TRUE(Access::runParams(runner).empty());
  EXPECT_TRUE(Access::finishedTests(runner).empty());
  EXPECT_EQ(Access::theNamespace(runner), world.root->handle());
  EXPECT_EQ(Access::runService(runner), nullptr);
  EXPECT_TRUE(Access::testInstances(runner).empty());
  EXPECT_TRUE(Access::diagNS(runner).empty());
  EXPECT_TRUE(Access::diagPegasusNS(runner).empty());
}

TEST(TheConstruction, IsNotTheProcessWideRunner) {
  const World world;
  DiagsRunner runner(world.root->handle());
  EXPECT_EQ(diagsrunner::processRunner(), nullptr);
}

TEST(TheConstruction, GoesOnWithoutALogger) {
  World world;
  world.logger.isAbsent = true;
  world.setDataFile(kVendorFile, kMemoryMessages);
  DiagsRunner runner(world.root->handle());
  EXPECT_EQ(world.journal.log(), "");
  EXPECT_EQ(Access::vendorMessages(runner).size(), 1U);
}

TEST(TheMembers, LieInTheOrderOfTheirDeclaration) {
  World world;
  DiagsRunner r(world.root->handle());
  const std::vector<const void*> members = {
      &Access::sharedAux(r),      &Access::weakAux(r),       &Access::flagAux(r),
      &Access::biosID(r),         &Access::runFinished(r),   &Access::testList(r),
      &Access::excludedTests(r),  &Access::testIndex(r),     &Access::runParams(r),
      &Access::finishedTests(r),  &Access::theNamespace(r),  &Access::runService(r),
      &Access::vendorMessages(r), &Access::testInstances(r), &Access::diagNS(r),
      &Access::diagPegasusNS(r)};
  EXPECT_TRUE(std::is_sorted(members.begin(), members.end(), std::less<const void*>()));
}

}  // namespace
}  // namespace support
