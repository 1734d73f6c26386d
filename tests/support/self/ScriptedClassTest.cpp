#include <gtest/gtest.h>

#include "framework/TAddToVectorCallback.h"
#include "framework/TVORException.h"
#include "tests/support/ScriptedClass.h"
#include "tests/support/World.h"

namespace support {
namespace {

using NZELVOR20::ICIMInstance;
using NZELVOR20::TVORException;
using Instances = std::vector<boost::shared_ptr<ICIMInstance>>;

class ScriptedClassTest : public testing::Test {
 protected:
  std::string enumerate() {
    Instances found;
    disks->EnumerateInstances(NZELVOR20::TAddToVectorCallback<ICIMInstance>(found), true, {});
    std::string labels;
    for (const auto& instance : found) {
      labels += describe(instance) + ";";
    }
    return labels;
  }

  InstancePtr disk(const std::string& label) {
    return ScriptedInstance::makeCmpi(label, {"CIM_Disk", "DeviceID", label, disks});
  }

  World world;
  ClassPtr disks = world.theClass("CIM_Disk");
};

TEST_F(ScriptedClassTest, AnEnumerationIsRecordedWithDepthAndOptions) {
  disks->add(disk("a"));
  disks->add(disk("b"));
  EXPECT_EQ(enumerate(), "inst a;inst b;");
  EXPECT_EQ(world.journal.all(), lines({"class CIM_Disk.EnumerateInstances(deep=true, {})"}));
}

TEST_F(ScriptedClassTest, InstancesComeAndGoFromOneEnumerationToTheNext) {
  disks->add(disk("late"), 3);
  disks->add(disk("early"), 1, 2);
  EXPECT_EQ(enumerate(), "inst early;");
  EXPECT_EQ(enumerate(), "inst early;");
  EXPECT_EQ(enumerate(), "inst late;");
  EXPECT_EQ(disks->enumerations(), 3);
}

TEST_F(ScriptedClassTest, AFailedEnumerationCountsAsOne) {
  disks->add(disk("second"), 2);
  world.script.failOn("EnumerateInstances", Fault::vorException);
  EXPECT_THROW(enumerate(), TVORException);
  EXPECT_EQ(enumerate(), "inst second;");
}

TEST_F(ScriptedClassTest, AnEmptyHandleCanBeHandedOut) {
  disks->add(InstancePtr());
  EXPECT_EQ(enumerate(), "inst (empty);");
}

TEST_F(ScriptedClassTest, TheCallbackEndsTheEnumeration) {
  disks->add(disk("a"));
  disks->add(disk("b"));
  int handed = 0;
  disks->EnumerateInstances([&](boost::shared_ptr<ICIMInstance>) { return ++handed < 1; }, true,
                            {});
  EXPECT_EQ(handed, 1);
}

TEST_F(ScriptedClassTest, ItsNamespaceIsTheOneThatServesIt) {
  EXPECT_EQ(disks->GetNamespace({}), world.cmpi->handle());
  disks->serveBy(world.plugin);
  EXPECT_EQ(disks->GetNamespace({}), world.plugin->handle());
  disks->serveBy(NamespacePtr());
  EXPECT_FALSE(disks->GetNamespace({}));
}

TEST_F(ScriptedClassTest, TheLabelShowsInTheJournalAndTheNameDoesNotChange) {
  EXPECT_EQ(world.upcallClass("CIM_Disk")->GetName(), "CIM_Disk");
  EXPECT_EQ(world.journal.all(), lines({"class upcall:CIM_Disk.GetName()"}));
}

TEST_F(ScriptedClassTest, OtherOperationsAreRecordedAndNotSupported) {
  EXPECT_THROW(disks->EnumerateInstanceNames({}, false, {}), TVORException);
  EXPECT_THROW(disks->GetSuperclass({}), TVORException);
  EXPECT_THROW(disks->EnumerateSubclasses({}, true, {}), TVORException);
  EXPECT_THROW(disks->EnumerateProperties({}, {}), TVORException);
  EXPECT_THROW(disks->GetQualifier("Version", {}), TVORException);
  EXPECT_THROW(disks->AllocateInstance({}), TVORException);
  EXPECT_EQ(world.journal.calls(), lines({"class CIM_Disk.EnumerateInstanceNames(deep=false, {})",
                                          "class CIM_Disk.GetSuperclass({})",
                                          "class CIM_Disk.EnumerateSubclasses(deep=true, {})",
                                          "class CIM_Disk.EnumerateProperties({})",
                                          "class CIM_Disk.GetQualifier(\"Version\", {})",
                                          "class CIM_Disk.AllocateInstance({})"}));
}

}  // namespace
}  // namespace support
