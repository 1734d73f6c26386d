#include <gtest/gtest.h>

#include "runner/TestIdentifier.h"
#include "tests/runner/Row.h"
#include "tests/support/WithRunner.h"

namespace support {
namespace {

struct Split : Row {
  const char* identifier;
  bool isWhole;
  std::string serviceName;
  std::string deviceID;
  std::string elementName;
};

const char kUntouched[] = "untouched";

const Split kSplits[] = {
    {{"ThreeFields"},
     "Memory Test,mem0,System Memory",
     true,
     "Memory Test",
     "mem0",
     "System Memory"},
    {{"FourFields"}, "a,b,c,d", true, "a", "b", "c,d"},
    {{"CommasAtTheEnd"}, "a,b,c,,", true, "a", "b", "c,,"},
    {{"EmptyFields"}, ",,", true, "", "", ""},
    {{"AnEmptyElementName"}, "a,b,", true, "a", "b", ""},
    {{"AnEmptyDeviceID"}, "a,,c", true, "a", "", "c"},
    {{"BlanksAreKept"}, " a , b , c ", true, " a ", " b ", " c "},
    {{"TwoFields"}, "a,b", false, "a", kUntouched, kUntouched},
    {{"AnEmptyFirstOfTwoFields"}, ",b", false, "", kUntouched, kUntouched},
    {{"OneField"}, "a", false, kUntouched, kUntouched, kUntouched},
    {{"Nothing"}, "", false, kUntouched, kUntouched, kUntouched},
};

class ATestIdentifier : public testing::TestWithParam<Split> {};

TEST_P(ATestIdentifier, IsSplitAtTheFirstTwoCommas) {
  const Split& wanted = GetParam();
  World world;
  DiagsRunner runner(world.root->handle());
  std::string name = kUntouched;
  std::string deviceID = kUntouched;
  std::string elementName = kUntouched;
  EXPECT_EQ(runner.GetTestName(wanted.identifier, name, deviceID, elementName), wanted.isWhole);
  EXPECT_EQ(name, wanted.serviceName);
  EXPECT_EQ(deviceID, wanted.deviceID);
  EXPECT_EQ(elementName, wanted.elementName);
}

INSTANTIATE_TEST_SUITE_P(, ATestIdentifier, testing::ValuesIn(kSplits), RowName());

TEST(GetTestName, WritesNothingAndAsksNobody) {
  WithRunner<> world;
  std::string field;
  world.runner().GetTestName("a,b,c", field, field, field);
  world.runner().GetTestName("a", field, field, field);
  EXPECT_EQ(world.journal.all(), "");
}

TEST(GetTestName, MayOverwriteTheIdentifierItself) {
  World world;
  DiagsRunner runner(world.root->handle());
  std::string id = "a,b,c";
  std::string deviceID;
  std::string elementName;
  EXPECT_TRUE(runner.GetTestName(id, id, deviceID, elementName));
  EXPECT_EQ(id + deviceID + elementName, "abc");
}

TEST(TestIdentifiers, AreJoinedByCommasWithoutBlanks) {
  EXPECT_EQ(diagsrunner::joinTestIdentifier("Memory Test", "mem0", "System Memory"),
            "Memory Test,mem0,System Memory");
  EXPECT_EQ(diagsrunner::joinTestIdentifier("", "", ""), ",,");
}

}  // namespace
}  // namespace support
