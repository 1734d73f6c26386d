#include <gtest/gtest.h>

#include <algorithm>

#include "runner/DataFile.h"
#include "tests/support/Outcome.h"
#include "tests/support/World.h"

namespace diagsrunner {
namespace {

using support::Fault;
using support::Outcome;
using support::World;

const char kPath[] = "/opt/diags\\kfr\\data\\x.xml";

/// What `readDataFile` answers, zero bytes behind it included.
Outcome read(std::size_t shown = 0) {
  return support::outcomeOf([&] {
    const auto buffer = readDataFile(kPath);
    return buffer ? std::string(buffer.get(), std::max(shown, std::string(buffer.get()).size()))
                  : "missing";
  });
}

TEST(DataFilePath, IsTheRootFollowedByTheLiteralFolder) {
  World world;
  EXPECT_EQ(dataFilePath("x.xml"), "/opt/diags\\kfr\\data\\x.xml");
  world.os.rootPath = "C:\\";
  EXPECT_EQ(dataFilePath("x.xml"), "C:\\\\kfr\\data\\x.xml");
  world.os.rootPath = "";
  EXPECT_EQ(dataFilePath("x.xml"), "\\kfr\\data\\x.xml");
}

TEST(ReadDataFile, GivesTheTextWithAZeroByteBehindIt) {
  World world;
  world.setDataFile("x.xml", "<x/>");
  EXPECT_EQ(read(5).text, std::string("<x/>\0", 5));
  EXPECT_EQ(world.journal.files(),
            support::lines({"allocate(5)", "readFile(\"/opt/diags\\kfr\\data\\x.xml\", 4)"}));
}

TEST(ReadDataFile, AFileThatBecameShorterIsFilledUpWithZeros) {
  World world;
  world.setDataFile("x.xml", "<x");
  world.os.setSize(kPath, 4);
  EXPECT_EQ(read(5).text, std::string("<x\0\0\0", 5));
}

TEST(ReadDataFile, GivesItsMemoryBackWhereverItEnds) {
  World world;
  world.setDataFile("x.xml", "<x/>");
  {
    const auto buffer = readDataFile(kPath);
    EXPECT_EQ(world.platform.heldBuffers(), 1);
  }
  EXPECT_EQ(world.platform.heldBuffers(), 0);
  world.os.setSize("unreadable", 4);
  EXPECT_FALSE(readDataFile("unreadable"));
  EXPECT_EQ(world.platform.heldBuffers(), 0);
}

TEST(ReadDataFile, AMissingFileGivesNothing) {
  World world;
  EXPECT_EQ(read().text, "missing");
  EXPECT_EQ(world.journal.files(), "");
}

TEST(ReadDataFile, AFileThatDoesNotOpenGivesNothing) {
  World world;
  world.os.setSize(kPath, 4);
  EXPECT_EQ(read().text, "missing");
}

TEST(ReadDataFile, OtherExceptionsOfTheSizeQueryPassOn) {
  World world;
  world.script.failOn("GetFileSize", Fault::standardException);
  EXPECT_EQ(read().kind, Outcome::Kind::standardException);
  world.script.failOn("GetFileSize", Fault::otherException);
  EXPECT_EQ(read().kind, Outcome::Kind::otherException);
}

TEST(ReadDataFile, WithoutMemoryThrowsStatusFour) {
  World world;
  world.setDataFile("x.xml", "<x/>");
  world.platform.failAllocation(1);
  const Outcome outcome = read();
  EXPECT_EQ(outcome.kind, Outcome::Kind::vorException);
  EXPECT_EQ(outcome.status, 4);
}

struct Sizes {
  std::uint64_t told;
  std::uint32_t kept;
};

class DataFileSize : public testing::TestWithParam<Sizes> {};

TEST_P(DataFileSize, KeepsTheLow32Bits) {
  World world;
  world.os.setSize(kPath, GetParam().told);
  EXPECT_EQ(dataFileSize(kPath), GetParam().kept);
}

INSTANTIATE_TEST_SUITE_P(, DataFileSize,
                         testing::Values(Sizes{0, 0}, Sizes{5, 5}, Sizes{0xFFFFFFFF, 0xFFFFFFFF},
                                         Sizes{0x100000000, 0}, Sizes{0x100000005, 5},
                                         Sizes{0xFFFFFFFFFFFFFFFF, 0xFFFFFFFF}));

TEST(AllocateTextBuffer, NeverWraps) {
  World world;
  EXPECT_EQ(support::outcomeOf([] { return allocateTextBuffer(0xFFFFFFFF), std::string(); }).status,
            4);
  EXPECT_EQ(world.journal.files(), "allocate(4294967296)\n");
}

}  // namespace
}  // namespace diagsrunner
