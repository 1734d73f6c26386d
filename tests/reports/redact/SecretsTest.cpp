#include <gtest/gtest.h>

#include "reports/redact/Secrets.h"

namespace reports {
namespace {

using Kind = Secrets::Kind;

Secrets knowing() {
  Secrets secrets;
  secrets.replace(Kind::kHost, "bench-7.lab.example");
  secrets.replace(Kind::kHost, "bench-7");
  secrets.replace(Kind::kSerial, "SN-4711");
  secrets.replace(Kind::kSerial, "WX 12/B");
  return secrets;
}

struct RedactRow {
  const char* name;
  const char* text;
  const char* redacted;
};

class Redacted : public testing::TestWithParam<RedactRow> {};

TEST_P(Redacted, TextsHaveReplacements) {
  EXPECT_EQ(knowing().redact(GetParam().text), GetParam().redacted);
}

const RedactRow kRedactRows[] = {
    {"Nothing", "All is well at 12:34:56 on 2026-11-21.", "All is well at 12:34:56 on 2026-11-21."},
    {"Empty", "", ""},
    {"ASerial", "module SN-4711 failed", "module serial-1 failed"},
    {"InOtherCase", "sn-4711", "serial-1"},
    {"WithABlank", "<WX 12/B>", "<serial-2>"},
    {"NotWithinAWord", "xSN-4711 SN-47110", "xSN-4711 SN-47110"},
    {"InAPath", "/disk/SN-4711/part1", "/disk/serial-1/part1"},
    {"TheHost", "bench-7.lab.example bench-7", "host-1 host-2"},
    {"TheHostInAnAddress", "http://bench-7:80/", "http://host-2:80/"},
    {"AMac", "eth0 00:1a:2B:3c:4d:5e up", "eth0 address-1 up"},
    {"AMacOfAnotherWriting", "00:1A:2B:3C:4D:5E 00-1a-2b-3c-4d-5e", "address-1 address-1"},
    {"TwoMacs", "00:1a:2b:3c:4d:5e,00:1a:2b:3c:4d:5f", "address-1,address-2"},
    {"EightBytes", "00:1a:2b:ff:fe:3c:4d:5e", "address-1"},
    {"FiveBytesAreNone", "00:1a:2b:3c:4d", "00:1a:2b:3c:4d"},
    {"SevenBytesAreNone", "00:1a:2b:3c:4d:5e:6f", "00:1a:2b:3c:4d:5e:6f"},
    {"APciAddressIsNone", "0000:03:00.0", "0000:03:00.0"},
    {"ADiskAddress", "wwn-0x5000c500a1b2c3d4 naa.5000c500a1b2c3d4", "address-1 address-1"},
    {"ALabelledSerial", "Serial Number: ZFN0AB12", "Serial Number: serial-3"},
    {"AsAMember", R"("SerialNumber":"ZFN0AB12")", R"("SerialNumber":"serial-3")"},
    {"AsAShortLabel", "S/N: ZFN0AB12.", "S/N: serial-3."},
    {"ALabelledWordIsNone", "Serial: console", "Serial: console"},
    {"NoLabel", "serial port 12345", "serial port 12345"},
};
INSTANTIATE_TEST_SUITE_P(All, Redacted, testing::ValuesIn(kRedactRows),
                         [](const auto& row) { return std::string(row.param.name); });

struct HostRow {
  const char* host;
  const char* text;
  const char* redacted;
};

TEST(Secrets, AHostThatIsNamedByAnEverydayWordSpoilsNoText) {
  const HostRow rows[] = {
      {"memory", "DIAGS: Memory Self Addressing,mem0", "DIAGS: Memory Self Addressing,mem0"},
      {"TEST", "the test of test 1 passed", "the test of test 1 passed"},
      {"test", "on host test, HostName=\"Test\"", "on host host-1, HostName=\"host-1\""},
      {"disk", "root@disk: //disk/share disk 1", "root@host-1: //host-1/share disk 1"},
      {"disk", "computer name: disk", "computer name: host-1"},
      {"disk", "ghost disk", "ghost disk"},
      {"host", "host host", "host host-1"},
      {"db", "db, host db", "db, host host-1"},
      {"a", "a host a", "a host host-1"},
      {"atlas", "Atlas answered atlas.", "host-1 answered host-1."},
      {"test-1", "test-1 of test", "host-1 of test"},
  };
  for (const HostRow& row : rows) {
    Secrets secrets;
    EXPECT_EQ(secrets.replace(Kind::kHost, row.host), "host-1");
    EXPECT_EQ(secrets.redact(row.text), row.redacted) << row.host;
  }
}

TEST(Secrets, OneValueHasOneReplacement) {
  Secrets secrets;
  EXPECT_EQ(secrets.replace(Kind::kSerial, "A123"), "serial-1");
  EXPECT_EQ(secrets.replace(Kind::kSerial, "B123"), "serial-2");
  EXPECT_EQ(secrets.replace(Kind::kSerial, "a123"), "serial-1");
}

TEST(Secrets, WhatFirmwareWritesForNoNumberStays) {
  Secrets secrets;
  for (const char* text : {"Not Specified", "To Be Filled By O.E.M.", "00000000", "None", ""}) {
    EXPECT_EQ(secrets.replace(Kind::kSerial, text), text);
  }
  EXPECT_EQ(secrets.redact("None of 00000000"), "None of 00000000");
}

TEST(Secrets, AShortNumberIsReplacedButNotLookedFor) {
  Secrets secrets;
  EXPECT_EQ(secrets.replace(Kind::kSerial, "12"), "serial-1");
  EXPECT_EQ(secrets.redact("12 errors"), "12 errors");
}

TEST(Secrets, WhatATextCalledASerialIsKnownFromThenOn) {
  Secrets secrets;
  secrets.redact("SerialNumber=ZFN0AB12");
  EXPECT_EQ(secrets.redact("disk ZFN0AB12"), "disk serial-1");
}

TEST(Secrets, AnAddressAsASerialNumberIsTheSameInEveryWriting) {
  Secrets secrets;
  EXPECT_EQ(secrets.replace(Kind::kSerial, "00:1A:2b:3c:4d:5e"), "address-1");
  EXPECT_EQ(secrets.redact("00:1a:2b:3c:4d:5e 00-1A-2B-3C-4D-5E 001a2b3c4d5e 001A2B3C4D5F"),
            "address-1 address-1 address-1 001A2B3C4D5F");
  EXPECT_EQ(secrets.replace(Kind::kSerial, "eui.0025385b71b00a11"), "address-2");
  EXPECT_EQ(secrets.redact("0025385B71B00A11"), "address-2");
}

TEST(Secrets, EverNewNumbersFillNoMemory) {
  Secrets secrets;
  for (int i = 0; i < 10'001; ++i) secrets.redact("S/N: X" + std::to_string(i + 100'000));
  EXPECT_EQ(secrets.replace(Kind::kSerial, "NEW-1"), "serial-x");
}

}  // namespace
}  // namespace reports
