#include <gtest/gtest.h>

#include "runner/TRunnerCollectClassFromProvider.h"
#include "tests/support/ScriptedProvider.h"
#include "tests/support/World.h"

namespace support {
namespace {

using Provider = boost::shared_ptr<NZELVOR20::INamespaceProvider>;

/// A provider that offers two disks.
class DiskProvider : public World {
 public:
  DiskProvider() {
    addInstance("disk1", "CIM_Disk", "DeviceID", "sda");
    addInstance("disk2", "CIM_Disk", "DeviceID", "sdb");
  }
  bool collect(const std::string& className, bool onlyFirst = false) {
    return TRunnerCollectClassFromProvider(className, onlyFirst)(provider);
  }

  Provider provider{new ScriptedProvider("disk.so", cmpi)};
};

const char kDisks[] =
    "TRunnerCollectClassInstances(root/cimv2:CIM_Disk.DeviceID=\"sda\")\nDeviceID : sda\n\n"
    "TRunnerCollectClassInstances(root/cimv2:CIM_Disk.DeviceID=\"sdb\")\nDeviceID : sdb\n\n";

const std::string kAsked = trace("TRunnerCollectClassFromProvider for: disk.so");

TEST(TRunnerCollectClassFromProvider, LogsTheProviderAndWritesTheInstancesThatItOffers) {
  DiskProvider world;
  EXPECT_TRUE(world.collect("CIM_Disk"));
  EXPECT_EQ(world.journal.log(), lines({kAsked}));
  EXPECT_EQ(world.journal.output(), kDisks);
}

TEST(TRunnerCollectClassFromProvider, AsksTheProvidersOwnNamespaceWithoutOptions) {
  DiskProvider world;
  world.theClass("CIM_Empty");
  world.collect("CIM_Empty");
  EXPECT_EQ(world.journal.all(),
            lines({"provider disk.so.GetName()", kAsked, "provider disk.so.GetNamespace({})",
                   "ns cmpi.GetClass(\"CIM_Empty\", {})",
                   "class CIM_Empty.EnumerateInstances(deep=true, {})"}));
}

TEST(TRunnerCollectClassFromProvider, EndsAtTheFirstProviderThatOffersTheClassIfToldSo) {
  DiskProvider world;
  EXPECT_FALSE(world.collect("CIM_Disk", true));
}

TEST(TRunnerCollectClassFromProvider, GoesOnWhenTheProviderDoesNotOfferTheClass) {
  DiskProvider world;
  world.cmpi->setEmptyClass("CIM_Other");
  EXPECT_TRUE(world.collect("CIM_Other", true));
  EXPECT_EQ(world.journal.log(), lines({kAsked}));
  EXPECT_EQ(world.journal.output(), "");
}

TEST(TRunnerCollectClassFromProvider, LogsAProviderThatThrowsAndGoesOn) {
  for (const char* call :
       {"GetNamespace", "GetClass", "EnumerateInstances", "EnumerateProperties"}) {
    for (const Fault fault :
         {Fault::vorException, Fault::standardException, Fault::otherException}) {
      SCOPED_TRACE(std::string(call) + ", " + nameOf(fault));
      DiskProvider world;
      world.script.failOn(call, fault);
      EXPECT_TRUE(world.collect("CIM_Disk", true));
      EXPECT_EQ(
          world.journal.log(),
          lines({kAsked, error("TRunnerCollectClassFromProvider for: disk.so threw exception ")}));
    }
  }
}

TEST(TRunnerCollectClassFromProvider, AProviderWithoutANamespaceCountsAsOneThatThrows) {
  DiskProvider world;
  world.script.failOn("GetNamespace", Fault::emptyHandle);
  EXPECT_TRUE(world.collect("CIM_Disk"));
  EXPECT_EQ(
      world.journal.countOf(error("TRunnerCollectClassFromProvider for: disk.so threw exception ")),
      1);
}

TEST(TRunnerCollectClassFromProvider, GoesOnAfterAnEmptyHandle) {
  World world;
  EXPECT_TRUE(TRunnerCollectClassFromProvider("CIM_Disk", true)({}));
  EXPECT_EQ(world.journal.all(), "");
}

}  // namespace
}  // namespace support
