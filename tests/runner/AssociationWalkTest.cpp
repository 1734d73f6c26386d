#include <gtest/gtest.h>

#include <utility>

#include "runner/AssociationWalk.h"
#include "tests/runner/Query.h"
#include "tests/runner/Row.h"
#include "tests/support/WithRunner.h"

/// Fetching the two ends of an association, and what a walk does when that fails.
namespace support {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMReference;
using NZELVOR20::TCIMValue;

const char kServicePath[] = "root/cimv2:CIM_DiagnosticTest.Name=\"Memory Test\"";
const char kElementPath[] = "root/cimv2:CIM_LogicalDevice.DeviceID=\"mem0\"";

const std::string kServiceVor =
    error("DiagsRunner::GetCIMData, caught vor exception when get instRef1 instance");
const std::string kServiceOther =
    error("DiagsRunner::GetCIMData, caught exception when get instRef1 instance");
const std::string kServiceGivenUp = error(
    "DiagsRunner::GetCIMData, bGetResult1 false, caught exception when get instRef1 instance");
const std::string kElementVor =
    error("DiagsRunner::GetCIMData, caught vor exception when get instRef2 instance");
const std::string kElementOther =
    error("DiagsRunner::GetCIMData, caught exception when get instRef2 instance");
const std::string kElementGivenUp = error(
    "DiagsRunner::GetCIMData, bGetResult2 false, caught exception when get instRef1 instance");

/// Two tests, of which the first one is spoilt; walked in a mode that excludes nothing.
class SpoiltTest : public WithRunner<> {
 public:
  SpoiltTest() { query.mode = kOtherMode; }

  std::string ask() { return query.ask(runner()); }
  /// The calls and log lines from the class of the reference to `path` on, up to `last`.
  std::string fetchOf(const std::string& path, const std::string& last) {
    const std::string all = journal.all();
    const std::size_t from = all.find("ref " + path + ".GetClass()");
    return all.substr(from, all.find(last) - from);
  }

  ScriptedTest memory = addTest("Memory Test", "mem0", "System Memory");
  ScriptedTest processor =
      addTest("Processor Test", "cpu0", "Processor 0", "X_Service", "X_Element");
  Query query;
};

const char kBoth[] = "true: Memory Test,mem0,System Memory|Processor Test,cpu0,Processor 0|";
const char kSecondAlone[] = "true: Processor Test,cpu0,Processor 0|";

TEST(AssociationWalk, FetchesTheServiceThroughTheUpcallNamespaceWhenThatThrows) {
  SpoiltTest world;
  world.cmpi->removeInstance(kServicePath);
  EXPECT_EQ(world.ask(), kBoth);
  const std::string path = kServicePath;
  EXPECT_EQ(world.fetchOf(path, "ref " + std::string(kElementPath)),
            lines({"ref " + path + ".GetClass()",
                   "class CIM_DiagnosticTest.GetNamespace({nspID=\"cmpi\"})",
                   "ns cmpi.GetInstance(" + path + ", {nspID=\"cmpi\"})", kServiceVor,
                   "class CIM_DiagnosticTest.GetName()",
                   "class CIM_DiagnosticTest.GetNamespace({nspID=\"plugin\"})",
                   "ns cmpi.GetUpcallNamespace()",
                   "ns upcall.GetClass(\"CIM_DiagnosticTest\", {nspID=\"plugin\"})",
                   "class upcall:CIM_DiagnosticTest.GetNamespace({nspID=\"plugin\"})",
                   "ns plugin.GetInstance(" + path + ", {nspID=\"plugin\"})"}));
}

TEST(AssociationWalk, FetchesTheElementThroughTheUpcallNamespaceWhenThatThrows) {
  SpoiltTest world;
  world.cmpi->removeInstance(kElementPath);
  EXPECT_EQ(world.ask(), kBoth);
  const std::string path = kElementPath;
  EXPECT_EQ(world.fetchOf(path, "inst service1.GetProperty"),
            lines({"ref " + path + ".GetClass()",
                   "class CIM_LogicalDevice.GetNamespace({nspID=\"cmpi\"})",
                   "ns cmpi.GetInstance(" + path + ", {nspID=\"cmpi\"})", kElementVor,
                   "class CIM_LogicalDevice.GetName()",
                   "class CIM_LogicalDevice.GetNamespace({nspID=\"plugin\"})",
                   "ns cmpi.GetUpcallNamespace()",
                   "ns upcall.GetClass(\"CIM_LogicalDevice\", {nspID=\"plugin\"})",
                   "class upcall:CIM_LogicalDevice.GetNamespace({nspID=\"plugin\"})",
                   "ns plugin.GetInstance(" + path + ", {nspID=\"plugin\"})"}));
}

TEST(AssociationWalk, ReadsThePropertiesOfWhatTheUpcallNamespaceFound) {
  SpoiltTest world;
  world.cmpi->removeInstance(kElementPath);
  const InstancePtr found = world.memory.element->copyAs("found");
  found->set("ElementName", TCIMValue("Other Memory"));
  world.plugin->setInTurn(kElementPath, {found});
  EXPECT_EQ(world.ask(), "true: Memory Test,mem0,Other Memory|Processor Test,cpu0,Processor 0|");
}

/// A call on the direct way, how it fails, and what is logged.
struct DirectFailure {
  const char* call;
  Fault fault;
  const std::string* message;
};

std::ostream& operator<<(std::ostream& stream, const DirectFailure& failure) {
  return stream << failure.call << ": " << nameOf(failure.fault);
}

class TheDirectWay : public testing::TestWithParam<DirectFailure> {};

TEST_P(TheDirectWay, IsFollowedByTheOneThroughTheUpcallNamespace) {
  SpoiltTest world;
  DiagsRunner& runner = world.runner();
  world.script.failOn(GetParam().call, GetParam().fault);
  EXPECT_EQ(world.query.ask(runner), kBoth);
  EXPECT_EQ(errorsOf(world.journal), lines({*GetParam().message}));
}

INSTANTIATE_TEST_SUITE_P(
    ToTheService, TheDirectWay,
    testing::Values(
        DirectFailure{"class CIM_DiagnosticTest.GetNamespace", Fault::vorException, &kServiceVor},
        DirectFailure{"class CIM_DiagnosticTest.GetNamespace", Fault::standardException,
                      &kServiceOther},
        DirectFailure{"class CIM_DiagnosticTest.GetNamespace", Fault::otherException,
                      &kServiceOther},
        DirectFailure{"class CIM_DiagnosticTest.GetNamespace", Fault::emptyHandle, &kServiceOther},
        DirectFailure{"ns cmpi.GetInstance", Fault::vorException, &kServiceVor},
        DirectFailure{"ns cmpi.GetInstance", Fault::standardException, &kServiceOther},
        DirectFailure{"ns cmpi.GetInstance", Fault::otherException, &kServiceOther},
        DirectFailure{"ns cmpi.GetInstance", Fault::emptyHandle, &kServiceOther}));

INSTANTIATE_TEST_SUITE_P(ToTheElement, TheDirectWay,
                         testing::Values(DirectFailure{"class CIM_LogicalDevice.GetNamespace",
                                                       Fault::vorException, &kElementVor},
                                         DirectFailure{"class CIM_LogicalDevice.GetNamespace",
                                                       Fault::standardException, &kElementOther},
                                         DirectFailure{"class CIM_LogicalDevice.GetNamespace",
                                                       Fault::otherException, &kElementOther},
                                         DirectFailure{"class CIM_LogicalDevice.GetNamespace",
                                                       Fault::emptyHandle, &kElementOther},
                                         DirectFailure{"GetInstance(root/cimv2:CIM_LogicalDevice",
                                                       Fault::vorException, &kElementVor},
                                         DirectFailure{"GetInstance(root/cimv2:CIM_LogicalDevice",
                                                       Fault::standardException, &kElementOther},
                                         DirectFailure{"GetInstance(root/cimv2:CIM_LogicalDevice",
                                                       Fault::otherException, &kElementOther},
                                         DirectFailure{"GetInstance(root/cimv2:CIM_LogicalDevice",
                                                       Fault::emptyHandle, &kElementOther}));

/// A reference without a class leaves no name to look up in the upcall namespace.
class AReferenceWithoutAClass : public testing::TestWithParam<DirectFailure> {};

TEST_P(AReferenceWithoutAClass, IsGivenUp) {
  SpoiltTest world;
  DiagsRunner& runner = world.runner();
  world.script.failOn(GetParam().call, GetParam().fault);
  EXPECT_EQ(world.query.ask(runner), kSecondAlone);
  const bool isService = GetParam().message == &kServiceVor || GetParam().message == &kServiceOther;
  EXPECT_EQ(errorsOf(world.journal),
            lines({*GetParam().message, isService ? kServiceGivenUp : kElementGivenUp}));
}

INSTANTIATE_TEST_SUITE_P(
    , AReferenceWithoutAClass,
    testing::Values(
        DirectFailure{"Name=\"Memory Test\".GetClass()", Fault::vorException, &kServiceVor},
        DirectFailure{"Name=\"Memory Test\".GetClass()", Fault::standardException, &kServiceOther},
        DirectFailure{"Name=\"Memory Test\".GetClass()", Fault::otherException, &kServiceOther},
        DirectFailure{"Name=\"Memory Test\".GetClass()", Fault::emptyHandle, &kServiceOther},
        DirectFailure{"DeviceID=\"mem0\".GetClass()", Fault::vorException, &kElementVor},
        DirectFailure{"DeviceID=\"mem0\".GetClass()", Fault::standardException, &kElementOther},
        DirectFailure{"DeviceID=\"mem0\".GetClass()", Fault::otherException, &kElementOther},
        DirectFailure{"DeviceID=\"mem0\".GetClass()", Fault::emptyHandle, &kElementOther}));

/// The calls of the way through the upcall namespace.
const char* const kCallsOfTheSecondWay[] = {
    "class CIM_DiagnosticTest.GetName()",
    "class CIM_DiagnosticTest.GetNamespace({nspID=\"plugin\"})",
    "ns cmpi.GetUpcallNamespace()",
    "ns upcall.GetClass(",
    "class upcall:CIM_DiagnosticTest.GetNamespace",
    "ns plugin.GetInstance("};

class TheSecondWay : public testing::TestWithParam<std::tuple<const char*, Fault>> {};

TEST_P(TheSecondWay, ThatFailsTooSkipsTheAssociation) {
  const auto [call, fault] = GetParam();
  SpoiltTest world;
  world.cmpi->removeInstance(kServicePath);
  DiagsRunner& runner = world.runner();
  world.script.failOn(call, fault);
  const std::string answer = world.query.ask(runner);
  if (world.script.notApplicable()) {
    EXPECT_EQ(answer, kBoth) << "a name is no handle";
    return;
  }
  EXPECT_EQ(answer, kSecondAlone);
  EXPECT_EQ(errorsOf(world.journal), lines({kServiceVor, kServiceGivenUp}));
}

INSTANTIATE_TEST_SUITE_P(, TheSecondWay,
                         testing::Combine(testing::ValuesIn(kCallsOfTheSecondWay),
                                          testing::ValuesIn(kEveryFault)));

TEST(AssociationWalk, AClassThatNoCmpiProviderServesHasNoSecondWay) {
  SpoiltTest world;
  world.theClass("CIM_DiagnosticTest")->serveBy(world.host);
  world.host->removeInstance(kServicePath);
  EXPECT_EQ(world.ask(), kSecondAlone);
  EXPECT_EQ(errorsOf(world.journal), lines({kServiceVor, kServiceGivenUp}));
}

TEST(AssociationWalk, AnElementThatCannotBeFetchedEitherWaySkipsTheAssociation) {
  SpoiltTest world;
  world.cmpi->removeInstance(kElementPath);
  world.plugin->removeInstance(kElementPath);
  EXPECT_EQ(world.ask(), kSecondAlone);
  EXPECT_EQ(errorsOf(world.journal), lines({kElementVor, kElementGivenUp}));
}

TEST(AssociationWalk, AServiceThatCannotBeFetchedLeavesTheElementAlone) {
  SpoiltTest world;
  world.cmpi->removeInstance(kServicePath);
  world.plugin->removeInstance(kServicePath);
  EXPECT_EQ(world.ask(), kSecondAlone);
  EXPECT_EQ(world.journal.calls().find("ref " + std::string(kElementPath)), std::string::npos);
}

TEST(AssociationWalk, AnEmptyReferenceIsSkipped) {
  SpoiltTest world;
  world.memory.association->set("ServiceProvided", TCIMValue(TCIMReference({}, {})), "nothing");
  EXPECT_EQ(world.ask(), kSecondAlone);
  EXPECT_EQ(errorsOf(world.journal), lines({kServiceVor, kServiceGivenUp}));
}

struct NamingFailure : Row {
  void (*spoil)(ScriptedTest& test);
  const char* message;
};

const char kNamingVor[] = "DiagsRunner::GetCIMData, vor caught exception when diagnostic ";
const char kNamingOther[] = "DiagsRunner::GetCIMData, caught exception when diagnostic";

const NamingFailure kNamingFailures[] = {
    {{"NoName"}, [](ScriptedTest& t) { t.service->remove("Name"); }, kNamingVor},
    {{"AnEmptyName"}, [](ScriptedTest& t) { t.service->setEmpty("Name"); }, kNamingOther},
    {{"NoDeviceID"}, [](ScriptedTest& t) { t.element->remove("DeviceID"); }, kNamingVor},
    {{"AnEmptyDeviceID"}, [](ScriptedTest& t) { t.element->setEmpty("DeviceID"); }, kNamingOther},
    {{"NoElementName"}, [](ScriptedTest& t) { t.element->remove("ElementName"); }, kNamingVor},
    {{"AnEmptyElementName"},
     [](ScriptedTest& t) { t.element->setEmpty("ElementName"); },
     kNamingOther}};

class ATestWithoutAnIdentifier : public testing::TestWithParam<NamingFailure> {};

TEST_P(ATestWithoutAnIdentifier, IsSkipped) {
  SpoiltTest world;
  GetParam().spoil(world.memory);
  EXPECT_EQ(world.ask(), kSecondAlone);
  EXPECT_EQ(errorsOf(world.journal), lines({error(GetParam().message)}));
}

INSTANTIATE_TEST_SUITE_P(, ATestWithoutAnIdentifier, testing::ValuesIn(kNamingFailures), RowName());

TEST(AssociationWalk, APegasusNamespaceThatCannotBeReadSkipsTheTest) {
  for (const Fault fault : {Fault::vorException, Fault::standardException, Fault::otherException}) {
    SCOPED_TRACE(nameOf(fault));
    SpoiltTest world;
    DiagsRunner& runner = world.runner();
    world.query.family = TCIMValue("pegasus");
    world.script.failOn("association1.GetPegasusNSPStr", fault);
    EXPECT_EQ(world.query.ask(runner), kSecondAlone);
    EXPECT_EQ(errorsOf(world.journal),
              lines({error(fault == Fault::vorException ? kNamingVor : kNamingOther)}));
    EXPECT_EQ(DiagsRunnerAccess::diagPegasusNS(runner).size(), 1U);
  }
}

}  // namespace
}  // namespace support
