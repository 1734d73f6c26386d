#include <gtest/gtest.h>

#include "exclusion/ServiceExclusion.h"
#include "framework/TCIMValue.h"
#include "tests/runner/Row.h"
#include "tests/support/WithRunner.h"

namespace support {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;
using Names = std::vector<std::string>;

const std::string kVorLine =
    lines({error("DiagsRunner::GetCIMData, get vor exception when retType == EENUMTEST ")});
const std::string kOtherLine =
    lines({error("DiagsRunner::GetCIMData, get exception when retType == EENUMTEST")});

TCIMValue numbers(std::vector<TCIMValue> elements) {
  return TCIMValue::Array(ECIMType::eUint16, std::move(elements));
}

/// A service "Memory Test" of the class "X_MemoryTest", without characteristics.
class Excluding : public World {
 public:
  Excluding() {
    service->set("CreationClassName", TCIMValue("X_MemoryTest"));
    service->set("Characteristics", TCIMValue::Null(ECIMType::eUint16, true));
  }

  bool excludes(const Names& entries) {
    return diagsrunner::isServiceExcluded(service->handle(), entries,
                                          {{"nspID", TCIMValue("cmpi")}});
  }

  InstancePtr service = addInstance("service", "X_MemoryTest", "Name", "Memory Test");
};

struct Match : Row {
  const char* serviceName;
  const char* className;
  Names entries;
  bool isExcluded;
};

const Match kMatches[] = {
    {{"NoEntries"}, "Memory Test", "X_MemoryTest", {}, false},
    {{"TheEntryIsTheName"}, "Memory Test", "X_MemoryTest", {"Memory Test"}, true},
    {{"TheNameIsAPartOfTheEntry"}, "Memory Test", "", {"zel:Memory Test:diag service"}, true},
    {{"TheEntryIsAPartOfTheName"}, "Memory Test", "X", {"Memory"}, false},
    {{"TheNameInAnotherCase"}, "Memory Test", "X", {"memory test"}, false},
    {{"TheLastOfThreeEntries"}, "Memory Test", "X", {"a", "b", "Memory Test"}, true},
    {{"TheEntryIsTheClassName"}, "Memory Test", "X_MemoryTest", {"X_MemoryTest"}, true},
    {{"TheClassNameIsAPartOfTheEntry"}, "Disk", "X_T", {"fio:X_T 2"}, true},
    {{"TheEntryIsAPartOfTheClassName"}, "Disk", "X_MemoryTest", {"X_Mem"}, false},
    {{"AnEmptyClassNameNeverMatches"}, "M", "", {"anything", ""}, false},
    {{"AnEmptyNameMatchesAnyEntry"}, "", "", {"anything"}, true},
    {{"AnEmptyNameMatchesAnEmptyEntry"}, "", "", {""}, true},
    {{"AnEmptyNameWithoutEntries"}, "", "", {}, false},
    {{"AnEmptyEntryHoldsNoName"}, "Memory Test", "X_MemoryTest", {""}, false}};

class AService : public testing::TestWithParam<Match> {};

TEST_P(AService, IsExcludedWhenAnEntryHoldsItsNameOrItsClassName) {
  Excluding world;
  world.service->set("Name", TCIMValue(GetParam().serviceName));
  world.service->set("CreationClassName", TCIMValue(GetParam().className));
  EXPECT_EQ(world.excludes(GetParam().entries), GetParam().isExcluded);
  EXPECT_EQ(world.journal.log(), "");
}

INSTANTIATE_TEST_SUITE_P(, AService, testing::ValuesIn(kMatches), RowName());

struct Characteristic : Row {
  TCIMValue value;
  bool isExcluded;
  const std::string* log;
};

const std::string kNoLine;

const Characteristic kCharacteristics[] = {
    {{"Null"}, TCIMValue::Null(ECIMType::eUint16, true), false, &kNoLine},
    {{"NoneAtAll"}, numbers({}), false, &kNoLine},
    {{"SixAlone"}, numbers({TCIMValue::Uint16(6)}), true, &kNoLine},
    {{"SixAmongOthers"},
     numbers({TCIMValue::Uint16(2), TCIMValue::Uint16(6), TCIMValue::Uint16(8)}),
     true,
     &kNoLine},
    {{"OthersAlone"}, numbers({TCIMValue::Uint16(5), TCIMValue::Uint16(66)}), false, &kNoLine},
    {{"SixInAnotherType"},
     TCIMValue::Array(ECIMType::eUint32, {TCIMValue::Uint32(6)}),
     true,
     &kNoLine},
    {{"ANumberOfMoreThan16Bits"},
     TCIMValue::Array(ECIMType::eUint32, {TCIMValue::Uint32(65542)}),
     false,
     &kVorLine},
    {{"ANullBeforeSix"},
     numbers({TCIMValue::Null(ECIMType::eUint16), TCIMValue::Uint16(6)}),
     false,
     &kVorLine},
    {{"ANullBehindSix"},
     numbers({TCIMValue::Uint16(6), TCIMValue::Null(ECIMType::eUint16)}),
     true,
     &kNoLine},
    {{"NoArray"}, TCIMValue::Uint16(6), false, &kVorLine}};

class APackage : public testing::TestWithParam<Characteristic> {};

TEST_P(APackage, IsKnownByTheCharacteristicSix) {
  Excluding world;
  world.service->set("Characteristics", GetParam().value);
  EXPECT_EQ(world.excludes({"other"}), GetParam().isExcluded);
  EXPECT_EQ(world.journal.log(), *GetParam().log);
}

INSTANTIATE_TEST_SUITE_P(, APackage, testing::ValuesIn(kCharacteristics), RowName());

TEST(ServiceExclusion, APackageIsExcludedWithoutAnyEntry) {
  Excluding world;
  world.service->set("Characteristics", numbers({TCIMValue::Uint16(6)}));
  EXPECT_TRUE(world.excludes({}));
  EXPECT_EQ(world.journal.calls(),
            lines({"inst service.GetProperty(\"Characteristics\", {nspID=\"cmpi\"})",
                   "prop service.Characteristics.GetValue({nspID=\"cmpi\"})"}));
}

TEST(ServiceExclusion, ReadsTheNameThenTheClassNameThenTheCharacteristics) {
  Excluding world;
  EXPECT_FALSE(world.excludes({"other"}));
  EXPECT_EQ(world.journal.all(),
            lines({"inst service.GetProperty(\"Name\", {nspID=\"cmpi\"})",
                   "prop service.Name.GetValue({nspID=\"cmpi\"})",
                   "inst service.GetProperty(\"CreationClassName\", {nspID=\"cmpi\"})",
                   "prop service.CreationClassName.GetValue({nspID=\"cmpi\"})",
                   "inst service.GetProperty(\"Characteristics\", {nspID=\"cmpi\"})",
                   "prop service.Characteristics.GetValue({nspID=\"cmpi\"})"}));
}

TEST(ServiceExclusion, ComparesTheNameInDecimal) {
  Excluding world;
  world.service->set("Name", TCIMValue::Uint32(255), "rendered");
  EXPECT_TRUE(world.excludes({"test 255"}));
}

TEST(ServiceExclusion, ANameThatIsNullCountsAsAnEmptyOne) {
  Excluding world;
  world.service->set("Name", TCIMValue::Null(ECIMType::eString));
  EXPECT_TRUE(world.excludes({"anything"}));
}

TEST(ServiceExclusion, AnEmptyPropertyOfCharacteristicsCountsAsNull) {
  Excluding world;
  world.service->setEmpty("Characteristics");
  EXPECT_FALSE(world.excludes({"other"}));
  EXPECT_EQ(world.journal.log(), "");
}

TEST(ServiceExclusion, ANameOrClassNameThatIsEmptyOrMissingIsLoggedAndLeavesTheDecision) {
  for (const char* name : {"Name", "CreationClassName"}) {
    SCOPED_TRACE(name);
    Excluding world;
    world.service->setEmpty(name);
    EXPECT_FALSE(world.excludes({"other"}));
    EXPECT_EQ(world.journal.log(), kOtherLine);
    world.journal.clear();
    world.service->remove(name);
    EXPECT_FALSE(world.excludes({"other"}));
    EXPECT_EQ(world.journal.log(), kVorLine);
  }
}

TEST(ServiceExclusion, WhatFailsAfterAMatchLeavesTheServiceExcluded) {
  for (const char* name : {"CreationClassName", "Characteristics"}) {
    SCOPED_TRACE(name);
    Excluding world;
    world.service->remove(name);
    EXPECT_TRUE(world.excludes({"Memory Test"}));
    EXPECT_EQ(world.journal.log(), kVorLine);
  }
}

TEST(ServiceExclusion, AFailureThatIsNoFrameworkExceptionHasItsOwnLine) {
  for (const Fault fault : {Fault::standardException, Fault::otherException}) {
    Excluding world;
    world.script.failOn("Characteristics", fault);
    EXPECT_FALSE(world.excludes({}));
    EXPECT_EQ(world.journal.log(), kOtherLine);
  }
}

/// The decision as the listing shows it.
class Listed : public WithRunner<> {
 public:
  void exclude(const std::string& name) {
    setDataFile("excludetests.xml", "<vor version='1'><test name='" + name + "'/></vor>");
  }
  std::string list() { return runner().EnumerateDiagTests(""); }

  ScriptedTest test = addTest("Mem", "d", "e", "X_Mem");
  ScriptedTest other = addTest("Other", "d", "e", "X_Other");
};

TEST(TheListing, LeavesOutAServiceWhoseNameAnEntryHolds) {
  Listed world;
  world.exclude("zel:Mem:diag service");
  EXPECT_EQ(world.list(), "Other,d,e|");
}

TEST(TheListing, LeavesOutAServiceWhoseClassNameAnEntryHolds) {
  Listed world;
  world.exclude("all of X_Mem");
  EXPECT_EQ(world.list(), "Other,d,e|");
}

TEST(TheListing, KeepsAServiceWhoseLongerNameHoldsAnEntry) {
  Listed world;
  world.exclude("Me");
  EXPECT_EQ(world.list(), "Mem,d,e|Other,d,e|");
}

TEST(TheListing, LeavesOutAServiceWithoutANameAsSoonAsThereIsAnEntry) {
  Listed world;
  world.test.service->set("Name", TCIMValue(""));
  world.exclude("anything");
  EXPECT_EQ(world.list(), "Other,d,e|");
}

TEST(TheListing, LeavesOutAPackageWhateverTheListHolds) {
  Listed world;
  world.test.service->set("Characteristics", numbers({TCIMValue::Uint16(6)}));
  EXPECT_EQ(world.list(), "Other,d,e|");
}

TEST(TheListing, KeepsAServiceThatCannotBeJudged) {
  Listed world;
  world.test.service->remove("Characteristics");
  EXPECT_EQ(world.list(), "Mem,d,e|Other,d,e|");
  EXPECT_NE(world.journal.log().find(kVorLine), std::string::npos);
}

}  // namespace
}  // namespace support
