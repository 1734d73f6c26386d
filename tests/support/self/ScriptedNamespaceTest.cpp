#include <gtest/gtest.h>

#include "framework/INamespaceProvider.h"
#include "framework/TVORException.h"
#include "tests/support/ScriptedNamespace.h"
#include "tests/support/World.h"

namespace support {
namespace {

using NZELVOR20::ICIMNamespace;
using NZELVOR20::INamespaceProvider;
using NZELVOR20::TCIMValue;
using NZELVOR20::TCMPINamespace;
using NZELVOR20::TVORException;

constexpr char kDiskPath[] = "root/cimv2:CIM_Disk.DeviceID=\"sda\"";

class ScriptedNamespaceTest : public testing::Test {
 protected:
  World world;
  InstancePtr disk = world.addInstance("disk", "CIM_Disk", "DeviceID", "sda");
  boost::shared_ptr<ICIMNamespace> cmpi = world.cmpi->handle();
};

TEST_F(ScriptedNamespaceTest, AClassLookupIsRecordedWithItsOptions) {
  EXPECT_TRUE(cmpi->GetClass("CIM_Disk", {{"nspID", TCIMValue("cmpi")}}));
  EXPECT_EQ(world.journal.all(), lines({"ns cmpi.GetClass(\"CIM_Disk\", {nspID=\"cmpi\"})"}));
}

TEST_F(ScriptedNamespaceTest, AnUnknownClassThrowsAndAnEmptyOneIsEmpty) {
  world.cmpi->setEmptyClass("CIM_Hollow");
  EXPECT_FALSE(cmpi->GetClass("CIM_Hollow", {}));
  EXPECT_THROW(cmpi->GetClass("CIM_Unknown", {}), TVORException);
  world.cmpi->removeClass("CIM_Disk");
  EXPECT_THROW(cmpi->GetClass("CIM_Disk", {}), TVORException);
}

TEST_F(ScriptedNamespaceTest, AnInstanceIsFoundByItsPath) {
  EXPECT_EQ(cmpi->GetInstance(disk->reference(), {}), disk->handle());
  EXPECT_EQ(world.journal.all(),
            lines({std::string("ns cmpi.GetInstance(") + kDiskPath + ", {})"}));
}

TEST_F(ScriptedNamespaceTest, AnInstanceThatIsNotThereThrows) {
  world.cmpi->removeInstance(kDiskPath);
  EXPECT_THROW(cmpi->GetInstance(disk->reference(), {}), TVORException);
}

TEST_F(ScriptedNamespaceTest, InstancesInTurnChangeFromFetchToFetchAndTheLastOneStays) {
  const InstancePtr second = disk->copyAs("second");
  world.cmpi->setInTurn(kDiskPath, {disk, InstancePtr(), second});
  EXPECT_EQ(cmpi->GetInstance(disk->reference(), {}), disk->handle());
  EXPECT_FALSE(cmpi->GetInstance(disk->reference(), {}));
  EXPECT_EQ(cmpi->GetInstance(disk->reference(), {}), second->handle());
  EXPECT_EQ(cmpi->GetInstance(disk->reference(), {}), second->handle());
}

TEST_F(ScriptedNamespaceTest, LookupsCanComeBackEmpty) {
  world.script.failOn("GetClass", Fault::emptyHandle);
  world.script.failOn("GetInstance", Fault::emptyHandle);
  EXPECT_FALSE(cmpi->GetClass("CIM_Disk", {}));
  EXPECT_FALSE(cmpi->GetInstance(disk->reference(), {}));
}

TEST_F(ScriptedNamespaceTest, OnlyTheCmpiKindIsATCMPINamespace) {
  EXPECT_TRUE(boost::dynamic_pointer_cast<TCMPINamespace>(cmpi));
  EXPECT_FALSE(boost::dynamic_pointer_cast<TCMPINamespace>(world.root->handle()));
}

TEST_F(ScriptedNamespaceTest, TheUpcallNamespaceIsAnsweredAndHeldWeakly) {
  const auto face = boost::dynamic_pointer_cast<TCMPINamespace>(cmpi);
  EXPECT_EQ(face->GetUpcallNamespace(), world.upcall->handle());
  world.cmpi->setUpcall(ScriptedNamespace::makePlain("gone"));
  EXPECT_FALSE(face->GetUpcallNamespace());
  EXPECT_EQ(world.journal.countOf("ns cmpi.GetUpcallNamespace()"), 2);
}

TEST_F(ScriptedNamespaceTest, ProvidersAreHandedOutInOrderUntilTheCallbackEndsIt) {
  world.root->addProvider("first", world.cmpi);
  world.root->addProvider("second", world.plugin);
  world.root->addProvider("third", world.plugin);
  std::vector<boost::shared_ptr<INamespaceProvider>> handed;
  world.root->handle()->EnumerateProviders(
      [&](boost::shared_ptr<INamespaceProvider> provider) {
        handed.push_back(provider);
        return handed.size() < 2;
      },
      {});
  ASSERT_EQ(handed.size(), 2U);
  EXPECT_EQ(handed[0]->GetName(), "first");
  EXPECT_EQ(handed[1]->GetNamespace({}), world.plugin->handle());
  EXPECT_EQ(world.journal.all(),
            lines({"ns root.EnumerateProviders({})", "provider first.GetName()",
                   "provider second.GetNamespace({})"}));
}

TEST_F(ScriptedNamespaceTest, OtherOperationsAreRecordedAndNotSupported) {
  EXPECT_THROW(cmpi->EnumerateRootClasses({}, {}), TVORException);
  EXPECT_THROW(cmpi->ModifyInstance({}, {}), TVORException);
  EXPECT_EQ(world.journal.calls(),
            lines({"ns cmpi.EnumerateRootClasses(...)", "ns cmpi.ModifyInstance(...)"}));
}

}  // namespace
}  // namespace support
