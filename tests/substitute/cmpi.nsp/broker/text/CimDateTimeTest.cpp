#include "substitute/cmpi.nsp/broker/text/CimDateTime.h"
#include "tests/substitute/cmpi.nsp/broker/BrokerFixture.h"

namespace cmpinsp::broker {
namespace {

struct Row {
  const char* text;
  std::uint64_t microseconds;
  bool isInterval;
};

constexpr Row kGoodRows[] = {
    {"19700101000000.000000+000", 0, false},
    {"19700101000001.000002+000", 1000002, false},
    {"20240229120000.000000+000", 1709208000000000, false},
    {"20240229120000.000000+060", 1709204400000000, false},
    {"20240229120000.000000-060", 1709211600000000, false},
    {"20240229******.******+000", 1709164800000000, false},
    {"20241231******.******+060", 1735599600000000, false},
    {"2024**********.******+000", 1704067200000000, false},
    {"20240229120000.12****+000", 1709208000120000, false},
    {"19691231235959.000000+000", 0, false},
    {"00000001020304.000005:000", 93784000005, true},
    {"00000000000000.000000:000", 0, true},
    {"20000229000000.000000+000", 951782400000000, false},
    {"19000228000000.000000+000", 0, false},
    {"21000228235959.000000+000", 4107542399000000, false},
    {"20160101235960.000000+000", 1451692800000000, false},
    {"20241231000000.000000-999", 1735663140000000, false},
    {"99991231235959.999999+000", 253402300799999999, false},
    {"00000000235959.999999:000", 86399999999, true},
    {"0000000102****.******:000", 93600000000, true},
    {"99999999235959.999999:000", 8639999999999999999U, true},
};

TEST(CimDateTime, ReadsBothForms) {
  for (const Row& row : kGoodRows) {
    const CimDateTime time = CimDateTime::parse(row.text);
    EXPECT_EQ(time.microseconds, row.microseconds) << row.text;
    EXPECT_EQ(time.isInterval, row.isInterval) << row.text;
    EXPECT_EQ(time.text, row.text);
  }
}

constexpr const char* kBadTexts[] = {
    "",
    "now",
    "20240229120000.000000+00",
    "20240229120000.000000+0000",
    "20241329120000.000000+000",
    "20240229250000.000000+000",
    "20240229120000,000000+000",
    "20240229120000.000000*000",
    "2024022912000x.000000+000",
    "2024022912000:.000000+000",
    "2024022912000/.000000+000",
    "20240229120000.00000:+000",
    "20240229120000.000000+00:",
    "0000000:020304.000005:000",
    "00000001020304.00000::000",
    "00000001020304:000005:000",
    "20*40229120000.000000+000",
    "20240230120000.000000+000",
    "20230229120000.000000+000",
    "20241131120000.000000+000",
    "20241232120000.000000+000",
    "20240029120000.000000+000",
    "20240200120000.000000+000",
    "19000229120000.000000+000",
    "21000229120000.000000+000",
    "20240431120000.000000+000",
    "20240229240000.000000+000",
    "20240229126000.000000+000",
    "20240229120061.000000+000",
    "00000001240000.000000:000",
    "00000001236000.000000:000",
    "00000001235960.000000:000",
    "2024**29120000.000000+000",
    "20240229120000.**0000+000",
    "********010000.000000:000",
    "00000001020304.000005:060",
    "00000001250304.000005:000",
};

TEST(CimDateTime, RefusesEverythingElse) {
  for (const char* text : kBadTexts) EXPECT_THROW(CimDateTime::parse(text), Failure) << text;
}

TEST(CimDateTime, WritesWhatItReads) {
  for (const Row& row : kGoodRows) {
    const CimDateTime time = CimDateTime::fromBinary(row.microseconds, row.isInterval);
    EXPECT_EQ(CimDateTime::parse(time.text).microseconds, row.microseconds) << row.text;
  }
  EXPECT_EQ(CimDateTime::fromBinary(1709208000000000, false).text, "20240229120000.000000+000");
  EXPECT_THROW(CimDateTime::fromBinary(~std::uint64_t{0}, false), Failure);
}

struct BinaryRow {
  std::uint64_t microseconds;
  bool isInterval;
  const char* text;
};

constexpr BinaryRow kBinaryRows[] = {
    {0, false, "19700101000000.000000+000"},
    {86399999999, false, "19700101235959.999999+000"},
    {86400000000, false, "19700102000000.000000+000"},
    {951782400000000, false, "20000229000000.000000+000"},
    {951868800000000, false, "20000301000000.000000+000"},
    {1704067199000000, false, "20231231235959.000000+000"},
    {4107542400000000, false, "21000301000000.000000+000"},
    {253402300799999999, false, "99991231235959.999999+000"},
    {86399999999, true, "00000000235959.999999:000"},
    {8639999999999999999U, true, "99999999235959.999999:000"},
};

TEST(CimDateTime, IsMadeOfMicroseconds) {
  for (const BinaryRow& row : kBinaryRows) {
    const CimDateTime time = CimDateTime::fromBinary(row.microseconds, row.isInterval);
    EXPECT_EQ(time.text, row.text);
    EXPECT_EQ(time.isInterval, row.isInterval) << row.text;
  }
  EXPECT_THROW(CimDateTime::fromBinary(253402300800000000, false), Failure);
  EXPECT_THROW(CimDateTime::fromBinary(8640000000000000000U, true), Failure);
}

class DateTimeObject : public InCall {};

TEST_F(DateTimeObject, KeepsTheTextItWasMadeFrom) {
  CMPIDateTime* time = CMNewDateTimeFromChars(broker(), "20240229120000.000000+060", &st);
  ASSERT_EQ(st.rc, CMPI_RC_OK);
  EXPECT_STREQ(text(CMGetStringFormat(time, nullptr)), "20240229120000.000000+060");
  EXPECT_EQ(CMGetBinaryFormat(time, nullptr), 1709204400000000U);
  EXPECT_EQ(CMIsInterval(time, nullptr), 0);
}

TEST_F(DateTimeObject, AnIntervalSaysSo) {
  CMPIDateTime* time = CMNewDateTimeFromBinary(broker(), 5, CMPI_true, &st);
  EXPECT_EQ(CMIsInterval(time, &st), 1);
  EXPECT_STREQ(text(CMGetStringFormat(time, nullptr)), "00000000000000.000005:000");
}

TEST_F(DateTimeObject, TheCurrentTimeIsAfterThisCodeWasWritten) {
  EXPECT_GT(CMGetBinaryFormat(CMNewDateTime(broker(), nullptr), nullptr), 1700000000000000U);
}

TEST_F(DateTimeObject, BadTextIsAnInvalidParameter) {
  EXPECT_EQ(CMNewDateTimeFromChars(broker(), "yesterday", &st), nullptr);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_PARAMETER);
  EXPECT_EQ(CMNewDateTimeFromChars(broker(), nullptr, &st), nullptr);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(DateTimeObject, ABadHandleIsTold) {
  auto* bad = static_cast<CMPIDateTime*>(foreignAddress());
  EXPECT_EQ(kDateTimeTable.getBinaryFormat(bad, &st), 0U);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_HANDLE);
  EXPECT_EQ(kDateTimeTable.getStringFormat(bad, nullptr), nullptr);
  EXPECT_EQ(kDateTimeTable.isInterval(bad, nullptr), 0);
}

}  // namespace
}  // namespace cmpinsp::broker
