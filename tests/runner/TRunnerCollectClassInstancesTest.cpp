#include <gtest/gtest.h>

#include "runner/TRunnerCollectClassInstances.h"
#include "tests/support/World.h"

namespace support {
namespace {

using NZELVOR20::TCIMValue;

TEST(TRunnerCollectClassInstances, WritesAHeadingAndThePropertyLines) {
  World world;
  const InstancePtr disk = world.addInstance("disk", "CIM_Disk", "DeviceID", "sda");
  disk->set("Roles",
            TCIMValue::Array(NZELVOR20::ECIMType::eString, {TCIMValue("boot"), TCIMValue("data")}));
  EXPECT_TRUE(TRunnerCollectClassInstances()(disk->handle()));
  EXPECT_EQ(
      world.journal.all(),
      lines({"inst disk.GetObjectPath({})", "ref root/cimv2:CIM_Disk.DeviceID=\"sda\".GetPath()",
             "inst disk.EnumerateProperties({})", "prop disk.DeviceID.GetValue({})",
             "prop disk.DeviceID.GetName()", "prop disk.Roles.GetValue({})",
             "prop disk.Roles.GetName()",
             out("TRunnerCollectClassInstances(root/cimv2:CIM_Disk.DeviceID=\"sda\")\n"
                 "DeviceID : sda\nRoles : {boot,data}\n\n"),
             flushed()}));
}

TEST(TRunnerCollectClassInstances, GoesOnAfterAnEmptyHandle) {
  World world;
  EXPECT_TRUE(TRunnerCollectClassInstances()({}));
  EXPECT_EQ(world.journal.all(), "");
}

TEST(TRunnerCollectClassInstances, WritesNothingOfAnInstanceThatThrows) {
  World world;
  const InstancePtr disk = world.addInstance("disk", "CIM_Disk", "DeviceID", "sda");
  world.script.failOn("EnumerateProperties", Fault::otherException);
  EXPECT_THROW(TRunnerCollectClassInstances()(disk->handle()), int);
  EXPECT_EQ(world.journal.output(), "");
}

}  // namespace
}  // namespace support
