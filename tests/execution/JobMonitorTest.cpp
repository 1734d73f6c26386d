#include <gtest/gtest.h>

#include <iostream>
#include <locale>

#include "framework/EVORStatusCode.h"
#include "tests/execution/JobWorld.h"
#include "tests/support/Outcome.h"

namespace support {
namespace {

using NZELVOR20::TCIMValue;

struct JobCase {
  const char* name;
  std::vector<JobReading> readings;
  Events course;
};

const JobCase kCases[] = {
    {"complete at the first reading", {{7, 100}}, {shownFirst(100)}},
    {"complete at the first reading, whatever the state", {{4, 100}}, {shownFirst(100)}},
    {"state 10 at the first reading", {{10, 30}}, {shownFirst(30), waited()}},
    {"state 10 and complete at the first reading", {{10, 100}}, {shownFirst(100), waited()}},
    {"state 7 before completion, at the first reading", {{7, 30}, {7, 100}}, {shownFirst(30)}},
    {"polled to its completion",
     {{4, 0}, {4, 50}, {7, 100}},
     {shownFirst(0), polled(4, 50), waited(), shownLater(50), polled(7, 100), waited(),
      shownLater(100)}},
    {"state 7 before completion, later",
     {{4, 0}, {7, 50}, {7, 100}},
     {shownFirst(0), polled(7, 50), waited(), shownLater(50)}},
    {"state 10 later is not shown", {{4, 0}, {10, 50}}, {shownFirst(0), polled(10, 50)}},
    {"state 10 and complete later", {{4, 0}, {10, 100}}, {shownFirst(0), polled(10, 100)}},
    {"a vendor's end is none for other classes",
     {{4, 0}, {32768, 50}, {32768, 100}},
     {shownFirst(0), polled(32768, 50), waited(), shownLater(50), polled(32768, 100), waited(),
      shownLater(100)}},
    {"a percentage that stands or falls is not shown",
     {{4, 50}, {4, 50}, {4, 20}, {4, 51}, {7, 100}},
     {shownFirst(50), polled(4, 50), waited(), polled(4, 20), waited(), polled(4, 51), waited(),
      shownLater(51), polled(7, 100), waited(), shownLater(100)}},
    {"no percentage at first",
     {{4, std::nullopt}, {4, std::nullopt}, {7, 100}},
     {shownFirst(0), polled(4, 0), waited(), polled(7, 100), waited(), shownLater(100)}},
    {"no percentage later",
     {{4, 40}, {4, std::nullopt}, {7, 100}},
     {shownFirst(40), polled(4, 40), waited(), polled(7, 100), waited(), shownLater(100)}},
    {"no state",
     {{std::nullopt, 0}, {std::nullopt, 10}, {std::nullopt, 100}},
     {shownFirst(0), polled(0, 10), waited(), shownLater(10), polled(0, 100), waited(),
      shownLater(100)}},
    {"a state that is not told again is 0",
     {{4, 0}, {std::nullopt, 10}, {7, 50}},
     {shownFirst(0), polled(0, 10), waited(), shownLater(10), polled(7, 50), waited(),
      shownLater(50)}},
    {"more than all",
     {{4, 101}, {4, 65535}, {7, 65535}},
     {shownFirst(101), polled(4, 65535), waited(), shownLater(65535), polled(7, 65535), waited()}}};

TEST(JobMonitor, ShowsLogsAndWaitsInItsOrder) {
  for (const JobCase& jobCase : kCases) {
    JobWorld world(jobCase.readings);
    world.follow();
    EXPECT_EQ(world.course(), text(jobCase.course)) << jobCase.name;
  }
}

/// Groups by two digits, as no number of the display is to be written.
class GroupedDigits : public std::numpunct<char> {
 protected:
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\2"; }
};

// Catches a percentage that a host's manipulators or locale change: other programs read these
// lines.
TEST(JobMonitor, ShowsPercentagesWhateverTheStreamsNumberFormatIs) {
  JobWorld world({{4, 10}, {4, 50}, {7, 100}});
  const std::ios_base::fmtflags flags = std::cout.flags();
  const std::locale former = std::cout.imbue(std::locale(std::locale(), new GroupedDigits));
  std::cout << std::hex << std::showbase << std::showpos;
  world.follow();
  std::cout.imbue(former);
  std::cout.flags(flags);
  EXPECT_EQ(world.journal.output(),
            "\nPercent Complete: 10%\n\nPercent Complete : 50%\n\nPercent Complete : 100%\n");
}

TEST(JobMonitor, AVendorsEndEndsItForTheClassesOfThatVendor) {
  for (const char* jobClass : {"ELX_Job", "CIM_ELXJob"}) {
    JobWorld world({{4, 0}, {32768, 50}, {7, 100}}, "Disk Test", jobClass);
    world.follow();
    EXPECT_EQ(world.course(), lines({shownFirst(0), polled(32768, 50, jobClass)})) << jobClass;
  }
}

TEST(JobMonitor, TheNameOfTheTestDoesNotMakeItThatVendors) {
  JobWorld world({{4, 0}, {32768, 50}, {7, 100}}, "ELX Test");
  world.follow();
  EXPECT_EQ(world.platform.sleptMilliseconds(), 10000U);
}

TEST(JobMonitor, AsksTheJobAndItsClassInItsOrder) {
  JobWorld world({{4, 0}, {7, 100}});
  world.follow();
  const std::string path = "root/cimv2:CIM_ConcreteJob.InstanceID=\"job-1\"";
  const Events fetch = {"class CIM_ConcreteJob.GetNamespace({})",
                        "ns cmpi.GetInstance(" + path + ", {nspID=\"cmpi\"})"};
  EXPECT_EQ(world.journal.allButFlushes(),
            text(joined({{"ref " + path + ".GetClass()"},
                         fetch,
                         valueRead("job1/1", "PercentComplete"),
                         valueRead("job1/1", "JobState"),
                         valueRead("job1/1", "InstanceID"),
                         {shownFirst(0), "class CIM_ConcreteJob.GetName()"},
                         valueRead("job1/1", "JobState"),
                         fetch,
                         valueRead("job1/2", "JobState"),
                         valueRead("job1/2", "PercentComplete"),
                         {polled(7, 100), waited(), shownLater(100)}})));
}

TEST(JobMonitor, TheStateIsReadAgainFromTheJobInHand) {
  JobWorld world({{4, 0}});
  const InstancePtr job = ScriptedInstance::makeCmpi(
      "job", {"CIM_ConcreteJob", "InstanceID", "job-1", world.theClass("CIM_ConcreteJob")});
  job->set("InstanceID", TCIMValue("job-1"));
  job->set("PercentComplete", TCIMValue::Uint16(10));
  job->setInTurn("JobState", {TCIMValue::Uint16(4), TCIMValue::Uint16(7)});
  world.cmpi->setInTurn(job->path().text(), {job});
  world.follow();
  EXPECT_EQ(world.course(), lines({shownFirst(10)}));
}

TEST(JobMonitor, AFirstReadingThatFailsIsLoggedAndItGoesOnWithWhatItHas) {
  const std::string vor = error("DiagsRunner::HandleConcrete, catch vor exception, get JobState");
  const std::string other = error("DiagsRunner::HandleConcrete, catch exception, get JobState");
  for (const Fault fault : {Fault::vorException, Fault::standardException, Fault::otherException}) {
    for (const auto& [call, percentage] :
         {std::pair<const char*, int>{"GetProperty(\"PercentComplete\"", 0},
          {"PercentComplete.GetValue", 0},
          {"GetProperty(\"JobState\"", 40},
          {"JobState.GetValue", 40}}) {
      JobWorld world({{7, 40}});
      world.script.failOn(call, fault);
      world.follow();
      EXPECT_EQ(world.course(),
                lines({fault == Fault::vorException ? vor : other, shownFirst(percentage)}))
          << call << ", " << nameOf(fault);
    }
  }
}

TEST(JobMonitor, AFirstStateThatIsNoNumberCountsAsAFailedReading) {
  JobWorld world({{4, 40}, {7, 100}});
  const InstancePtr job = ScriptedInstance::makeCmpi(
      "job", {"CIM_ConcreteJob", "InstanceID", "job-1", world.theClass("CIM_ConcreteJob")});
  job->set("PercentComplete", TCIMValue("many"));
  job->set("JobState", TCIMValue::Uint16(10));
  job->set("InstanceID", TCIMValue("job-1"));
  world.cmpi->setInTurn(job->path().text(), {job});
  const Outcome outcome = outcomeOf([&] {
    world.follow();
    return std::string();
  });
  EXPECT_EQ(world.course(),
            lines({error("DiagsRunner::HandleConcrete, catch vor exception, get JobState"),
                   shownFirst(0)}));
  EXPECT_EQ(outcome.kind, Outcome::Kind::vorException) << "later readings are not guarded";
  EXPECT_EQ(outcome.status, NZELVOR20::eVORTypeMismatch);
}

TEST(JobMonitor, EmptyPropertiesCountAsNull) {
  for (const char* property : {"PercentComplete", "JobState"}) {
    JobWorld world({{7, 100}});
    world.script.failOn(std::string("GetProperty(\"") + property, Fault::emptyHandle);
    world.follow();
    const bool isPercentage = std::string(property) == "PercentComplete";
    EXPECT_EQ(world.course(), lines({shownFirst(isPercentage ? 0 : 100)})) << property;
  }
}

TEST(JobMonitor, TheIdentifierIsThatOfTheFirstReadingAndReadOnce) {
  JobWorld world({{4, 0}, {7, 100}});
  diagsrunner::JobMonitor monitor = world.monitor();
  monitor.follow();
  EXPECT_EQ(monitor.identifier(), "job-1");
  EXPECT_EQ(monitor.identifier(), "job-1");
  EXPECT_EQ(world.journal.countOf("inst job1/1.GetProperty(\"InstanceID\", {})"), 1);
  EXPECT_EQ(world.journal.countOf("inst job1/2.GetProperty(\"InstanceID\", {})"), 0);
}

TEST(JobMonitor, TheIdentifierIsReadLaterWhenTheFirstStateIs10) {
  JobWorld world({{10, 0}});
  diagsrunner::JobMonitor monitor = world.monitor();
  monitor.follow();
  EXPECT_EQ(world.journal.calls().find("InstanceID\", {})"), std::string::npos);
  EXPECT_EQ(monitor.identifier(), "job-1");
}

// Catches a null that counts as a property that is missing: the one ends the run, the other not.
TEST(JobMonitor, ANullIdentifierIsReadAsTheEmptyText) {
  JobWorld world({{7, 30}});
  const InstancePtr job = ScriptedInstance::makeCmpi(
      "job", {"CIM_ConcreteJob", "InstanceID", "job-1", world.theClass("CIM_ConcreteJob")});
  job->set("PercentComplete", TCIMValue::Uint16(30));
  job->set("JobState", TCIMValue::Uint16(7));
  job->set("InstanceID", TCIMValue());
  world.cmpi->setInTurn(job->path().text(), {job});
  diagsrunner::JobMonitor monitor = world.monitor();
  monitor.follow();
  EXPECT_EQ(monitor.identifier(), "");
  EXPECT_EQ(world.course(), lines({shownFirst(30)}));
}

TEST(JobMonitor, AJobWithoutIdentifierHasAnEmptyOne) {
  JobWorld world({{7, 100}});
  world.script.failOn("GetProperty(\"InstanceID\"", Fault::emptyHandle);
  EXPECT_EQ(world.monitor().identifier(), "");
}

struct MissingHandle {
  const char* call;
  int skip;  ///< how often the call still goes well
  const char* message;
};

TEST(JobMonitor, WhatIsMissingIsNamedInTheException) {
  for (const MissingHandle& missing :
       {MissingHandle{".GetClass()", 0, "diagsrunner: no class of the referenced instance"},
        {".GetNamespace(", 0, "diagsrunner: no namespace that serves the class"},
        {".GetNamespace(", 1, "diagsrunner: no namespace that serves the class"},
        {".GetInstance(", 0, "diagsrunner: no job instance"},
        {".GetInstance(", 1, "diagsrunner: no job instance"}}) {
    JobWorld world({{4, 0}, {7, 100}});
    world.script.failOn(missing.call, Fault::emptyHandle, 1, missing.skip);
    const Outcome outcome = outcomeOf([&] {
      world.follow();
      return std::string();
    });
    EXPECT_EQ(outcome.kind, Outcome::Kind::standardException) << missing.call << missing.skip;
    EXPECT_EQ(outcome.text, missing.message) << missing.call << missing.skip;
  }
}

}  // namespace
}  // namespace support
