#include <gtest/gtest.h>

#include "tests/results/Events.h"
#include "tests/support/Outcome.h"
#include "tests/support/WithRunner.h"

/// How a run finds its service and its element.
namespace support {
namespace {

using Access = DiagsRunnerAccess;
using NZELVOR20::TCIMValue;

const char kNoMatch[] = "No matching diagnostic test or device found.\n";
const char kClearing[] = "registry.ClearInstances()";
const std::string kFamily = "{nspID=\"cmpi\"}";
const std::string kPlugin = "{nspID=\"plugin\"}";

std::string pathOf(const InstancePtr& instance) { return instance->path().text(); }

Events endsRead(const ScriptedTest& test) {
  const std::string association = test.association->label();
  return joined({valueRead(association, "ServiceProvided"),
                 valueRead(association, "UserOfService"),
                 {"ref " + pathOf(test.element) + ".GetClass()",
                  "ref " + pathOf(test.service) + ".GetClass()"}});
}

Events fetched(const InstancePtr& instance, const std::string& family = kFamily) {
  return {"class " + instance->path().className + ".GetNamespace({})",
          "ns cmpi.GetInstance(" + pathOf(instance) + ", " + family + ")"};
}

Events fetchedByUpcall(const InstancePtr& instance) {
  const std::string& name = instance->path().className;
  return {"class " + name + ".GetName()",
          "class " + name + ".GetNamespace({})",
          "ns cmpi.GetUpcallNamespace()",
          "ns upcall.GetClass(\"" + name + "\", " + kPlugin + ")",
          "class upcall:" + name + ".GetNamespace({})",
          "ns plugin.GetInstance(" + pathOf(instance) + ", " + kPlugin + ")"};
}

Events pathRead(const InstancePtr& element) {
  return {"inst " + element->label() + ".GetObjectPath({})",
          "ref " + pathOf(element) + ".GetPath()"};
}

/// Three tests; the last one shares its name with the first and its device with the second.
class ExecuteLookup : public testing::Test {
 protected:
  ExecuteLookup() {
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
    Access::testIndex(world.runner())[test.id] = position;
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

TEST_F(ExecuteLookup, SearchesFromTheStartAndAsksTheElementOnlyOfAServiceThatMatches) {
  EXPECT_EQ(execute(last), "Pass");
  EXPECT_EQ(lookup(),
            text(joined({endsRead(first), fetched(first.element), pathRead(first.element),
                         fetched(first.service), valueRead("service1", "Name"),
                         valueRead("element1", "DeviceID"), endsRead(other), fetched(other.element),
                         pathRead(other.element), fetched(other.service),
                         valueRead("service2", "Name"), endsRead(last), fetched(last.element),
                         pathRead(last.element), fetched(last.service),
                         valueRead("service3", "Name"), valueRead("element3", "DeviceID")})));
  EXPECT_EQ(Access::testIndex(world.runner()), (std::map<std::string, int>{{last.id, 2}}));
}

TEST_F(ExecuteLookup, TheFirstPositionThatMatchesEndsTheSearch) {
  EXPECT_EQ(execute(first), "Aborted");
  EXPECT_EQ(world.journal.calls().find("association2"), std::string::npos);
  EXPECT_EQ(Access::testIndex(world.runner()), (std::map<std::string, int>{{first.id, 0}}));
}

TEST_F(ExecuteLookup, ASecondRunGoesStraightToThePosition) {
  execute(last);
  world.journal.clear();
  EXPECT_EQ(execute(last), "Pass");
  EXPECT_EQ(lookup(), text(joined({endsRead(last), fetched(last.element), pathRead(last.element),
                                   fetched(last.service)})));
}

TEST_F(ExecuteLookup, TheIndexedPositionIsNotChecked) {
  index(last, 1);
  world.finishJob(other, "job-2", {{7, 100}});
  world.addRecord("Disk Test", "record for job-2", "Incomplete");
  EXPECT_EQ(execute(last), "Incomplete");
}

TEST_F(ExecuteLookup, TheFamilyOfTheTestGoesWithTheInstances) {
  world.setListed(last.id, "other");
  index(last, 2);
  EXPECT_EQ(execute(last), "Pass");
  const std::string family = "{nspID=\"other\"}";
  EXPECT_EQ(lookup(), text(joined({endsRead(last), fetched(last.element, family),
                                   pathRead(last.element), fetched(last.service, family)})));
}

TEST_F(ExecuteLookup, ComparesByteForByte) {
  for (const char* id : {"disk Test,disk1,Disk 1", "Disk Test ,disk1,Disk 1",
                         "Disk Test,Disk1,Disk 1", "Disk Test,disk,Disk 1", "Disk,disk1,Disk 1"}) {
    world.setListed(id);
    EXPECT_EQ(world.runner().Execute(id, "", world.hostHandle), std::string(" ") + kNoMatch) << id;
  }
}

TEST_F(ExecuteLookup, TheElementNameIsNotCompared) {
  world.setListed("Disk Test,disk1,another name");
  EXPECT_NE(world.runner().Execute("Disk Test,disk1,another name", "", world.hostHandle),
            std::string(" ") + kNoMatch);
}

TEST_F(ExecuteLookup, WithoutAssociationsThereIsNoMatch) {
  Access::testInstances(world.runner()).clear();
  EXPECT_EQ(execute(last), std::string(" ") + kNoMatch);
  EXPECT_EQ(world.journal.calls(), lines({kClearing}));
}

TEST_F(ExecuteLookup, AnElementThatCannotBeFetchedIsSoughtThroughTheUpcallNamespace) {
  for (const Fault fault : {Fault::vorException, Fault::emptyHandle}) {
    for (const char* part : {"GetNamespace", "GetInstance"}) {
      if (fault == Fault::emptyHandle && std::string(part) == "GetNamespace") {
        continue;
      }
      index(last, 2);
      world.journal.clear();
      world.script.failOn(part, fault);
      EXPECT_EQ(execute(last), "Pass");
      Events direct = fetched(last.element);
      direct.resize(std::string(part) == "GetNamespace" ? 1 : 2);
      EXPECT_EQ(lookup(), text(joined({endsRead(last), direct, fetchedByUpcall(last.element),
                                       pathRead(last.element), fetched(last.service)})))
          << part << ", " << nameOf(fault);
    }
  }
}

TEST_F(ExecuteLookup, SoItIsInASearch) {
  world.script.failOn(failure(last.element), Fault::vorException);
  Access::testInstances(world.runner())
      .erase(Access::testInstances(world.runner()).begin(),
             Access::testInstances(world.runner()).begin() + 2);
  EXPECT_EQ(execute(last), "Pass");
  EXPECT_EQ(lookup(),
            text(joined({endsRead(last), fetched(last.element), fetchedByUpcall(last.element),
                         pathRead(last.element), fetched(last.service),
                         valueRead("service3", "Name"), valueRead("element3", "DeviceID")})));
}

TEST_F(ExecuteLookup, AnIndexedServiceIsSoughtThroughTheUpcallNamespaceToo) {
  for (const Fault fault : {Fault::vorException, Fault::emptyHandle}) {
    index(last, 2);
    world.journal.clear();
    world.script.failOn(failure(last.service), fault);
    EXPECT_EQ(execute(last), "Pass");
    EXPECT_EQ(lookup(), text(joined({endsRead(last), fetched(last.element), pathRead(last.element),
                                     fetched(last.service), fetchedByUpcall(last.service)})))
        << nameOf(fault);
    EXPECT_EQ(world.journal.log().find("upcall"), std::string::npos) << "nothing is logged";
  }
}

TEST_F(ExecuteLookup, AServiceInASearchIsNotRetried) {
  world.script.failOn(failure(last.service), Fault::vorException);
  EXPECT_EQ(outcome(last).kind, Outcome::Kind::vorException);
  EXPECT_EQ(world.journal.calls().find("GetUpcallNamespace"), std::string::npos);
  EXPECT_EQ(world.journal.countOf(kClearing), 0);
}

TEST_F(ExecuteLookup, AnEmptyServiceInASearchIsNoMatchForItsPosition) {
  world.script.failOn(failure(first.service), Fault::emptyHandle);
  EXPECT_EQ(execute(last), "Pass");
  EXPECT_EQ(Access::testIndex(world.runner()), (std::map<std::string, int>{{last.id, 2}}));
}

TEST_F(ExecuteLookup, AnElementThatStaysEmptyIsNoMatchForItsPosition) {
  for (const bool isIndexed : {false, true}) {
    Access::testIndex(world.runner()).clear();
    if (isIndexed) {
      index(first, 0);
    }
    world.journal.clear();
    world.script.failOn("GetInstance(" + pathOf(first.element), Fault::emptyHandle, 2);
    EXPECT_EQ(execute(first), std::string(" ") + kNoMatch);
    EXPECT_EQ(world.journal.countOf("ns plugin.GetInstance(" + pathOf(first.element) + ", " +
                                    kPlugin + ")"),
              1);
    EXPECT_EQ(world.journal.countOf(kClearing), 1);
    EXPECT_EQ(world.journal.calls().find("association2") == std::string::npos, isIndexed);
  }
}

TEST_F(ExecuteLookup, AnIndexedServiceThatStaysEmptyIsNoMatch) {
  index(last, 2);
  world.script.failOn("GetInstance(" + pathOf(last.service), Fault::emptyHandle, 2);
  EXPECT_EQ(execute(last), std::string(" ") + kNoMatch);
}

TEST_F(ExecuteLookup, OtherExceptionsAreNotRetried) {
  for (const Fault fault : {Fault::standardException, Fault::otherException}) {
    world.script.failOn("GetInstance", fault);
    EXPECT_FALSE(outcome(last).returned()) << nameOf(fault);
    EXPECT_EQ(world.journal.calls().find("GetUpcallNamespace"), std::string::npos);
  }
}

TEST_F(ExecuteLookup, AFailureOfTheRetryPasses) {
  for (const char* call :
       {"GetName()", "ns cmpi.GetUpcallNamespace", "ns upcall.GetClass",
        "class upcall:CIM_LogicalDevice.GetNamespace", "ns plugin.GetInstance"}) {
    index(last, 2);
    world.journal.clear();
    world.script.clear();
    world.script.failOn(failure(last.element), Fault::vorException);
    world.script.failOn(call, Fault::vorException);
    EXPECT_EQ(outcome(last).kind, Outcome::Kind::vorException) << call;
    EXPECT_EQ(world.script.fired(), 2) << call;
    EXPECT_EQ(world.journal.countOf(kClearing), 0) << call;
  }
}

TEST_F(ExecuteLookup, WhatTheRetryMissesIsNamedInTheException) {
  const std::pair<const char*, const char*> rows[] = {
      {"ns cmpi.GetUpcallNamespace", "diagsrunner: no upcall namespace"},
      {"ns upcall.GetClass", "diagsrunner: no class of the referenced instance"},
      {"class upcall:CIM_LogicalDevice.GetNamespace",
       "diagsrunner: no namespace that serves the class"}};
  for (const auto& [call, message] : rows) {
    index(last, 2);
    world.script.clear();
    world.script.failOn(failure(last.element), Fault::vorException);
    world.script.failOn(call, Fault::emptyHandle);
    EXPECT_EQ(outcome(last).text, message) << call;
  }
}

TEST_F(ExecuteLookup, AClassThatCmpiProvidersDoNotServeHasNoUpcallNamespace) {
  world.theClass("CIM_LogicalDevice")->serveBy(world.plugin);
  world.plugin->removeInstance(pathOf(last.element));
  index(last, 2);
  const Outcome ended = outcome(last);
  EXPECT_EQ(ended.kind, Outcome::Kind::standardException);
  EXPECT_EQ(ended.text, "diagsrunner: no CMPI namespace that serves class CIM_LogicalDevice");
}

TEST_F(ExecuteLookup, WhatTheDirectWayMissesIsNamedInTheException) {
  const std::pair<const char*, const char*> rows[] = {
      {"GetProperty(\"ServiceProvided\"", "diagsrunner: no property ServiceProvided"},
      {"GetProperty(\"UserOfService\"", "diagsrunner: no property UserOfService"},
      {".GetClass()", "diagsrunner: no class of the referenced instance"},
      {".GetNamespace(", "diagsrunner: no namespace that serves the class"}};
  for (const auto& [call, message] : rows) {
    index(last, 2);
    world.script.failOn(call, Fault::emptyHandle);
    EXPECT_EQ(outcome(last).text, message) << call;
  }
}

TEST_F(ExecuteLookup, AnEmptyHandleAmongTheAssociationsIsNamedInTheException) {
  Access::testInstances(world.runner())[0].reset();
  EXPECT_EQ(outcome(last).text, "diagsrunner: no instance to read property ServiceProvided of");
}

TEST_F(ExecuteLookup, AnEndThatIsNoReferencePasses) {
  first.association->set("UserOfService", TCIMValue("text"));
  EXPECT_EQ(outcome(last).kind, Outcome::Kind::vorException);
}

TEST_F(ExecuteLookup, AnElementWithoutAPathEndsTheRunWithoutClearing) {
  const std::string looking = trace("DiagsRunner::Execute looking for:" + first.id);
  const std::string returning = trace("DiagsRunner::Execute returning no matching");
  for (const char* call : {"element1.GetObjectPath", "disk0\".GetPath()"}) {
    for (const bool isIndexed : {false, true}) {
      for (const bool hasRun : {false, true}) {
        Access::testIndex(world.runner()).clear();
        if (isIndexed) {
          index(first, 0);
        }
        if (hasRun) {
          world.setFinished(first.id, "job-0");
        }
        world.journal.clear();
        world.script.failOn(call, Fault::vorException);
        EXPECT_EQ(execute(first), kNoMatch);
        const std::string erased =
            trace(isIndexed ? "DiagsRunner::Execute erased test from finished map"
                            : "DiagsRunner::Execute erased test from map");
        const std::string entering =
            trace("Entering DiagsRunner::Execute with testID = " + first.id);
        EXPECT_EQ(world.journal.log(), hasRun ? lines({entering, looking, erased, returning})
                                              : lines({entering, looking, returning}));
        EXPECT_TRUE(Access::finishedTests(world.runner()).empty());
        EXPECT_EQ(world.journal.countOf(kClearing), 0);
      }
    }
  }
}

TEST_F(ExecuteLookup, InASearchTheElementOfAnotherTestEndsItToo) {
  world.script.failOn("element1.GetObjectPath", Fault::vorException);
  EXPECT_EQ(execute(last), kNoMatch);
  EXPECT_EQ(world.journal.calls().find("association2"), std::string::npos);
}

TEST_F(ExecuteLookup, OtherExceptionsOfThePathPass) {
  for (const Fault fault : {Fault::standardException, Fault::otherException}) {
    world.script.failOn("GetObjectPath", fault);
    EXPECT_FALSE(outcome(last).returned()) << nameOf(fault);
  }
}

TEST_F(ExecuteLookup, AnEmptyPropertyThatIsComparedIsNamedInTheException) {
  const std::pair<const char*, const char*> rows[] = {
      {"GetProperty(\"Name\"", "diagsrunner: no property Name"},
      {"GetProperty(\"DeviceID\"", "diagsrunner: no property DeviceID"}};
  for (const auto& [call, message] : rows) {
    world.script.failOn(call, Fault::emptyHandle);
    EXPECT_EQ(outcome(last).text, message) << call;
  }
}

}  // namespace
}  // namespace support
