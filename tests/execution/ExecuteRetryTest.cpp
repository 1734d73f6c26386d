#include <gtest/gtest.h>

#include "tests/execution/LookupTest.h"

/// How a run goes about an instance that cannot be fetched.
namespace support {
namespace {

using Access = DiagsRunnerAccess;

class ExecuteRetry : public LookupTest {};

TEST_F(ExecuteRetry, AnElementThatCannotBeFetchedIsSoughtThroughTheUpcallNamespace) {
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

TEST_F(ExecuteRetry, SoItIsInASearch) {
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

TEST_F(ExecuteRetry, AnIndexedServiceIsSoughtThroughTheUpcallNamespaceToo) {
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

TEST_F(ExecuteRetry, AServiceInASearchIsNotRetried) {
  world.script.failOn(failure(last.service), Fault::vorException);
  EXPECT_EQ(outcome(last).kind, Outcome::Kind::vorException);
  EXPECT_EQ(world.journal.calls().find("GetUpcallNamespace"), std::string::npos);
  EXPECT_EQ(world.journal.countOf(kClearing), 0);
}

TEST_F(ExecuteRetry, AnEmptyServiceInASearchIsNoMatchForItsPosition) {
  world.script.failOn(failure(first.service), Fault::emptyHandle);
  EXPECT_EQ(execute(last), "Pass");
  EXPECT_EQ(Access::testIndex(world.runner()), (std::map<std::string, int>{{last.id, 2}}));
}

TEST_F(ExecuteRetry, AnElementThatStaysEmptyIsNoMatchForItsPosition) {
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

TEST_F(ExecuteRetry, AnIndexedServiceThatStaysEmptyIsNoMatch) {
  index(last, 2);
  world.script.failOn("GetInstance(" + pathOf(last.service), Fault::emptyHandle, 2);
  EXPECT_EQ(execute(last), std::string(" ") + kNoMatch);
}

TEST_F(ExecuteRetry, OtherExceptionsAreNotRetried) {
  for (const Fault fault : {Fault::standardException, Fault::otherException}) {
    world.script.failOn("GetInstance", fault);
    EXPECT_FALSE(outcome(last).returned()) << nameOf(fault);
    EXPECT_EQ(world.journal.calls().find("GetUpcallNamespace"), std::string::npos);
  }
}

TEST_F(ExecuteRetry, AFailureOfTheRetryPasses) {
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

TEST_F(ExecuteRetry, WhatTheRetryMissesIsNamedInTheException) {
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

TEST_F(ExecuteRetry, AClassThatCmpiProvidersDoNotServeHasNoUpcallNamespace) {
  world.theClass("CIM_LogicalDevice")->serveBy(world.plugin);
  world.plugin->removeInstance(pathOf(last.element));
  index(last, 2);
  const Outcome ended = outcome(last);
  EXPECT_EQ(ended.kind, Outcome::Kind::standardException);
  EXPECT_EQ(ended.text, "diagsrunner: no CMPI namespace that serves class CIM_LogicalDevice");
}

}  // namespace
}  // namespace support
