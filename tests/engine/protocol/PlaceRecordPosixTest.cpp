#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <string>

#include "engine/protocol/PlaceRecord.h"

namespace engine {
namespace {

std::string placeIn(const PlaceRecord& record) {
  const auto place = record.read();
  return place ? place->provider + "/" + place->operation : "nowhere";
}

TEST(PlaceRecordTest, BeforeTheFirstEntryTheWorkerIsNowhere) {
  EXPECT_EQ(placeIn(PlaceRecord::make()), "nowhere");
}

TEST(PlaceRecordTest, TheLastEntryCounts) {
  const PlaceRecord record = PlaceRecord::make();
  EXPECT_TRUE(PlaceRecord::write(record.descriptor(), "a longer name", "invokeMethod"));
  EXPECT_TRUE(PlaceRecord::write(record.descriptor(), "P", "load"));
  EXPECT_EQ(placeIn(record), "P/load");
}

/// A worker would otherwise write over a file that happens to be open under the number.
TEST(PlaceRecordTest, NothingElseIsTakenForARecord) {
  const PlaceRecord record = PlaceRecord::make();
  const int other = memfd_create("other", MFD_CLOEXEC);
  ASSERT_EQ(ftruncate(other, 1024), 0);
  const int null = open("/dev/null", O_RDWR | O_CLOEXEC);
  EXPECT_TRUE(PlaceRecord::isRecord(record.descriptor()));
  EXPECT_FALSE(PlaceRecord::isRecord(other));
  EXPECT_FALSE(PlaceRecord::isRecord(null));
  EXPECT_FALSE(PlaceRecord::isRecord(-1));
  close(other);
  close(null);
}

TEST(PlaceRecordTest, NamesThatDoNotFitAreNotCutShort) {
  const PlaceRecord record = PlaceRecord::make();
  EXPECT_FALSE(PlaceRecord::write(record.descriptor(), std::string(1023, 'p').c_str(), "load"));
  EXPECT_EQ(placeIn(record), "nowhere");
  EXPECT_FALSE(PlaceRecord::write(-1, "P", "load"));
}

/// The one before would be blamed for what this one does.
TEST(PlaceRecordTest, NamesThatDoNotFitLeaveNoOthersBehind) {
  const PlaceRecord record = PlaceRecord::make();
  ASSERT_TRUE(PlaceRecord::write(record.descriptor(), "P", "load"));
  EXPECT_FALSE(PlaceRecord::write(record.descriptor(), std::string(2000, 'p').c_str(), "load"));
  EXPECT_EQ(placeIn(record), "nowhere");
  EXPECT_TRUE(PlaceRecord::write(record.descriptor(), "Q", "load"));
  EXPECT_EQ(placeIn(record), "Q/load");
}

/// A provider may close what it finds and open a disk under the number.
TEST(PlaceRecordTest, AFileThatHasTakenItsNumberIsNotWrittenTo) {
  const int file = memfd_create("other", MFD_CLOEXEC);
  ASSERT_EQ(pwrite(file, "data", 4, 0), 4);
  EXPECT_FALSE(PlaceRecord::write(file, "P", "load"));
  char bytes[8] = {};
  EXPECT_EQ(pread(file, bytes, sizeof bytes, 0), 4);
  EXPECT_STREQ(bytes, "data");
  close(file);
}

/// It is a provider's process that writes it: whatever it leaves there, nothing behind it is read.
TEST(PlaceRecordTest, ARecordWithoutAnEndIsReadToItsEnd) {
  const PlaceRecord record = PlaceRecord::make();
  const std::string bytes(1024, 'x');
  ASSERT_EQ(pwrite(record.descriptor(), bytes.data(), bytes.size(), 0), 1024);
  EXPECT_EQ(placeIn(record), bytes + "/");
  EXPECT_NE(ftruncate(record.descriptor(), 0), 0);
}

}  // namespace
}  // namespace engine
