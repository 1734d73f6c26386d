#include <gtest/gtest.h>

#include "runner/PropertyLines.h"
#include "tests/runner/Row.h"
#include "tests/support/Outcome.h"
#include "tests/support/WithRunner.h"

namespace support {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

struct Rendering : Row {
  TCIMValue value;
  std::string line;
};

TCIMValue texts(std::vector<TCIMValue> elements) {
  return TCIMValue::Array(ECIMType::eString, std::move(elements));
}

const Rendering kRenderings[] = {
    {{"AText"}, TCIMValue("abc"), "P : abc\n"},
    {{"AnEmptyText"}, TCIMValue(""), "P : \n"},
    {{"ANumberInDecimal"}, TCIMValue::Uint32(255), "P : 255\n"},
    {{"ABoolean"}, TCIMValue::Boolean(true), "P : true\n"},
    {{"NoLineForNull"}, TCIMValue::Null(ECIMType::eString), ""},
    {{"NoLineForANullArray"}, TCIMValue::Null(ECIMType::eString, true), ""},
    {{"AnArray"}, texts({TCIMValue("a"), TCIMValue("b"), TCIMValue("c")}), "P : {a,b,c}\n"},
    {{"AnArrayOfOne"}, texts({TCIMValue("a")}), "P : {a}\n"},
    {{"AnEmptyArray"}, texts({}), "P : {}\n"},
    {{"AnArrayThatBeginsWithAnEmptyText"}, texts({TCIMValue(""), TCIMValue("b")}), "P : {,b}\n"},
    {{"AnArrayOfEmptyTexts"}, texts({TCIMValue(""), TCIMValue(""), TCIMValue("")}), "P : {,,}\n"},
    {{"AnArrayOfNumbers"},
     TCIMValue::Array(ECIMType::eUint16, {TCIMValue::Uint16(6), TCIMValue::Uint16(10)}),
     "P : {6,10}\n"}};

class APropertyLine : public testing::TestWithParam<Rendering> {};

TEST_P(APropertyLine, RendersTheValue) {
  WithRunner<> world;
  const InstancePtr instance = ScriptedInstance::makePlain("disk", {});
  instance->set("P", GetParam().value, "not this rendering");
  std::string out;
  world.runner().EnumProperties(instance->handle(), out);
  EXPECT_EQ(out, GetParam().line);
}

INSTANTIATE_TEST_SUITE_P(, APropertyLine, testing::ValuesIn(kRenderings), RowName());

TEST(EnumProperties, AppendsTheLinesInTheOrderOfTheProperties) {
  WithRunner<> world;
  const InstancePtr instance = world.addInstance("disk", "CIM_Disk", "DeviceID", "sda");
  instance->set("Size", TCIMValue::Uint64(4096));
  instance->set("Absent", TCIMValue::Null(ECIMType::eString));
  instance->set("Alias", TCIMValue("boot"));
  std::string out = "before\n";
  world.runner().EnumProperties(instance->handle(), out);
  EXPECT_EQ(out, "before\nDeviceID : sda\nSize : 4096\nAlias : boot\n");
}

TEST(EnumProperties, LogsItsNameFirstAndAsksWithoutOptions) {
  WithRunner<> world;
  const InstancePtr instance = world.addInstance("disk", "CIM_Disk", "DeviceID", "sda");
  std::string out;
  world.runner().EnumProperties(instance->handle(), out);
  EXPECT_EQ(world.journal.all(),
            lines({trace("DiagsRunner::EnumerateProperties"), "inst disk.EnumerateProperties({})",
                   "prop disk.DeviceID.GetValue({})", "prop disk.DeviceID.GetName()"}));
}

TEST(EnumProperties, PassesOverAnEmptyProperty) {
  WithRunner<> world;
  const InstancePtr instance = world.addInstance("disk", "CIM_Disk", "DeviceID", "sda");
  instance->setEmpty("Model");
  instance->set("Alias", TCIMValue("boot"));
  std::string out;
  world.runner().EnumProperties(instance->handle(), out);
  EXPECT_EQ(out, "DeviceID : sda\nAlias : boot\n");
}

TEST(EnumProperties, SaysThatAnInstanceIsMissing) {
  WithRunner<> world;
  std::string out = "before";
  const Outcome outcome =
      outcomeOf([&] { return world.runner().EnumProperties({}, out), std::string(); });
  EXPECT_EQ(outcome.kind, Outcome::Kind::standardException);
  EXPECT_EQ(outcome.text, "diagsrunner: no instance");
  EXPECT_EQ(out, "before");
}

TEST(EnumProperties, PassesOnWhatAPropertyThrows) {
  WithRunner<> world;
  const InstancePtr instance = world.addInstance("disk", "CIM_Disk", "DeviceID", "sda");
  DiagsRunner& runner = world.runner();
  world.script.failOn("GetValue", Fault::otherException);
  std::string out;
  EXPECT_THROW(runner.EnumProperties(instance->handle(), out), int);
}

}  // namespace
}  // namespace support
