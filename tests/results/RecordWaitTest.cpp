#include <gtest/gtest.h>

#include "results/RecordWait.h"
#include "tests/results/Events.h"
#include "tests/support/World.h"

namespace support {
namespace {

using NZELVOR20::TCIMValue;

diagsrunner::Records wait(World& world, const std::string& testName = "Disk Test") {
  return diagsrunner::waitForRecords(world.theClass(kCompletionRecord), testName);
}

const Events kPass = {recordEnumeration("{}"), sleptFor(5000)};

TEST(RecordWait, EndsAtOnceWhenTheRecordIsThere) {
  World world;
  world.addRecord("Disk Test", "id", "OK");
  EXPECT_EQ(wait(world).size(), 1U);
  EXPECT_EQ(world.journal.all(),
            text(joined({{recordEnumeration("{}")}, valueRead("record1", "ServiceName")})));
}

TEST(RecordWait, EnumeratesAgainBeforeItSleeps) {
  World world;
  world.addRecord("Disk Test", "id", "OK", "", 3);
  EXPECT_EQ(wait(world).size(), 1U);
  EXPECT_EQ(
      world.journal.all(),
      text(joined({{recordEnumeration("{}")}, kPass, kPass, valueRead("record1", "ServiceName")})));
}

TEST(RecordWait, TakesOneEnumerationMoreForEachPassAndElevenAtMost) {
  for (int appearsAt = 1; appearsAt <= 13; ++appearsAt) {
    World world;
    world.addRecord("Disk Test", "id", "OK", "", appearsAt);
    const std::size_t found = wait(world).size();
    const int enumerations = appearsAt < 11 ? appearsAt : 11;
    EXPECT_EQ(world.theClass(kCompletionRecord)->enumerations(), enumerations) << appearsAt;
    EXPECT_EQ(world.platform.sleptMilliseconds(), 5000U * unsigned(enumerations - 1)) << appearsAt;
    EXPECT_EQ(found, appearsAt <= 11 ? 1U : 0U) << appearsAt;
  }
}

TEST(RecordWait, TheEleventhEnumerationIsNotScanned) {
  World world;
  world.addRecord("Disk Test", "id", "OK", "", 11);
  wait(world);
  EXPECT_EQ(world.journal.calls().find("record1"), std::string::npos);
}

TEST(RecordWait, TheHandlesOfAPassAreReleasedBeforeTheNextEnumeration) {
  World world;
  const InstancePtr other = world.addRecord("Other Test", "id", "OK");
  long handles = 0;
  int enumerations = 0;
  world.script.onCall("EnumerateInstances", [&] {
    if (++enumerations == 2) {
      handles = other.use_count();
    }
  });
  wait(world);
  EXPECT_EQ(handles, 2) << "the test and the class hold one each";
}

TEST(RecordWait, ARecordOfAnEarlierRunEndsItToo) {
  World world;
  world.addRecord("Disk Test", "record for an earlier job", "OK");
  wait(world);
  EXPECT_EQ(world.platform.sleptMilliseconds(), 0U);
}

struct Sign {
  const char* name;
  TCIMValue service;
  bool isSign;
};

TEST(RecordWait, TheSignIsAServiceNameThatContainsTheTestName) {
  const Sign signs[] = {{"the name", "Disk Test", true},
                        {"around the name", "The Disk Test.", true},
                        {"another case", "disk test", false},
                        {"null", TCIMValue(), false},
                        {"null string", TCIMValue::Null(NZELVOR20::ECIMType::eString), false},
                        {"empty", "", false}};
  for (const Sign& sign : signs) {
    World world;
    world.addRecord("", "id", "OK")->set("ServiceName", sign.service);
    wait(world);
    EXPECT_EQ(world.platform.sleptMilliseconds(), sign.isSign ? 0U : 50000U) << sign.name;
  }
}

TEST(RecordWait, AnEmptyTestNameIsContainedInEveryText) {
  World named;
  named.addRecord("Disk Test", "id", "OK");
  wait(named, "");
  EXPECT_EQ(named.platform.sleptMilliseconds(), 0U);
}

TEST(RecordWait, EmptyHandlesAreNoSign) {
  World world;
  world.theClass(kCompletionRecord)->add({});
  world.addRecord("Disk Test", "id", "OK")->setEmpty("ServiceName");
  EXPECT_EQ(wait(world).size(), 2U);
  EXPECT_EQ(world.platform.sleptMilliseconds(), 50000U);
}

TEST(RecordWait, TheFirstSignEndsTheScan) {
  World world;
  world.addRecord("Other Test", "id", "OK");
  world.addRecord("Disk Test", "id", "OK");
  world.addRecord("Disk Test", "id", "OK");
  EXPECT_EQ(wait(world).size(), 3U);
  EXPECT_EQ(world.journal.all(), text(joined({{recordEnumeration("{}")},
                                              valueRead("record1", "ServiceName"),
                                              valueRead("record2", "ServiceName")})));
}

}  // namespace
}  // namespace support
