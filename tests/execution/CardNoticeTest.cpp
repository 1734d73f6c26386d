#include <gtest/gtest.h>

#include "tests/support/WithRunner.h"

namespace support {
namespace {

const char kTest[] = "ELXUCNA: NIC PHY LoopBackTest,nic0,NIC";
const char kNotice[] =
    "Please ignore the error message if you do not have one of the following cards installed: "
    "ZEL Dual-port 10Gb SFP+ or ZEL Dual-port 10Gb-T\n";

std::string shownFor(const std::string& biosID, const std::string& testID) {
  WithRunner<> world;
  world.os.biosID = biosID;
  world.runner().Execute(testID, "", world.hostHandle);
  return world.journal.output();
}

TEST(CardNotice, IsForOneTestOnOneFirmware) {
  EXPECT_EQ(shownFor("ko", kTest), kNotice);
  EXPECT_EQ(shownFor("KO", kTest), kNotice);
  for (const char* biosID : {"", "k", "kox", "KOX", "oko", " ko", "ok"}) {
    EXPECT_EQ(shownFor(biosID, kTest), "") << biosID;
  }
}

TEST(CardNotice, TheTestIsSoughtAnywhereInTheIdentifier) {
  EXPECT_EQ(shownFor("ko", "x,y,ELXUCNA: NIC PHY LoopBackTest"), kNotice);
  EXPECT_EQ(shownFor("ko", "ELXUCNA: NIC PHY LoopbackTest,nic0,NIC"), "");
  EXPECT_EQ(shownFor("ko", "ELXUCNA: NIC PHY,LoopBackTest,NIC"), "");
}

TEST(CardNotice, IsWrittenOnceACallBeforeTheTestIsLookedUp) {
  WithRunner<> world;
  world.os.biosID = "ko";
  for (int i = 0; i < 2; ++i) {
    world.runner();
    world.journal.clear();
    EXPECT_EQ(world.runner().Execute(kTest, "", world.hostHandle),
              "No matching diagnostic test or device found.\n");
    EXPECT_EQ(world.journal.all(),
              lines({trace(std::string("Entering DiagsRunner::Execute with testID = ") + kTest),
                     out(kNotice), flushed(),
                     trace("DiagsRunner::Execute testID is not found in m_diagNS")}));
  }
}

TEST(CardNotice, TheRunGoesOnAfterIt) {
  WithRunner<> world;
  world.os.biosID = "ko";
  const ScriptedTest test = world.addTest("ELXUCNA: NIC PHY LoopBackTest", "nic0", "NIC");
  world.finishJob(test, "job-1", {{7, 100}});
  world.addRecord("ELXUCNA: NIC PHY LoopBackTest", "record for job-1", "OK");
  EXPECT_EQ(world.listed().Execute(test.id, "", world.hostHandle), "Pass");
  EXPECT_EQ(world.journal.output(), std::string(kNotice) + "\nPercent Complete: 100%\n");
}

}  // namespace
}  // namespace support
