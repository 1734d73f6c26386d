#include <gtest/gtest.h>

#include "tests/support/Text.h"
#include "tests/support/World.h"

namespace support {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMReference;
using NZELVOR20::TCIMValue;

TEST(Text, ControlCharactersAreEscapedAndBackslashesAreNot) {
  EXPECT_EQ(quoted("a\n\t\b\r\x01\\kfr"), "\"a\\n\\t\\b\\r\\x01\\kfr\"");
}

TEST(Text, LinesEndsEachEntryWithALineBreak) {
  EXPECT_EQ(lines({"a", "b"}), "a\nb\n");
  EXPECT_EQ(lines({}), "");
}

TEST(Text, EventsReadAsTheJournalWritesThem) {
  EXPECT_EQ(trace("x"), "log 3 \"x\"");
  EXPECT_EQ(error("x"), "log 0 \"x\"");
  EXPECT_EQ(out("5%\n"), "out \"5%\\n\"");
  EXPECT_EQ(sleptFor(5000), "sleep(5000)");
}

TEST(Text, ValuesAreDescribedByTheirType) {
  EXPECT_EQ(describe(TCIMValue()), "null");
  EXPECT_EQ(describe(TCIMValue("cmpi")), "\"cmpi\"");
  EXPECT_EQ(describe(TCIMValue::Uint16(7)), "7");
  EXPECT_EQ(describe(TCIMValue::Array(ECIMType::eString, {TCIMValue("a"), TCIMValue("b")})),
            "[\"a\", \"b\"]");
}

TEST(Text, MapsAreDescribedInKeyOrder) {
  EXPECT_EQ(describe(NZELVOR20::TOptionsMap()), "{}");
  EXPECT_EQ(describe(NZELVOR20::TOptionsMap{{"nspID", TCIMValue("pegasus")},
                                            {"nsp", TCIMValue("root/x")}}),
            "{nsp=\"root/x\", nspID=\"pegasus\"}");
}

TEST(Text, DescribingAReferenceIsNotItselfRecorded) {
  World world;
  const InstancePtr disk = world.addInstance("disk", "CIM_Disk", "DeviceID", "sda");
  EXPECT_EQ(describe(TCIMValue(disk->reference())), "root/cimv2:CIM_Disk.DeviceID=\"sda\"");
  EXPECT_EQ(world.journal.all(), "");
}

TEST(Text, EmptyHandlesAndReferencesSaySo) {
  EXPECT_EQ(describe(boost::shared_ptr<NZELVOR20::ICIMInstance>()), "inst (empty)");
  EXPECT_EQ(describe(boost::shared_ptr<NZELVOR20::ICIMNamespace>()), "ns (empty)");
  EXPECT_EQ(describe(TCIMReference(boost::shared_ptr<NZELVOR20::ICIMNamespace>(), {})), "(empty)");
}

}  // namespace
}  // namespace support
