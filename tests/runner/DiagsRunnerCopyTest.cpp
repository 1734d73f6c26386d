#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>
#include <utility>

#include "tests/support/WithRunner.h"

namespace support {
namespace {

using Access = DiagsRunnerAccess;
using NZELVOR20::TCIMValue;

std::string textOf(const Access::Values& values) { return describe(values); }

template <typename Value>
std::string textOf(const std::map<std::string, Value>& entries) {
  std::string text;
  for (const auto& [key, value] : entries) {
    if constexpr (std::is_integral_v<Value>) {
      text += key + "=" + std::to_string(value) + ";";
    } else {
      text += key + "=" + value + ";";
    }
  }
  return text;
}

std::string textOf(const VendorMessages& messages) {
  std::string text;
  for (const auto& [key, record] : messages) {
    text += key + "=" + record.state + ";";
  }
  return text;
}

std::string textOf(const Access::Instances& instances) {
  std::string text;
  for (const auto& instance : instances) {
    text += describe(instance) + ";";
  }
  return text;
}

std::string textOf(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts) {
    joined += text + ";";
  }
  return joined;
}

using Members = std::map<std::string, std::string>;

/// Every member of a runner as text, by name.
Members membersOf(DiagsRunner& r) {
  return {{"m_sharedAux", describe(Access::sharedAux(r))},
          {"m_weakAux", describe(Access::weakAux(r).lock())},
          {"m_flagAux", Access::flagAux(r) ? "true" : "false"},
          {"m_biosID", Access::biosID(r)},
          {"m_runFinished", Access::runFinished(r).isSet() ? "true" : "false"},
          {"m_testList", Access::testList(r)},
          {"m_excludedTests", textOf(Access::excludedTests(r))},
          {"m_testIndex", textOf(Access::testIndex(r))},
          {"m_runParams", textOf(Access::runParams(r))},
          {"m_finishedTests", textOf(Access::finishedTests(r))},
          {"m_namespace", describe(Access::theNamespace(r))},
          {"m_runService", describe(Access::runService(r))},
          {"m_vendorMessages", textOf(Access::vendorMessages(r))},
          {"m_testInstances", textOf(Access::testInstances(r))},
          {"m_diagNS", textOf(Access::diagNS(r))},
          {"m_diagPegasusNS", textOf(Access::diagPegasusNS(r))}};
}

/// A runner of which no member is as the construction leaves it.
class FullRunner : public World {
 public:
  FullRunner() : runner(root->handle()), other(host->handle()) {
    const ScriptedTest test = addTest("Memory Test", "mem0", "System Memory");
    Access::sharedAux(runner) = cmpi->handle();
    Access::weakAux(runner) = plugin->handle();
    Access::flagAux(runner) = true;
    Access::runFinished(runner).set(true);
    Access::testList(runner) = "a,b,c|";
    Access::excludedTests(runner) = {"x", "y"};
    Access::testIndex(runner) = {{"a,b,c", 7}};
    Access::runParams(runner) = {{"ManagedElement", TCIMValue("in")}};
    Access::finishedTests(runner) = {{"a,b,c", "job"}};
    Access::runService(runner) =
        boost::dynamic_pointer_cast<NZELVOR20::TCMPIInstance>(test.service->handle());
    Access::vendorMessages(runner) = {{"mem", {"mem", "", "failed", {}, {}}},
                                      {"mem", {"mem", "", "passed", {}, {}}}};
    Access::testInstances(runner) = {test.association->handle()};
    Access::diagNS(runner) = {{"a,b,c", TCIMValue("cmpi")}};
    Access::diagPegasusNS(runner) = {{"d,e,f", TCIMValue("root/pg")}};
  }

  DiagsRunner runner;
  DiagsRunner other;
  const Members full = {{"m_sharedAux", "ns cmpi"},
                        {"m_weakAux", "ns plugin"},
                        {"m_flagAux", "true"},
                        {"m_biosID", "abe1xx"},
                        {"m_runFinished", "true"},
                        {"m_testList", "a,b,c|"},
                        {"m_excludedTests", "x;y;"},
                        {"m_testIndex", "a,b,c=7;"},
                        {"m_runParams", "{ManagedElement=\"in\"}"},
                        {"m_finishedTests", "a,b,c=job;"},
                        {"m_namespace", "ns root"},
                        {"m_runService", "inst service1"},
                        {"m_vendorMessages", "mem=failed;mem=passed;"},
                        {"m_testInstances", "inst association1;"},
                        {"m_diagNS", "{a,b,c=\"cmpi\"}"},
                        {"m_diagPegasusNS", "{d,e,f=\"root/pg\"}"}};
};

TEST(TheCopyConstruction, TakesEveryMember) {
  FullRunner world;
  DiagsRunner copy(world.runner);
  EXPECT_EQ(membersOf(copy), world.full);
  EXPECT_EQ(membersOf(world.runner), world.full);
}

TEST(TheCopyAssignment, TakesEveryMember) {
  FullRunner world;
  DiagsRunner& assigned = (world.other = world.runner);
  EXPECT_EQ(&assigned, &world.other);
  EXPECT_EQ(membersOf(world.other), world.full);
  EXPECT_EQ(membersOf(world.runner), world.full);
}

TEST(TheMoveConstruction, TakesEveryMember) {
  FullRunner world;
  DiagsRunner moved(std::move(world.runner));
  EXPECT_EQ(membersOf(moved), world.full);
}

TEST(TheMoveAssignment, TakesEveryMember) {
  FullRunner world;
  DiagsRunner& assigned = (world.other = std::move(world.runner));
  EXPECT_EQ(&assigned, &world.other);
  EXPECT_EQ(membersOf(world.other), world.full);
}

TEST(TheMoveConstruction, HandsTheHandlesOverInsteadOfSharingThem) {
  FullRunner world;
  const long before = world.root->handle().use_count();
  DiagsRunner moved(std::move(world.runner));
  EXPECT_EQ(world.root->handle().use_count(), before);
  EXPECT_EQ(Access::theNamespace(world.runner), nullptr);  // NOLINT(bugprone-use-after-move)
}

TEST(TheCopyConstruction, SharesTheHandles) {
  FullRunner world;
  const long before = world.root->handle().use_count();
  DiagsRunner copy(world.runner);
  EXPECT_EQ(world.root->handle().use_count(), before + 1);
}

TEST(TheCopyAssignment, MakesTwoRunnersThatGoTheirOwnWays) {
  FullRunner world;
  world.other = world.runner;
  Access::testList(world.other) = "changed";
  Access::runFinished(world.other).set(false);
  EXPECT_EQ(membersOf(world.runner), world.full);
}

TEST(CopyingAndMoving, AskTheWorldForNothing) {
  FullRunner world;
  world.journal.clear();
  DiagsRunner copy(world.runner);
  DiagsRunner moved(std::move(copy));
  world.other = moved;
  world.other = std::move(moved);
  EXPECT_EQ(world.journal.all(), "");
}

}  // namespace
}  // namespace support
