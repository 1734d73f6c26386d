#include <gtest/gtest.h>

#include "engine/plan/CimText.h"
#include "engine/plan/PlanError.h"

namespace engine {
namespace {

struct ValueRow {
  const char* type;
  const char* text;
  const char* canonical;
};

const ValueRow kGoodRows[] = {
    {"uint8", "0", "0"},
    {"uint8", "255", "255"},
    {"uint8", "0xFF", "255"},
    {"uint8", "007", "7"},
    {"uint8", "+7", "7"},
    {"uint8", "-0", "0"},
    {"uint16", "65535", "65535"},
    {"uint32", "4294967295", "4294967295"},
    {"uint64", "18446744073709551615", "18446744073709551615"},
    {"uint64", "0xffffffffffffffff", "18446744073709551615"},
    {"sint8", "-128", "-128"},
    {"sint8", "127", "127"},
    {"sint16", "-32768", "-32768"},
    {"sint16", "32767", "32767"},
    {"sint32", "-2147483648", "-2147483648"},
    {"sint32", "2147483647", "2147483647"},
    {"sint64", "-9223372036854775808", "-9223372036854775808"},
    {"sint64", "9223372036854775807", "9223372036854775807"},
    {"sint8", "-0x80", "-128"},
    {"real32", "1.50", "1.5"},
    {"real32", "-2e3", "-2000"},
    {"real32", "0.1", "0.1"},
    {"real64", "0.1", "0.1"},
    {"real64", "+1e300", "1e+300"},
    {"real64", "3", "3"},
    {"boolean", "true", "true"},
    {"boolean", "False", "false"},
    {"boolean", "TRUE", "true"},
    {"string", "", ""},
    {"string", "a,b \\ c", "a,b \\ c"},
    {"char16", "a", "a"},
    {"char16", ",", ","},
    {"char16", "\xC3\xA9", "\xC3\xA9"},
    {"char16", "\xE2\x82\xAC", "\xE2\x82\xAC"},
    {"datetime", "20261122020000.000000+000", "20261122020000.000000+000"},
    {"datetime", "20261122020000.000000-300", "20261122020000.000000-300"},
    {"datetime", "20261122******.******+060", "20261122******.******+060"},
    {"datetime", "2026112202****.******+060", "2026112202****.******+060"},
    {"datetime", "20261122020000.123***+000", "20261122020000.123***+000"},
    {"datetime", "20240229000000.000000+000", "20240229000000.000000+000"},
    {"datetime", "00000001013000.000000:000", "00000001013000.000000:000"},
    {"datetime", "99999999235959.999999:000", "99999999235959.999999:000"},
    {"datetime", "2026-11-22T02:00:00Z", "20261122020000.000000+000"},
    {"datetime", "2026-11-22 02:00:00.5+01:00", "20261122020000.500000+060"},
    {"datetime", "2026-11-22T02:00:00.1234567-05:30", "20261122020000.123456-330"},
    {"datetime", "1h30m", "00000000013000.000000:000"},
    {"datetime", "2d1ms", "00000002000000.001000:000"},
    {"uint8[]", "", ""},
    {"uint8[]", "1,0x10,255", "1,16,255"},
    {"boolean[]", "TRUE,false", "true,false"},
    {"string[]", "a,b,c", "a,b,c"},
    {"string[]", "a\\,b,c\\\\", "a\\,b,c\\\\"},
    {"string[]", "C:\\x,y", "C:\\\\x,y"},
    {"string[]", "a,", "a,"},
    {"char16[]", "a,\\,", "a,\\,"},
    {"real32[]", "1.0,2.50", "1,2.5"},
    {"datetime[]", "90s,8h", "00000000000130.000000:000,00000000080000.000000:000"},
};

TEST(CimText, EachValueHasOneSpelling) {
  for (const ValueRow& row : kGoodRows) {
    EXPECT_EQ(canonicalText(row.type, row.text), row.canonical) << row.type << ' ' << row.text;
    EXPECT_EQ(canonicalText(row.type, row.canonical), row.canonical) << row.type << ' ' << row.text;
  }
}

struct BadValueRow {
  const char* type;
  const char* text;
};

const BadValueRow kBadRows[] = {
    {"uint8", ""},
    {"uint8", "256"},
    {"uint8", "-1"},
    {"uint8", "1.5"},
    {"uint8", " 1"},
    {"uint8", "1 "},
    {"uint8", "0x"},
    {"uint8", "0x100"},
    {"uint8", "+-1"},
    {"uint8", "--1"},
    {"uint8", "+"},
    {"uint16", "65536"},
    {"uint32", "4294967296"},
    {"uint64", "18446744073709551616"},
    {"sint8", "128"},
    {"sint8", "-129"},
    {"sint16", "32768"},
    {"sint16", "-32769"},
    {"sint32", "2147483648"},
    {"sint32", "-2147483649"},
    {"sint64", "9223372036854775808"},
    {"sint64", "-9223372036854775809"},
    {"real32", ""},
    {"real32", "1e39"},
    {"real32", "nan"},
    {"real32", "1,5"},
    {"real64", "1e999"},
    {"real64", "inf"},
    {"real64", "1x"},
    {"boolean", "1"},
    {"boolean", "yes"},
    {"boolean", ""},
    {"char16", ""},
    {"char16", "ab"},
    {"char16", "\xF0\x9F\x98\x80"},
    {"char16", "\xED\xA0\x80"},
    {"char16", "\xC0\x80"},
    {"char16", "\xE0\x80\x80"},
    {"char16", "\xC3"},
    {"char16",
     "\xC3"
     "a"},
    {"datetime", ""},
    {"datetime", "yesterday"},
    {"datetime", "20261122020000.000000"},
    {"datetime", "20261322020000.000000+000"},
    {"datetime", "20260230020000.000000+000"},
    {"datetime", "20250229000000.000000+000"},
    {"datetime", "20261122240000.000000+000"},
    {"datetime", "20261122020000.000000+0x0"},
    {"datetime", "20261122020000.000000*000"},
    {"datetime", "2026********00.000000+000"},
    {"datetime", "2026**********.000000+000"},
    {"datetime", "20261122020000.12**56+000"},
    {"datetime", "00000001013000.000000:060"},
    {"datetime", "00000001243000.000000:000"},
    {"datetime", "2026-11-22"},
    {"datetime", "2026-11-22T02:00:00"},
    {"datetime", "2026-11-22T02:00:00.Z"},
    {"datetime", "2026-13-22T02:00:00Z"},
    {"datetime", "2026-11-22T02:00:00+1"},
    {"datetime", "2026-11-22T02:00:00+01:60"},
    {"datetime", "2026-11-22T02:00:00+17:00"},
    {"datetime", "****-11-22T02:00:00Z"},
    {"uint8[]", "1,"},
    {"uint8[]", "1,256"},
    {"reference", "x"},
    {"", "x"},
    {"[]", "x"},
};

TEST(CimText, WhatATypeDoesNotTakeIsRefusedAndQuoted) {
  for (const BadValueRow& row : kBadRows) {
    try {
      const std::string value = canonicalText(row.type, row.text);
      ADD_FAILURE() << row.type << ' ' << row.text << ": " << value;
    } catch (const PlanError& error) {
      EXPECT_EQ(std::string(error.what()).front(), '"') << error.what();
    }
  }
}

TEST(CimText, ARefusalSaysWhatTheTypeTakes) {
  try {
    canonicalText("uint8[]", "1,300");
    ADD_FAILURE();
  } catch (const PlanError& error) {
    EXPECT_STREQ(error.what(), "\"300\" is no uint8: expected a whole number from 0 to 255");
  }
}

TEST(CimText, AZeroByteIsRefused) {
  EXPECT_THROW(canonicalText("string", std::string("a\0b", 3)), PlanError);
  EXPECT_THROW(canonicalText("char16", std::string("\0", 1)), PlanError);
}

}  // namespace
}  // namespace engine
