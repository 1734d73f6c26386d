#include <gtest/gtest.h>

#include "framework/CMPINSPInstanceRegistry.h"
#include "framework/ICIMProperty.h"
#include "framework/TCIMCopy.h"
#include "framework/TRootObject.h"
#include "tests/support/World.h"

/// The framework's statics that the scripted world takes the place of.
namespace support {
namespace {

using NZELVOR20::CMPINSPInstanceRegistry;
using NZELVOR20::ICIMInstance;
using NZELVOR20::TCIMCopy;
using NZELVOR20::TRootObject;

TEST(ScriptedLogger, RecordsLevelAndText) {
  World world;
  TRootObject::GetCoreLogger()->Log(3, "Entering");
  TRootObject::GetCoreLogger()->Log(0, "");
  EXPECT_EQ(world.journal.log(), lines({trace("Entering"), error("")}));
}

TEST(ScriptedLogger, CanBeAbsentUntilTheNextWorld) {
  {
    World world;
    world.logger.isAbsent = true;
    EXPECT_EQ(TRootObject::GetCoreLogger(), nullptr);
  }
  EXPECT_NE(TRootObject::GetCoreLogger(), nullptr);
}

TEST(ScriptedRegistry, RecordsThatItIsClearedAndCanFail) {
  World world;
  CMPINSPInstanceRegistry* const registry = CMPINSPInstanceRegistry::GetRegistrySingleton();
  world.script.failOn("registry.ClearInstances()", Fault::otherException, 1, 1);
  registry->ClearInstances();
  EXPECT_THROW(registry->ClearInstances(), int);
  EXPECT_EQ(world.journal.calls(),
            lines({"registry.ClearInstances()", "registry.ClearInstances()"}));
}

TEST(ScriptedCopy, AnswersACopyThatNobodyElseHolds) {
  World world;
  const InstancePtr record = world.addRecord("Memory Test", "r1", "OK");
  const int before = LiveObject::count();
  {
    const boost::shared_ptr<ICIMInstance> copy =
        TCIMCopy::CopyInstance(record->handle(), world.hostHandle);
    ASSERT_TRUE(copy);
    EXPECT_NE(copy, record->handle());
    EXPECT_EQ(copy->GetProperty("CompletionState", {})->ToString(), "OK");
    EXPECT_EQ(LiveObject::count(), before + 1);
  }
  EXPECT_EQ(LiveObject::count(), before);
  EXPECT_EQ(world.journal.countOf("TCIMCopy.CopyInstance(inst record1, ns host)"), 1);
}

TEST(ScriptedCopy, CanComeBackEmpty) {
  World world;
  const InstancePtr record = world.addRecord("Memory Test", "r1", "OK");
  world.script.failOn("TCIMCopy", Fault::emptyHandle);
  EXPECT_FALSE(TCIMCopy::CopyInstance(record->handle(), world.hostHandle));
}

}  // namespace
}  // namespace support
