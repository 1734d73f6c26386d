#include <gtest/gtest.h>

#include "framework/ICIMProperty.h"
#include "framework/TVORException.h"
#include "tests/support/ScriptedInstance.h"
#include "tests/support/World.h"

namespace support {
namespace {

using NZELVOR20::ICIMInstance;
using NZELVOR20::ICIMProperty;
using NZELVOR20::TCIMValue;
using NZELVOR20::TCMPIInstance;
using NZELVOR20::TParameterMap;
using NZELVOR20::TVORException;

constexpr char kDiskPath[] = "root/cimv2:CIM_Disk.DeviceID=\"sda\"";

class ScriptedInstanceTest : public testing::Test {
 protected:
  World world;
  InstancePtr disk = world.addInstance("disk", "CIM_Disk", "DeviceID", "sda");
  boost::shared_ptr<ICIMInstance> handle = disk->handle();
};

TEST_F(ScriptedInstanceTest, AFetchOfAPropertyIsRecordedWithItsOptions) {
  handle->GetProperty("DeviceID", {{"nspID", TCIMValue("cmpi")}})->GetValue({});
  EXPECT_EQ(world.journal.all(), lines({"inst disk.GetProperty(\"DeviceID\", {nspID=\"cmpi\"})",
                                        "prop disk.DeviceID.GetValue({})"}));
}

TEST_F(ScriptedInstanceTest, APropertyIsRenderedAsItsValueUnlessToldOtherwise) {
  disk->set("Size", TCIMValue::Uint16(7));
  disk->set("State", TCIMValue::Uint16(2), "OK");
  EXPECT_EQ(handle->GetProperty("Size", {})->ToString(), "7");
  EXPECT_EQ(handle->GetProperty("State", {})->ToString(), "OK");
  EXPECT_EQ(handle->GetProperty("State", {})->GetValue({}).ToUint16(), 2);
}

TEST_F(ScriptedInstanceTest, ThePropertysOwnCallsAreRecorded) {
  const boost::shared_ptr<ICIMProperty> property = handle->GetProperty("DeviceID", {});
  world.journal.clear();
  EXPECT_EQ(property->GetName(), "DeviceID");
  EXPECT_EQ(property->GetType(), NZELVOR20::ECIMType::eString);
  EXPECT_FALSE(property->IsArray());
  property->ToString();
  EXPECT_THROW(property->GetQualifier("Key", {}), TVORException);
  EXPECT_EQ(world.journal.calls(),
            lines({"prop disk.DeviceID.GetName()", "prop disk.DeviceID.GetType()",
                   "prop disk.DeviceID.IsArray()", "prop disk.DeviceID.ToString()",
                   "prop disk.DeviceID.GetQualifier(\"Key\", {})"}));
}

TEST_F(ScriptedInstanceTest, AnUnknownPropertyThrowsAndAnEmptyOneIsEmpty) {
  disk->setEmpty("Hollow");
  EXPECT_THROW(handle->GetProperty("Unknown", {}), TVORException);
  EXPECT_FALSE(handle->GetProperty("Hollow", {}));
}

TEST_F(ScriptedInstanceTest, ARemovedPropertyIsUnknown) {
  disk->remove("DeviceID");
  EXPECT_THROW(handle->GetProperty("DeviceID", {}), TVORException);
}

TEST_F(ScriptedInstanceTest, ValuesInTurnChangeFromFetchToFetchAndTheLastOneStays) {
  disk->setInTurn("State", {TCIMValue::Uint16(3), TCIMValue::Uint16(7)});
  const boost::shared_ptr<ICIMProperty> first = handle->GetProperty("State", {});
  EXPECT_EQ(handle->GetProperty("State", {})->GetValue({}).ToUint16(), 7);
  EXPECT_EQ(handle->GetProperty("State", {})->GetValue({}).ToUint16(), 7);
  EXPECT_EQ(first->GetValue({}).ToUint16(), 3);
}

TEST_F(ScriptedInstanceTest, SettingAPropertyIsRecordedAndLasts) {
  handle->SetProperty("RecordData", TCIMValue("a\n"), {});
  EXPECT_EQ(world.journal.all(), lines({"inst disk.SetProperty(\"RecordData\", \"a\\n\", {})"}));
  EXPECT_EQ(disk->value("RecordData").ToText(), "a\n");
  EXPECT_EQ(handle->GetProperty("RecordData", {})->ToString(), "a\n");
}

TEST_F(ScriptedInstanceTest, ItsPathLeadsToItsClass) {
  const NZELVOR20::TCIMReference path = handle->GetObjectPath({});
  EXPECT_EQ(path.GetPath(), kDiskPath);
  EXPECT_EQ(path.GetClass()->GetName(), "CIM_Disk");
  const std::string ref = std::string("ref ") + kDiskPath;
  EXPECT_EQ(world.journal.all(), lines({"inst disk.GetObjectPath({})", ref + ".GetPath()",
                                        ref + ".GetClass()", "class CIM_Disk.GetName()"}));
}

TEST_F(ScriptedInstanceTest, APathCanFailToLeadToItsClass) {
  world.script.failOn(".GetClass()", Fault::emptyHandle);
  EXPECT_FALSE(disk->reference().GetClass());
}

TEST_F(ScriptedInstanceTest, APathKnowsItsPartsAndRecordsWhoAsks) {
  const NZELVOR20::TCIMReference path = disk->reference();
  EXPECT_EQ(path.GetNamespace(), world.cmpi->handle());
  EXPECT_EQ(path.GetNamespaceName(), "root/cimv2");
  EXPECT_EQ(path.GetClassName(), "CIM_Disk");
  EXPECT_EQ(path.GetKeys().at("DeviceID").ToText(), "sda");
  const std::string ref = std::string("ref ") + kDiskPath;
  EXPECT_EQ(world.journal.calls(), lines({ref + ".GetNamespace()", ref + ".GetNamespaceName()",
                                          ref + ".GetClassName()", ref + ".GetKeys()"}));
}

TEST_F(ScriptedInstanceTest, OnlyTheCmpiKindIsATCMPIInstance) {
  const InstancePtr plain = world.addPlainInstance("plain", "CIM_Disk", "DeviceID", "sdb");
  EXPECT_TRUE(boost::dynamic_pointer_cast<TCMPIInstance>(handle));
  EXPECT_FALSE(boost::dynamic_pointer_cast<TCMPIInstance>(plain->handle()));
}

TEST_F(ScriptedInstanceTest, AMethodTakesAndLeavesItsParameters) {
  disk->setMethodOutput("RunDiagnostic", {{"Job", TCIMValue(disk->reference())}});
  TParameterMap parameters{{"ManagedElement", TCIMValue("x")}};
  const auto cmpi = boost::dynamic_pointer_cast<TCMPIInstance>(handle);
  EXPECT_EQ(cmpi->InvokeMethod("RunDiagnostic", parameters, {}).ToUint64(), 0U);
  EXPECT_EQ(world.journal.all(),
            lines({"inst disk.InvokeMethod(\"RunDiagnostic\", {ManagedElement=\"x\"}, {})"}));
  EXPECT_EQ(describe(parameters), std::string("{Job=") + kDiskPath + "}");
}

TEST_F(ScriptedInstanceTest, AFailingMethodLeavesItsParametersAsTheyWere) {
  disk->setMethodOutput("RunDiagnostic", {});
  world.script.failOn("InvokeMethod", Fault::vorException);
  TParameterMap parameters{{"ManagedElement", TCIMValue("x")}};
  const auto cmpi = boost::dynamic_pointer_cast<TCMPIInstance>(handle);
  EXPECT_THROW(cmpi->InvokeMethod("RunDiagnostic", parameters, {}), TVORException);
  EXPECT_EQ(parameters.size(), 1U);
  EXPECT_THROW(cmpi->InvokeMethod("Unknown", parameters, {}), TVORException);
}

TEST_F(ScriptedInstanceTest, PropertiesAreEnumeratedInTheOrderTheyWereSet) {
  disk->set("B", TCIMValue("b"));
  disk->set("A", TCIMValue("a"));
  std::string names;
  handle->EnumerateProperties(
      [&](boost::shared_ptr<ICIMProperty> property) {
        names += property->GetName() + " ";
        return property->GetName() != "B";
      },
      {});
  EXPECT_EQ(names, "DeviceID B ");
}

TEST_F(ScriptedInstanceTest, AnswersItsPegasusTextAndItsClass) {
  disk->setPegasusText("root/peg");
  EXPECT_EQ(handle->GetPegasusNSPStr(), "root/peg");
  EXPECT_TRUE(handle->GetClass({}));
  EXPECT_EQ(world.journal.all(), lines({"inst disk.GetPegasusNSPStr()", "inst disk.GetClass({})"}));
}

}  // namespace
}  // namespace support
