#include <gtest/gtest.h>

#include "framework/TCIMReference.h"
#include "substitute/vorcore/values/ClassDeclaration.h"
#include "tests/substitute/vorcore/Expectations.h"

namespace vorcore {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMReference;
using NZELVOR20::TCIMValue;

TCIMValue real(double value) { return TCIMValue::Real(ECIMType::eReal64, value); }
TCIMValue s64(std::int64_t value) { return TCIMValue::Signed(ECIMType::eSint64, value); }

struct Row {
  TCIMValue value;
  ECIMType type;
  TCIMValue wanted;
};

TEST(ConvertTo, WhatLosesNothingConverts) {
  const std::vector<Row> rows = {
      {TCIMValue("x"), ECIMType::eString, TCIMValue("x")},
      {TCIMValue("x"), ECIMType::eNone, TCIMValue("x")},
      {TCIMValue::Uint64(7), ECIMType::eUint16, TCIMValue::Uint16(7)},
      {s64(7), ECIMType::eUint32, TCIMValue::Uint32(7)},
      {TCIMValue::Uint16(7), ECIMType::eSint64, s64(7)},
      {TCIMValue("7"), ECIMType::eUint32, TCIMValue::Uint32(7)},
      {TCIMValue("-7"), ECIMType::eSint64, s64(-7)},
      {real(3), ECIMType::eUint32, TCIMValue::Uint32(3)},
      {real(-3), ECIMType::eSint64, s64(-3)},
      {TCIMValue::Uint16(3), ECIMType::eReal64, real(3)},
      {TCIMValue("2.5"), ECIMType::eReal64, real(2.5)},
      {real(0.1), ECIMType::eReal32, TCIMValue::Real(ECIMType::eReal32, 0.1)},
      {TCIMValue("true"), ECIMType::eBoolean, TCIMValue::Boolean(true)},
      {TCIMValue("A"), ECIMType::eChar16, TCIMValue::Char16('A')},
      {TCIMValue("\xE2\x82\xAC"), ECIMType::eChar16, TCIMValue::Char16(0x20AC)},
      {TCIMValue::Uint16(65), ECIMType::eChar16, TCIMValue::Char16('A')},
      {TCIMValue::Char16('A'), ECIMType::eString, TCIMValue("A")},
      {TCIMValue("20240131120000.000000+060"), ECIMType::eDateTime,
       TCIMValue::DateTime("20240131120000.000000+060")},
      {TCIMValue::DateTime("x"), ECIMType::eString, TCIMValue("x")},
  };
  for (const Row& row : rows) {
    EXPECT_TRUE(convertTo(row.value, row.type, false) == row.wanted) << row.value.ToString(10);
  }
}

struct BadRow {
  TCIMValue value;
  ECIMType type;
  bool isArray;
};

TEST(ConvertTo, WhatWouldLoseSomethingIsATypeMismatch) {
  const TCIMValue reference(TCIMReference(nullptr, "", "C", {}));
  const std::vector<BadRow> rows = {
      {TCIMValue::Uint32(65536), ECIMType::eUint16, false},
      {s64(-1), ECIMType::eUint64, false},
      {TCIMValue::Uint64(~0ULL), ECIMType::eSint64, false},
      {TCIMValue("x"), ECIMType::eUint16, false},
      {TCIMValue("7.5"), ECIMType::eUint16, false},
      {real(2.5), ECIMType::eUint16, false},
      {real(-1), ECIMType::eUint16, false},
      {real(1e30), ECIMType::eUint64, false},
      {real(1e30), ECIMType::eSint64, false},
      {TCIMValue::Uint64((1ULL << 53U) + 1), ECIMType::eReal64, false},
      {TCIMValue("2.5x"), ECIMType::eReal64, false},
      {TCIMValue::Uint16(1), ECIMType::eBoolean, false},
      {TCIMValue::Uint16(1), ECIMType::eString, false},
      {TCIMValue::Boolean(true), ECIMType::eString, false},
      {TCIMValue("AB"), ECIMType::eChar16, false},
      {TCIMValue("\xC0\x80"), ECIMType::eChar16, false},
      {TCIMValue("\xED\xA0\x80"), ECIMType::eChar16, false},
      {TCIMValue(""), ECIMType::eChar16, false},
      {TCIMValue("C"), ECIMType::eReference, false},
      {reference, ECIMType::eString, false},
      {TCIMValue("a"), ECIMType::eString, true},
      {texts({"a"}), ECIMType::eString, false},
      {texts({"1", "x"}), ECIMType::eUint16, true},
  };
  for (const BadRow& row : rows) {
    const std::string failure = failureOf([&] { convertTo(row.value, row.type, row.isArray); });
    EXPECT_EQ(failure.rfind("type mismatch: ", 0), 0U) << failure;
  }
}

TEST(ConvertTo, TheMismatchNamesBothTypes) {
  EXPECT_EQ(failureOf([] { convertTo(texts({"a"}), ECIMType::eUint16, false); }),
            "type mismatch: string array does not convert to uint16");
  EXPECT_EQ(failureOf([] { convertTo(TCIMValue("a"), ECIMType::eString, true); }),
            "type mismatch: string \"a\" does not convert to string array");
}

TEST(ConvertTo, NullTakesTheType) {
  const TCIMValue null = convertTo(TCIMValue::Null(ECIMType::eString), ECIMType::eUint16, true);
  EXPECT_TRUE(null == TCIMValue::Null(ECIMType::eUint16, true));
}

TEST(ConvertTo, AnArrayConvertsElementByElement) {
  const TCIMValue mixed = TCIMValue::Array(ECIMType::eString, {TCIMValue("1"), TCIMValue()});
  EXPECT_TRUE(convertTo(mixed, ECIMType::eUint16, true) ==
              TCIMValue::Array(ECIMType::eUint16,
                               {TCIMValue::Uint16(1), TCIMValue::Null(ECIMType::eUint16)}));
}

}  // namespace
}  // namespace vorcore
