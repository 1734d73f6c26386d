#include <gtest/gtest.h>

#include "tests/execution/LookupTest.h"

/// How a run finds its service and its element.
namespace support {
namespace {

using Access = DiagsRunnerAccess;
using NZELVOR20::TCIMValue;

class ExecuteLookup : public LookupTest {};

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
