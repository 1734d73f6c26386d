#include <gtest/gtest.h>

#include "runner/Properties.h"
#include "tests/support/Outcome.h"
#include "tests/support/World.h"

namespace diagsrunner {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;
using NZELVOR20::TOptionsMap;
using support::Outcome;
using support::World;

/// A world with a disk whose properties are read.
class DiskProperties : public World {
 public:
  support::InstancePtr disk = addInstance("disk", "CIM_Disk", "DeviceID", "sda");
  const TOptionsMap options{{"nspID", TCIMValue("cmpi")}};
};

Outcome outcomeOfText(const InstanceHandle& instance, const char* name) {
  return support::outcomeOf([&] { return propertyText(instance, name); });
}

TEST(PropertyText, IsTheValueInDecimal) {
  DiskProperties world;
  world.disk->set("Size", TCIMValue::Uint32(255), "rendered");
  EXPECT_EQ(propertyText(world.disk->handle(), "Size", world.options), "255");
  EXPECT_EQ(world.journal.calls(),
            support::lines({"inst disk.GetProperty(\"Size\", {nspID=\"cmpi\"})",
                            "prop disk.Size.GetValue({nspID=\"cmpi\"})"}));
}

TEST(PropertyText, NamesAPropertyOrInstanceThatIsEmpty) {
  DiskProperties world;
  world.disk->setEmpty("Size");
  const Outcome property = outcomeOfText(world.disk->handle(), "Size");
  EXPECT_EQ(property.kind, Outcome::Kind::standardException);
  EXPECT_EQ(property.text, "diagsrunner: no property Size");
  EXPECT_EQ(outcomeOfText({}, "Size").text, "diagsrunner: no instance to read property Size of");
}

TEST(PropertyText, PassesOnThatThereIsNoSuchProperty) {
  DiskProperties world;
  EXPECT_EQ(outcomeOfText(world.disk->handle(), "Size").kind, Outcome::Kind::vorException);
}

TEST(RenderedProperty, IsThePropertysOwnText) {
  DiskProperties world;
  world.disk->set("Size", TCIMValue::Uint32(255), "rendered");
  EXPECT_EQ(renderedProperty(world.disk->handle(), "Size"), "rendered");
}

TEST(ValueOrNull, TakesAnEmptyPropertyAndAnEmptyInstanceForNull) {
  DiskProperties world;
  world.disk->setEmpty("Size");
  EXPECT_TRUE(valueOrNull(world.disk->handle(), "Size").IsNull());
  EXPECT_TRUE(valueOrNull({}, "Size").IsNull());
  EXPECT_EQ(valueOrNull(world.disk->handle(), "DeviceID"), TCIMValue("sda"));
}

TEST(ReferenceProperty, IsTheReferenceThatThePropertyHolds) {
  DiskProperties world;
  world.disk->set("Other", TCIMValue(world.disk->reference()));
  EXPECT_EQ(support::describe(referenceProperty(world.disk->handle(), "Other")),
            "root/cimv2:CIM_Disk.DeviceID=\"sda\"");
  EXPECT_THROW(referenceProperty(world.disk->handle(), "DeviceID"), std::exception);
}

}  // namespace
}  // namespace diagsrunner
