#include <gtest/gtest.h>

#include "tests/runner/Query.h"
#include "tests/support/WithRunner.h"

namespace support {
namespace {

using Access = DiagsRunnerAccess;
using NZELVOR20::TCIMValue;

const char kNothing[] = "No matching diagnostic test or device found.\n";
const char kEntered[] = "DiagsRunner::EnumerateDiagTests";

class TwoTests : public WithRunner<> {
 public:
  ScriptedTest first = addTest("A", "d1", "e1");
  ScriptedTest second = addTest("B", "d2", "e2");
};

TEST(EnumerateDiagTests, EndsEachIdentifierWithABar) {
  TwoTests world;
  EXPECT_EQ(world.runner().EnumerateDiagTests(""), "A,d1,e1|B,d2,e2|");
}

TEST(EnumerateDiagTests, RecordsEachTestAsServedByCmpiProviders) {
  TwoTests world;
  world.runner().EnumerateDiagTests("");
  EXPECT_EQ(describe(Access::diagNS(world.runner())), "{A,d1,e1=\"cmpi\", B,d2,e2=\"cmpi\"}");
  EXPECT_TRUE(Access::diagPegasusNS(world.runner()).empty());
}

TEST(EnumerateDiagTests, AsksLikeAQueryInTheEnumerationMode) {
  TwoTests world;
  Query().ask(world.runner());
  const std::string query = world.journal.all();
  world.journal.clear();
  world.runner().EnumerateDiagTests("");
  EXPECT_EQ(world.journal.all(), lines({trace(kEntered)}) + query);
}

TEST(EnumerateDiagTests, TheArgumentIsIgnored) {
  for (const char* filter : {"", "A", "no such test", "*"}) {
    TwoTests world;
    EXPECT_EQ(world.runner().EnumerateDiagTests(filter), "A,d1,e1|B,d2,e2|");
  }
}

TEST(EnumerateDiagTests, TheSecondCallAnswersFromMemory) {
  TwoTests world;
  world.runner().EnumerateDiagTests("");
  world.addTest("C", "d3", "e3");
  Access::diagNS(world.runner()).clear();
  world.journal.clear();
  EXPECT_EQ(world.runner().EnumerateDiagTests("again"), "A,d1,e1|B,d2,e2|");
  EXPECT_EQ(world.journal.all(), lines({trace(kEntered)}));
  EXPECT_TRUE(Access::diagNS(world.runner()).empty());
}

TEST(EnumerateDiagTests, ARepeatedIdentifierIsListedTwiceAndRecordedOnce) {
  TwoTests world;
  world.addTest("A", "d1", "e1");
  EXPECT_EQ(world.runner().EnumerateDiagTests(""), "A,d1,e1|B,d2,e2|A,d1,e1|");
  EXPECT_EQ(Access::diagNS(world.runner()).size(), 2U);
}

TEST(EnumerateDiagTests, AnIdentifierThatIsRecordedAlreadyKeepsItsFamily) {
  TwoTests world;
  world.setListed("A,d1,e1", "pegasus");
  EXPECT_EQ(world.runner().EnumerateDiagTests(""), "A,d1,e1|B,d2,e2|");
  EXPECT_EQ(describe(Access::diagNS(world.runner())), "{A,d1,e1=\"pegasus\", B,d2,e2=\"cmpi\"}");
}

TEST(EnumerateDiagTests, AnIdentifierOfEmptyFieldsIsNotEmpty) {
  WithRunner<> world;
  world.addTest("", "", "");
  EXPECT_EQ(world.runner().EnumerateDiagTests(""), ",,|");
}

TEST(EnumerateDiagTests, WithoutTestsSaysSo) {
  WithRunner<> world;
  world.theClass(kAvailableService);
  EXPECT_EQ(world.runner().EnumerateDiagTests(""), kNothing);
  EXPECT_TRUE(Access::diagNS(world.runner()).empty());
}

TEST(EnumerateDiagTests, AFailedQueryReadsLikeAMachineWithoutTests) {
  WithRunner<> world;
  EXPECT_EQ(world.runner().EnumerateDiagTests(""), kNothing);
  EXPECT_EQ(errorsOf(world.journal),
            lines({error("DiagsRunner::GetCIMData, caught exception when get class")}));
}

TEST(EnumerateDiagTests, FindingNothingIsKeptTooAndNotAskedAgain) {
  WithRunner<> world;
  world.runner().EnumerateDiagTests("");
  world.addTest("A", "d1", "e1");
  world.journal.clear();
  EXPECT_EQ(world.runner().EnumerateDiagTests(""), kNothing);
  EXPECT_EQ(world.journal.all(), lines({trace(kEntered)}));
}

TEST(EnumerateDiagTests, HidesWhatTheListAndTheMatrixExclude) {
  TwoTests world;
  world.addTest("C", "d3", "e3");
  world.setDataFile("excludetests.xml", "<vor version='1'><test name='zel:A:diag'/></vor>");
  world.setDataFile("excludetestmatrix.xml",
                    "<x><biosid name='abe1xx'><diagnostictest name='\"B\"'/></biosid></x>");
  EXPECT_EQ(world.runner().EnumerateDiagTests(""), "C,d3,e3|");
}

TEST(EnumerateDiagTests, WithoutMemoryForTheMatrixThereIsNoTest) {
  TwoTests world;
  world.setDataFile("excludetestmatrix.xml", "<x/>");
  DiagsRunner& runner = world.runner();
  world.platform.failAllocation(1);
  EXPECT_EQ(runner.EnumerateDiagTests(""), kNothing);
  EXPECT_EQ(errorsOf(world.journal),
            lines({error("Error loading excludetestmatrix.xml"),
                   error("DiagsRunner::GetCIMData, caught vor exception")}));
}

TEST(EnumerateDiagTests, WhatWasFoundBeforeTheWalkEndedIsNotLost) {
  TwoTests world;
  world.second.association->remove("ServiceProvided");
  EXPECT_EQ(world.runner().EnumerateDiagTests(""), "A,d1,e1|");
  EXPECT_EQ(describe(Access::diagNS(world.runner())), "{A,d1,e1=\"cmpi\"}");
}

TEST(EnumerateDiagTests, GoesOnWithoutALogger) {
  TwoTests world;
  DiagsRunner& runner = world.runner();
  world.logger.isAbsent = true;
  EXPECT_EQ(runner.EnumerateDiagTests(""), "A,d1,e1|B,d2,e2|");
  EXPECT_EQ(world.journal.log(), "");
}

}  // namespace
}  // namespace support
