#include <gtest/gtest.h>

#include "tests/runner/Query.h"
#include "tests/support/WithRunner.h"

/// The table of the tests that the Pegasus server serves.
namespace support {
namespace {

using Access = DiagsRunnerAccess;
using NZELVOR20::TCIMValue;

/// Two tests that the Pegasus server serves.
class PegasusTests : public WithRunner<> {
 public:
  PegasusTests() {
    memory.association->setPegasusText("root/PG_A");
    processor.association->setPegasusText("root/PG_B");
    query.family = TCIMValue("pegasus");
  }
  ScriptedTest memory = addTest("Memory Test", "mem0", "System Memory");
  ScriptedTest processor = addTest("Processor Test", "cpu0", "Processor 0");
  Query query;
};

const char kMemoryID[] = "Memory Test,mem0,System Memory";

const char kItem[] = "DiagsRunner::GetCIMData m_diagPegasusNS.insert testItemID=";
const char kItemNamespace[] = "DiagsRunner::GetCIMData m_diagPegasusNS.insert testItemNspStr=";

TEST(PegasusTests, RegistersEachListedPegasusTest) {
  PegasusTests world;
  world.query.ask(world.runner());
  EXPECT_EQ(describe(Access::diagPegasusNS(world.runner())),
            "{Memory Test,mem0,System Memory=\"root/PG_A\", "
            "Processor Test,cpu0,Processor 0=\"root/PG_B\"}");
}

TEST(PegasusTests, LogsWhatItRegistersAfterFormingTheIdentifier) {
  PegasusTests world;
  world.processor.association->remove("ServiceProvided");
  world.query.ask(world.runner());
  const std::string all = world.journal.all();
  const std::string wanted = lines({R"(prop element1.ElementName.GetValue({nspID="pegasus"}))",
                                    "inst association1.GetPegasusNSPStr()",
                                    trace(std::string(kItem) + "Memory Test,mem0,System Memory"),
                                    trace(std::string(kItemNamespace) + "root/PG_A")});
  EXPECT_NE(all.find(wanted), std::string::npos) << all;
}

TEST(PegasusTests, RegistersAPegasusTestInEveryMode) {
  PegasusTests world;
  world.query.mode = kOtherMode;
  world.query.ask(world.runner());
  EXPECT_EQ(Access::diagPegasusNS(world.runner()).size(), 2U);
}

TEST(PegasusTests, KeepsTheFirstPegasusNamespaceOfATest) {
  PegasusTests world;
  world.query.ask(world.runner());
  world.memory.association->setPegasusText("root/later");
  world.query.ask(world.runner());
  EXPECT_EQ(describe(Access::diagPegasusNS(world.runner()).at(kMemoryID)), "\"root/PG_A\"");
}

TEST(PegasusTests, RegistersAnEmptyPegasusNamespaceAsText) {
  PegasusTests world;
  world.memory.association->setPegasusText("");
  world.query.ask(world.runner());
  EXPECT_EQ(describe(Access::diagPegasusNS(world.runner()).at(kMemoryID)), "\"\"");
}

TEST(PegasusTests, DoesNotRegisterAnExcludedPegasusTest) {
  PegasusTests world;
  world.setDataFile("excludetests.xml", "<vor version='1'><test name='Memory Test'/></vor>");
  world.query.ask(world.runner());
  EXPECT_EQ(Access::diagPegasusNS(world.runner()).count(kMemoryID), 0U);
}

TEST(PegasusTests, RegistersNothingForAnotherFamilyOrClass) {
  PegasusTests world;
  for (const char* family : {"cmpi", "Pegasus", "pegasus ", ""}) {
    Query query;
    query.family = TCIMValue(family);
    query.ask(world.runner());
  }
  const InstancePtr link = world.addInstance("link", "CIM_Link", "Number", "1");
  link->set("ServiceProvided", TCIMValue(world.memory.service->reference()));
  link->set("UserOfService", TCIMValue(world.memory.element->reference()));
  world.query.associationClass = "CIM_Link";
  EXPECT_EQ(world.query.ask(world.runner()), "true: Memory Test,mem0,System Memory|");
  EXPECT_TRUE(Access::diagPegasusNS(world.runner()).empty());
  EXPECT_EQ(world.journal.calls().find("GetPegasusNSPStr"), std::string::npos);
}

}  // namespace
}  // namespace support
