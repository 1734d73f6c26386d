#include <gtest/gtest.h>

#include <cstdint>

#include "tests/support/Outcome.h"
#include "tests/support/WithRunner.h"

namespace support {
namespace {

using Names = std::vector<std::string>;

const char kFile[] = "excludetests.xml";
const char kPath[] = "/opt/diags\\kfr\\data\\excludetests.xml";
const char kList[] = "<vor version='1'><test name='a'/><test name='b'/></vor>";
constexpr std::size_t kListSize = sizeof(kList) - 1;

/// A runner that was built without a list, for the next call to gather one.
class Gathering : public WithRunner<> {
 public:
  Gathering() { runner(); }

  Outcome gather() {
    return outcomeOf([this] { return runner().GatherExcludedTests(), std::string(); });
  }
  Names& names() { return DiagsRunnerAccess::excludedTests(runner()); }
};

std::string readOf(std::size_t size) {
  return lines({"allocate(" + std::to_string(size + 1) + ")",
                "readFile(" + quoted(kPath) + ", " + std::to_string(size) + ")"});
}

const std::string kSizeQuery =
    lines({"TOSSpecific.GetVORRootPath()", "TOSSpecific.GetFileSize(" + quoted(kPath) + ")"});

TEST(GatherExcludedTests, ReadsTheListStepByStepAndLogsNothing) {
  Gathering world;
  world.setDataFile(kFile, kList);
  EXPECT_EQ(world.gather().all, kSizeQuery + readOf(kListSize));
  EXPECT_EQ(world.names(), (Names{"a", "b"}));
}

TEST(GatherExcludedTests, ReplacesTheListRatherThanExtendingIt) {
  Gathering world;
  world.setDataFile(kFile, kList);
  world.gather();
  world.setDataFile(kFile, "<vor version='1'><test name='c'/></vor>");
  world.gather();
  EXPECT_EQ(world.names(), Names{"c"});
}

TEST(GatherExcludedTests, AnEmptyFileEmptiesTheList) {
  Gathering world;
  world.names() = {"kept"};
  world.setDataFile(kFile, "");
  EXPECT_EQ(world.gather().all, kSizeQuery + readOf(0));
  EXPECT_EQ(world.names(), Names{});
}

TEST(GatherExcludedTests, AMissingFileLeavesTheListAsItWas) {
  Gathering world;
  world.names() = {"kept"};
  EXPECT_EQ(world.gather().all, kSizeQuery);
  EXPECT_EQ(world.names(), Names{"kept"});
}

TEST(GatherExcludedTests, AFileThatDoesNotOpenLeavesTheListAsItWas) {
  Gathering world;
  world.names() = {"kept"};
  world.os.setSize(kPath, 10);
  EXPECT_EQ(world.gather().all, kSizeQuery + readOf(10));
  EXPECT_EQ(world.names(), Names{"kept"});
}

TEST(GatherExcludedTests, ASizeQueryThatThrowsTheFrameworksExceptionMeansAMissingFile) {
  Gathering world;
  world.names() = {"kept"};
  world.setDataFile(kFile, kList);
  world.script.failOn("GetFileSize", Fault::vorException);
  const Outcome outcome = world.gather();
  EXPECT_TRUE(outcome.returned());
  EXPECT_EQ(outcome.all, kSizeQuery);
  EXPECT_EQ(world.names(), Names{"kept"});
}

TEST(GatherExcludedTests, OtherExceptionsOfTheSizeQueryPassOn) {
  Gathering world;
  world.script.failOn("GetFileSize", Fault::standardException);
  EXPECT_EQ(world.gather().kind, Outcome::Kind::standardException);
  world.script.failOn("GetFileSize", Fault::otherException);
  EXPECT_EQ(world.gather().kind, Outcome::Kind::otherException);
}

TEST(GatherExcludedTests, WithoutMemoryThrowsStatusFourAndKeepsTheList) {
  Gathering world;
  world.names() = {"kept"};
  world.setDataFile(kFile, kList);
  world.platform.failAllocation(1);
  const Outcome outcome = world.gather();
  EXPECT_EQ(outcome.kind, Outcome::Kind::vorException);
  EXPECT_EQ(outcome.status, 4);
  EXPECT_EQ(outcome.all, kSizeQuery + lines({"allocate(" + std::to_string(kListSize + 1) + ")"}));
  EXPECT_EQ(world.names(), Names{"kept"});
}

TEST(GatherExcludedTests, KeepsTheSizeAsA32BitCount) {
  Gathering world;
  world.setDataFile(kFile, kList);
  world.os.setSize(kPath, (std::uint64_t{1} << 32U) + kListSize);
  EXPECT_EQ(world.gather().all, kSizeQuery + readOf(kListSize));
  EXPECT_EQ(world.names(), (Names{"a", "b"}));
}

TEST(GatherExcludedTests, ASizeOfWhole4GigabytesIsZero) {
  Gathering world;
  world.setDataFile(kFile, kList);
  world.os.setSize(kPath, std::uint64_t{1} << 32U);
  EXPECT_EQ(world.gather().all, kSizeQuery + readOf(0));
  EXPECT_EQ(world.names(), Names{});
}

TEST(GatherExcludedTests, TheLargestFileDoesNotWrapTheBuffer) {
  Gathering world;
  world.os.setSize(kPath, 0xFFFFFFFFU);
  const Outcome outcome = world.gather();
  EXPECT_EQ(outcome.status, 4);
  EXPECT_EQ(outcome.all, kSizeQuery + lines({"allocate(4294967296)"}));
}

TEST(GatherExcludedTests, ReadsUpToTheSizeAloneAndReportsTheCut) {
  Gathering world;
  world.setDataFile(kFile, kList);
  world.os.setSize(kPath, kListSize - 6);
  const Outcome outcome = world.gather();
  EXPECT_EQ(world.names(), (Names{"a", "b"}));
  EXPECT_EQ(outcome.log.substr(0, 33), "log 0 \"TPrebootTest Parser line 1");
}

TEST(GatherExcludedTests, AFileFullOfZerosGivesAnEmptyListWithoutAWord) {
  Gathering world;
  world.names() = {"former"};
  world.setDataFile(kFile, std::string(64, '\0'));
  EXPECT_EQ(world.gather().log, "");
  EXPECT_EQ(world.names(), Names{});
}

TEST(GatherExcludedTests, LogsWhatIsWrongInTheList) {
  Gathering world;
  world.setDataFile(kFile, "<vor version='1'>\n<test/></vor>");
  EXPECT_EQ(world.gather().log,
            lines({error("TPrebootTest Parser line 2:No Name Specified for Counter identifier")}));
  EXPECT_EQ(world.names(), Names{""});
}

}  // namespace
}  // namespace support
