#pragma once

#include <gtest/gtest.h>

#include <string>

#include "tests/results/Events.h"
#include "tests/support/Outcome.h"
#include "tests/support/WithRunner.h"

namespace support {

inline constexpr char kNoMatch[] = "No matching diagnostic test or device found.\n";
inline constexpr char kClearing[] = "registry.ClearInstances()";
inline const std::string kFamily = "{nspID=\"cmpi\"}";
inline const std::string kPlugin = "{nspID=\"plugin\"}";

inline std::string pathOf(const InstancePtr& instance) { return instance->path().text(); }

inline Events endsRead(const ScriptedTest& test) {
  const std::string association = test.association->label();
  return joined({valueRead(association, "ServiceProvided"),
                 valueRead(association, "UserOfService"),
                 {"ref " + pathOf(test.element) + ".GetClass()",
                  "ref " + pathOf(test.service) + ".GetClass()"}});
}

inline Events fetched(const InstancePtr& instance, const std::string& family = kFamily) {
  return {"class " + instance->path().className + ".GetNamespace({})",
          "ns cmpi.GetInstance(" + pathOf(instance) + ", " + family + ")"};
}

inline Events fetchedByUpcall(const InstancePtr& instance) {
  const std::string& name = instance->path().className;
  return {"class " + name + ".GetName()",
          "class " + name + ".GetNamespace({})",
          "ns cmpi.GetUpcallNamespace()",
          "ns upcall.GetClass(\"" + name + "\", " + kPlugin + ")",
          "class upcall:" + name + ".GetNamespace({})",
          "ns plugin.GetInstance(" + pathOf(instance) + ", " + kPlugin + ")"};
}

inline Events pathRead(const InstancePtr& element) {
  return {"inst " + element->label() + ".GetObjectPath({})",
          "ref " + pathOf(element) + ".GetPath()"};
}

/// Three tests; the last one shares its name with the first and its device with the second.
class LookupTest : public testing::Test {
 protected:
  LookupTest() {
    world.finishJob(last, "job-1", {{7, 100}});
    world.finishJob(first, "job-0", {{7, 100}});
    world.addRecord("Disk Test", "record for job-1", "OK");
    world.addRecord("Disk Test", "record for job-0", "Aborted");
    world.listed();
  }

  std::string execute(const ScriptedTest& test) {
    return world.runner().Execute(test.id, "", world.hostHandle);
  }
  Outcome outcome(const ScriptedTest& test) {
    return outcomeOf([&] { return execute(test); });
  }
  /// Remembers where `test` is, as a search would.
  void index(const ScriptedTest& test, int position) {
    DiagsRunnerAccess::testIndex(world.runner())[test.id] = position;
  }
  /// What happened before the method of the last test was invoked.
  std::string lookup() {
    const std::string calls = world.journal.calls();
    return calls.substr(0, calls.find("inst service3.InvokeMethod"));
  }
  std::string failure(const InstancePtr& instance) {
    return "ns cmpi.GetInstance(" + pathOf(instance);
  }

  WithRunner<> world;
  const ScriptedTest first = world.addTest("Disk Test", "disk0", "Disk 0");
  const ScriptedTest other =
      world.addTest("Memory Test", "disk1", "Disk 1", "CIM_DiagnosticTest", "X_Device");
  const ScriptedTest last = world.addTest("Disk Test", "disk1", "Disk 1", "X_DiagnosticTest");
};

}  // namespace support
