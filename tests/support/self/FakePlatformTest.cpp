#include <gtest/gtest.h>

#include <stdexcept>

#include "framework/TOSSpecific.h"
#include "framework/TVORException.h"
#include "platform/Platform.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/World.h"

namespace support {
namespace {

namespace platform = diagsrunner::platform;
using NZELVOR20::TOSSpecific;
using NZELVOR20::TVORException;

TEST(FakePlatform, TheClockAdvancesWithTheSleepsAlone) {
  World world;
  const std::int64_t start = platform::currentTime();
  EXPECT_EQ(platform::currentTime(), start);
  platform::sleepMilliseconds(1500);
  EXPECT_DOUBLE_EQ(platform::secondsBetween(platform::currentTime(), start), 1.0);
  platform::sleepMilliseconds(500);
  EXPECT_DOUBLE_EQ(platform::secondsBetween(platform::currentTime(), start), 2.0);
  EXPECT_EQ(world.platform.sleptMilliseconds(), 2000U);
  EXPECT_EQ(world.journal.all(), lines({sleptFor(1500), sleptFor(500)}));
}

TEST(FakePlatform, TheClockFollowsItsScript) {
  World world;
  world.platform.setReadings({0, 42});
  const std::int64_t start = platform::currentTime();
  EXPECT_DOUBLE_EQ(platform::secondsBetween(platform::currentTime(), start), 42.0);
  EXPECT_EQ(world.platform.readings(), 2);
  EXPECT_THROW(platform::currentTime(), std::logic_error);
}

TEST(FakePlatform, AHookRunsAtItsReading) {
  World world;
  int runs = 0;
  world.platform.atReading(2, [&] { ++runs; });
  platform::currentTime();
  EXPECT_EQ(runs, 0);
  platform::currentTime();
  platform::currentTime();
  EXPECT_EQ(runs, 1);
}

TEST(FakePlatform, AnEndlessWaitIsCutShort) {
  World world;
  const auto readForEver = [] {
    for (;;) platform::currentTime();
  };
  const auto sleepForEver = [] {
    for (;;) platform::sleepMilliseconds(1);
  };
  EXPECT_THROW(readForEver(), std::logic_error);
  EXPECT_THROW(sleepForEver(), std::logic_error);
}

TEST(FakePlatform, AFileIsReadUpToTheSizeAskedFor) {
  World world;
  world.platform.setFile("f", "abcdef");
  char buffer[8] = {};
  EXPECT_TRUE(platform::readFile("f", buffer, 3));
  EXPECT_STREQ(buffer, "abc");
  EXPECT_TRUE(platform::readFile("f", buffer, 7));
  EXPECT_STREQ(buffer, "abcdef");
  EXPECT_EQ(world.journal.files(), lines({"readFile(\"f\", 3)", "readFile(\"f\", 7)"}));
}

TEST(FakePlatform, AMissingFileDoesNotOpen) {
  World world;
  char buffer[8] = "kept";
  EXPECT_FALSE(platform::readFile("missing", buffer, 7));
  EXPECT_STREQ(buffer, "kept");
}

TEST(FakePlatform, MemoryIsZeroAndOfTheSizeAskedFor) {
  World world;
  const platform::Buffer buffer = platform::allocateZeroed(3);
  ASSERT_TRUE(buffer);
  EXPECT_EQ(buffer[0] + buffer[1] + buffer[2], 0);
  EXPECT_TRUE(platform::allocateZeroed(0));
  EXPECT_EQ(world.journal.files(), lines({"allocate(3)", "allocate(0)"}));
}

TEST(FakePlatform, TheAllocationToldFails) {
  World world;
  world.platform.failAllocation(2);
  EXPECT_TRUE(platform::allocateZeroed(1));
  EXPECT_FALSE(platform::allocateZeroed(1));
  EXPECT_TRUE(platform::allocateZeroed(1));
}

TEST(FakePlatform, MoreMemoryThanTheMachineHasIsNotToBeHad) {
  World world;
  EXPECT_FALSE(platform::allocateZeroed(FakePlatform::kMemory + 1));
}

TEST(FakeOS, SizesAreThoseOfTheFiles) {
  World world;
  world.setDataFile("x.xml", "12345");
  EXPECT_EQ(TOSSpecific::GetFileSize("/opt/diags\\kfr\\data\\x.xml"), 5U);
  EXPECT_EQ(world.journal.osCalls(),
            lines({"TOSSpecific.GetFileSize(\"/opt/diags\\kfr\\data\\x.xml\")"}));
}

TEST(FakeOS, ASizeCanBeSaidForAFileThatIsNotThere) {
  World world;
  world.os.setSize("f", 5000000000U);
  EXPECT_EQ(TOSSpecific::GetFileSize("f"), 5000000000U);
  EXPECT_FALSE(platform::readFile("f", nullptr, 0));
}

TEST(FakeOS, TheSizeOfAMissingFileThrows) {
  World world;
  EXPECT_THROW(TOSSpecific::GetFileSize("missing"), TVORException);
}

TEST(FakeOS, AnswersWhatItWasTold) {
  World world;
  EXPECT_FALSE(TOSSpecific::isOEMBuild());
  world.os.isOEM = true;
  world.os.biosID = "KO";
  world.os.rootPath = "C:\\diags";
  EXPECT_TRUE(TOSSpecific::isOEMBuild());
  EXPECT_EQ(TOSSpecific::GetBiosID(), "KO");
  EXPECT_EQ(TOSSpecific::GetVORRootPath(), "C:\\diags");
}

TEST(FakeOS, QueriesFailAsScripted) {
  World world;
  world.script.failOn("TOSSpecific.GetBiosID()", Fault::otherException);
  EXPECT_THROW(TOSSpecific::GetBiosID(), int);
}

}  // namespace
}  // namespace support
