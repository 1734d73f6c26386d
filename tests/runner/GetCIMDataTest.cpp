#include <gtest/gtest.h>

#include <utility>

#include "tests/runner/Query.h"
#include "tests/runner/Row.h"
#include "tests/support/WithRunner.h"

namespace support {
namespace {

using Access = DiagsRunnerAccess;
using NZELVOR20::ECIMType;
using NZELVOR20::TCIMReference;
using NZELVOR20::TCIMValue;

/// A world with one test, or with two.
class OneTest : public WithRunner<> {
 public:
  ScriptedTest memory = addTest("Memory Test", "mem0", "System Memory");
};

class TwoTests : public OneTest {
 public:
  ScriptedTest processor = addTest("Processor Test", "cpu0", "Processor 0");
};

TEST(GetCIMData, WalksTheAssociationsStepByStep) {
  OneTest world;
  Query query;
  query.mode = kOtherMode;
  EXPECT_EQ(query.ask(world.runner()), "true: Memory Test,mem0,System Memory|");
  EXPECT_EQ(
      world.journal.all(),
      lines(
          {trace("DiagsRunner::GetCIMData"),
           trace("DiagsRunner::GetCIMData:Looking for CIM_AvailableDiagnosticService with cmpi"),
           R"(ns root.GetClass("CIM_AvailableDiagnosticService", {nspID="cmpi"}))",
           R"(class CIM_AvailableDiagnosticService.EnumerateInstances(deep=true, {nspID="cmpi"}))",
           R"(inst association1.GetProperty("ServiceProvided", {nspID="cmpi"}))",
           R"(prop association1.ServiceProvided.GetValue({nspID="cmpi"}))",
           R"(inst association1.GetProperty("UserOfService", {nspID="cmpi"}))",
           R"(prop association1.UserOfService.GetValue({nspID="cmpi"}))",
           R"(prop association1.ServiceProvided.ToString())",
           trace("DiagsRunner::GetCIMData:Property 1: ServiceProvided="
                 "root/cimv2:CIM_DiagnosticTest.Name=\"Memory Test\""),
           R"(prop association1.UserOfService.ToString())",
           trace("DiagsRunner::GetCIMData:Property 2: UserOfService="
                 "root/cimv2:CIM_LogicalDevice.DeviceID=\"mem0\""),
           R"(ref root/cimv2:CIM_DiagnosticTest.Name="Memory Test".GetClass())",
           R"(class CIM_DiagnosticTest.GetNamespace({nspID="cmpi"}))",
           R"(ns cmpi.GetInstance(root/cimv2:CIM_DiagnosticTest.Name="Memory Test", {nspID="cmpi"}))",
           R"(ref root/cimv2:CIM_LogicalDevice.DeviceID="mem0".GetClass())",
           R"(class CIM_LogicalDevice.GetNamespace({nspID="cmpi"}))",
           R"(ns cmpi.GetInstance(root/cimv2:CIM_LogicalDevice.DeviceID="mem0", {nspID="cmpi"}))",
           R"(inst service1.GetProperty("Name", {nspID="cmpi"}))",
           R"(prop service1.Name.GetValue({nspID="cmpi"}))",
           R"(inst element1.GetProperty("DeviceID", {nspID="cmpi"}))",
           R"(prop element1.DeviceID.GetValue({nspID="cmpi"}))",
           R"(inst element1.GetProperty("ElementName", {nspID="cmpi"}))",
           R"(prop element1.ElementName.GetValue({nspID="cmpi"}))"}));
}

TEST(GetCIMData, AsksWithTheFamilyThatItIsGiven) {
  OneTest world;
  Query query;
  query.mode = kOtherMode;
  query.family = TCIMValue("somebody");
  query.ask(world.runner());
  const std::string calls = world.journal.calls();
  EXPECT_EQ(calls.find("{nspID=\"cmpi\"}"), std::string::npos);
  EXPECT_EQ(calls.find("{}"), std::string::npos);
  EXPECT_EQ(world.journal.countOf(trace("DiagsRunner::GetCIMData:Looking for "
                                        "CIM_AvailableDiagnosticService with somebody")),
            1);
}

TEST(GetCIMData, SaysAFamilyThatIsANumberInDecimal) {
  WithRunner<> world;
  Query query;
  query.associationClass = "X";
  query.family = TCIMValue::Uint32(255);
  query.ask(world.runner());
  EXPECT_EQ(world.journal.countOf(trace("DiagsRunner::GetCIMData:Looking for X with 255")), 1);
}

// Catches a rendering that is asked for outside of what is guarded.
TEST(GetCIMData, AFamilyThatCannotBeSaidEndsTheQueryWithTheOuterMessages) {
  const struct {
    Fault fault;
    const char* message;
  } rows[] = {{Fault::vorException, "DiagsRunner::GetCIMData, caught vor exception"},
              {Fault::standardException, "DiagsRunner::GetCIMData, caught exception"},
              {Fault::otherException, "DiagsRunner::GetCIMData, caught exception"}};
  for (const auto& row : rows) {
    OneTest world;
    Query query;
    query.family = TCIMValue(world.memory.service->reference());
    DiagsRunner& runner = world.runner();
    world.script.failOn("GetPath", row.fault, Script::kAlways);
    EXPECT_EQ(query.ask(runner), "false: ");
    EXPECT_EQ(world.journal.log(), lines({trace("DiagsRunner::GetCIMData"), error(row.message)}));
  }
}

TEST(GetCIMData, TakesOtherClassesAndRoles) {
  WithRunner<> world;
  const ScriptedTest test = world.addTest("S", "d", "e");
  const InstancePtr link = world.addInstance("link", "CIM_Link", "Number", "1");
  link->set("First", TCIMValue(test.service->reference()));
  link->set("Second", TCIMValue(test.element->reference()));
  Query query;
  query.associationClass = "CIM_Link";
  query.serviceRole = "First";
  query.elementRole = "Second";
  EXPECT_EQ(query.ask(world.runner()), "true: S,d,e|");
  EXPECT_EQ(world.journal.countOf(trace("DiagsRunner::GetCIMData:Property 1: First="
                                        "root/cimv2:CIM_DiagnosticTest.Name=\"S\"")),
            1);
  EXPECT_EQ(world.journal.countOf(trace("DiagsRunner::GetCIMData:Property 2: Second="
                                        "root/cimv2:CIM_LogicalDevice.DeviceID=\"d\"")),
            1);
}

TEST(GetCIMData, LogsTheRolesAsTheyAreRendered) {
  OneTest world;
  world.memory.association->set("ServiceProvided", TCIMValue(world.memory.service->reference()),
                                "the service");
  world.memory.association->set("UserOfService", TCIMValue(world.memory.element->reference()),
                                "the element");
  Query().ask(world.runner());
  EXPECT_EQ(world.journal.countOf(
                trace("DiagsRunner::GetCIMData:Property 1: ServiceProvided=the service")),
            1);
  EXPECT_EQ(
      world.journal.countOf(trace("DiagsRunner::GetCIMData:Property 2: UserOfService=the element")),
      1);
}

TEST(GetCIMData, NamesTheTestsInTheOrderOfTheAssociations) {
  TwoTests world;
  world.addTest("A Test", "a", "b");
  EXPECT_EQ(Query().ask(world.runner()),
            "true: Memory Test,mem0,System Memory|Processor Test,cpu0,Processor 0|A Test,a,b|");
}

TEST(GetCIMData, AppendsToTheIdentifiersThatAreThere) {
  OneTest world;
  Query query;
  query.ids = {"kept"};
  EXPECT_EQ(query.ask(world.runner()), "true: kept|Memory Test,mem0,System Memory|");
}

TEST(GetCIMData, FindingNothingIsFalseWhateverTheListHeld) {
  WithRunner<> world;
  world.theClass(kAvailableService);
  Query query;
  query.ids = {"kept"};
  EXPECT_EQ(query.ask(world.runner()), "false: kept|");
  EXPECT_EQ(errorsOf(world.journal), lines({error("Error opening excludetestmatrix.xml")}));
}

TEST(GetCIMData, WritesValuesIntoIdentifiersInDecimalAndNullAsNothing) {
  OneTest world;
  world.memory.service->set("Name", TCIMValue::Null(ECIMType::eString), "rendered");
  world.memory.element->set("DeviceID", TCIMValue::Uint32(255), "rendered");
  world.memory.element->set("ElementName", TCIMValue::Boolean(true), "rendered");
  EXPECT_EQ(Query().ask(world.runner()), "true: ,255,true|");
}

TEST(GetCIMData, TheReferencesAndTheSpareTextsCarryNoBehaviour) {
  OneTest world;
  Query query;
  query.ask(world.runner());
  const std::string usual = world.journal.all();
  world.journal.clear();
  TCIMReference ref1 = world.memory.element->reference();
  TCIMReference ref2 = world.memory.service->reference();
  std::vector<std::string> ids;
  EXPECT_TRUE(world.runner().GetCIMData(ref1, ref2, kAvailableService, "ServiceProvided",
                                        "UserOfService", "4", "5", "6", "7", ids, 3,
                                        TCIMValue("cmpi")));
  EXPECT_EQ(world.journal.all(), usual);
  EXPECT_EQ(describe(ref1), "root/cimv2:CIM_LogicalDevice.DeviceID=\"mem0\"");
  EXPECT_EQ(describe(ref2), "root/cimv2:CIM_DiagnosticTest.Name=\"Memory Test\"");
}

TEST(GetCIMData, GoesOnWithoutALogger) {
  OneTest world;
  DiagsRunner& runner = world.runner();
  world.logger.isAbsent = true;
  EXPECT_EQ(Query().ask(runner), "true: Memory Test,mem0,System Memory|");
  EXPECT_EQ(world.journal.log(), "");
}

class GetCIMDataInAnotherMode : public testing::TestWithParam<int> {};

TEST_P(GetCIMDataInAnotherMode, ListsWhatIsExcludedAndReadsNoMatrix) {
  OneTest world;
  world.setDataFile("excludetests.xml", "<vor version='1'><test name='Memory Test'/></vor>");
  world.setDataFile("excludetestmatrix.xml",
                    "<x><biosid name='abe1xx'><diagnostictest/></biosid></x>");
  Query query;
  query.mode = GetParam();
  EXPECT_EQ(query.ask(world.runner()), "true: Memory Test,mem0,System Memory|");
  EXPECT_EQ(world.journal.osCalls() + world.journal.files(), "");
}

INSTANTIATE_TEST_SUITE_P(, GetCIMDataInAnotherMode, testing::Values(-3, 0, 1, 2, 4, 259));

TEST(GetCIMData, TheEnumerationModeIsTheNumberThree) {
  EXPECT_EQ(static_cast<int>(DiagsRunner::EENUMTEST), 3);
}

/// How a lookup can fail.
const Fault kFaults[] = {Fault::vorException, Fault::standardException, Fault::otherException,
                         Fault::emptyHandle};

TEST(GetCIMData, AClassThatCannotBeHadEndsTheQuery) {
  for (const Fault fault : kFaults) {
    SCOPED_TRACE(nameOf(fault));
    OneTest world;
    DiagsRunner& runner = world.runner();
    world.script.failOn("ns root.GetClass", fault);
    EXPECT_EQ(Query().ask(runner), "false: ");
    EXPECT_EQ(
        world.journal.all(),
        lines(
            {trace("DiagsRunner::GetCIMData"),
             trace("DiagsRunner::GetCIMData:Looking for CIM_AvailableDiagnosticService with cmpi"),
             R"(ns root.GetClass("CIM_AvailableDiagnosticService", {nspID="cmpi"}))",
             error("DiagsRunner::GetCIMData, caught exception when get class")}));
  }
}

TEST(GetCIMData, ARunnerWithoutANamespaceHasNoClass) {
  World world;
  DiagsRunner runner({});
  EXPECT_EQ(Query().ask(runner), "false: ");
  EXPECT_EQ(errorsOf(world.journal),
            lines({error("DiagsRunner::GetCIMData, caught exception when get class")}));
}

TEST(GetCIMData, AnEnumerationThatFailsEndsTheQueryWithTheOuterMessages) {
  for (const Fault fault : {Fault::vorException, Fault::standardException, Fault::otherException}) {
    SCOPED_TRACE(nameOf(fault));
    OneTest world;
    DiagsRunner& runner = world.runner();
    world.script.failOn("EnumerateInstances", fault);
    EXPECT_EQ(Query().ask(runner), "false: ");
    EXPECT_EQ(
        errorsOf(world.journal),
        lines({error(fault == Fault::vorException ? "DiagsRunner::GetCIMData, caught vor exception"
                                                  : "DiagsRunner::GetCIMData, caught exception")}));
  }
}

TEST(GetCIMData, WithoutMemoryForTheMatrixTheQueryEndsWithTheOuterMessage) {
  OneTest world;
  world.setDataFile("excludetestmatrix.xml", "<x/>");
  DiagsRunner& runner = world.runner();
  world.platform.failAllocation(1);
  EXPECT_EQ(Query().ask(runner), "false: ");
  EXPECT_EQ(errorsOf(world.journal),
            lines({error("Error loading excludetestmatrix.xml"),
                   error("DiagsRunner::GetCIMData, caught vor exception")}));
  EXPECT_TRUE(Access::testInstances(runner).empty());
}

TEST(GetCIMData, ARoleThatCannotBeReadEndsTheWalkWithTheResultSoFar) {
  TwoTests world;
  world.addTest("Third", "t", "3");
  world.processor.association->remove("UserOfService");
  EXPECT_EQ(Query().ask(world.runner()), "true: Memory Test,mem0,System Memory|");
  EXPECT_EQ(errorsOf(world.journal),
            lines({error("Error opening excludetestmatrix.xml"),
                   error("DiagsRunner::GetCIMData, caught vor exception")}));
  EXPECT_TRUE(Access::testInstances(world.runner()).empty());
}

struct BadRole : Row {
  void (*spoil)(ScriptedInstance& association);
  const char* message;
};

const BadRole kBadRoles[] = {
    {{"AnEmptyProperty"},
     [](ScriptedInstance& a) { a.setEmpty("ServiceProvided"); },
     "DiagsRunner::GetCIMData, caught exception"},
    {{"ANullReference"},
     [](ScriptedInstance& a) { a.set("ServiceProvided", TCIMValue::Null(ECIMType::eReference)); },
     "DiagsRunner::GetCIMData, caught vor exception"},
    {{"AText"},
     [](ScriptedInstance& a) { a.set("UserOfService", TCIMValue("no path")); },
     "DiagsRunner::GetCIMData, caught vor exception"},
    {{"NoProperty"},
     [](ScriptedInstance& a) { a.remove("ServiceProvided"); },
     "DiagsRunner::GetCIMData, caught vor exception"}};

class ARole : public testing::TestWithParam<BadRole> {};

TEST_P(ARole, ThatIsNoReferenceEndsTheWalk) {
  TwoTests world;
  GetParam().spoil(*world.memory.association);
  Query query;
  query.mode = kOtherMode;
  EXPECT_EQ(query.ask(world.runner()), "false: ");
  EXPECT_EQ(errorsOf(world.journal), lines({error(GetParam().message)}));
}

INSTANTIATE_TEST_SUITE_P(, ARole, testing::ValuesIn(kBadRoles), RowName());

TEST(GetCIMData, AnEmptyAssociationEndsTheWalk) {
  OneTest world;
  world.theClass(kAvailableService)->add({});
  Query query;
  query.mode = kOtherMode;
  EXPECT_EQ(query.ask(world.runner()), "true: Memory Test,mem0,System Memory|");
  EXPECT_EQ(errorsOf(world.journal), lines({error("DiagsRunner::GetCIMData, caught exception")}));
}

TEST(GetCIMData, KeepsTheAssociationsForTheRuns) {
  TwoTests world;
  Query().ask(world.runner());
  EXPECT_EQ(Access::testInstances(world.runner()),
            (Access::Instances{world.memory.association->handle(),
                               world.processor.association->handle()}));
}

TEST(GetCIMData, KeepsTheAssociationsOfExcludedAndUnreachableTestsToo) {
  TwoTests world;
  world.memory.service->set("Characteristics",
                            TCIMValue::Array(ECIMType::eUint16, {TCIMValue::Uint16(6)}));
  world.processor.element->remove("ElementName");
  EXPECT_EQ(Query().ask(world.runner()), "false: ");
  EXPECT_EQ(Access::testInstances(world.runner()).size(), 2U);
}

TEST(GetCIMData, DoesNotKeepTheAssociationsThatTheMatrixRemoves) {
  TwoTests world;
  world.setDataFile("excludetestmatrix.xml",
                    "<x><biosid name='abe1xx'><diagnostictest name='Memory Test'/></biosid></x>");
  EXPECT_EQ(Query().ask(world.runner()), "true: Processor Test,cpu0,Processor 0|");
  EXPECT_EQ(Access::testInstances(world.runner()),
            Access::Instances{world.processor.association->handle()});
}

TEST(GetCIMData, AddsToTheAssociationsOfFormerQueries) {
  OneTest world;
  Query().ask(world.runner());
  Query second;
  second.mode = kOtherMode;
  second.ask(world.runner());
  EXPECT_EQ(Access::testInstances(world.runner()).size(), 2U);
}

TEST(GetCIMData, KeepsNoInstancesOfOtherClasses) {
  WithRunner<> world;
  const ScriptedTest test = world.addTest("S", "d", "e");
  const InstancePtr link = world.addInstance("link", "CIM_Link", "Number", "1");
  link->set("ServiceProvided", TCIMValue(test.service->reference()));
  link->set("UserOfService", TCIMValue(test.element->reference()));
  Query query;
  query.associationClass = "CIM_Link";
  EXPECT_EQ(query.ask(world.runner()), "true: S,d,e|");
  EXPECT_TRUE(Access::testInstances(world.runner()).empty());
}

}  // namespace
}  // namespace support
