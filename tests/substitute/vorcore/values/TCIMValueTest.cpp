#include <gtest/gtest.h>

#include <boost/make_shared.hpp>
#include <functional>
#include <limits>

#include "framework/ICIMClass.h"
#include "framework/TCIMReference.h"
#include "framework/TCIMValue.h"
#include "framework/TInmemInstance.h"
#include "substitute/vorcore/inmem/InmemNamespace.h"
#include "tests/substitute/vorcore/Expectations.h"

namespace NZELVOR20 {
namespace {

using vorcore::failureOf;

constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();
constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();

TCIMValue u64(std::uint64_t value) { return TCIMValue::Uint64(value); }
TCIMValue s64(std::int64_t value) { return TCIMValue::Signed(ECIMType::eSint64, value); }
TCIMValue real(double value) { return TCIMValue::Real(ECIMType::eReal64, value); }

TCIMReference reference(const char* id) {
  return TCIMReference(boost::shared_ptr<ICIMNamespace>(), "root/cimv2", "CIM_A",
                       {{"Id", TCIMValue(id)}});
}

boost::shared_ptr<ICIMInstance> instance() {
  static const auto ns = TInmemNamespace::make("root/cimv2");
  static const auto itsClass = ns->AllocateClass("CIM_A", "", {});
  return itsClass->AllocateInstance({});
}

TEST(TCIMValue, IsSmall) { EXPECT_EQ(sizeof(TCIMValue), 24U); }

TEST(TCIMValue, KnowsItsTypeAndWhetherItIsNull) {
  EXPECT_TRUE(TCIMValue().IsNull());
  EXPECT_EQ(TCIMValue().GetType(), ECIMType::eNone);
  EXPECT_TRUE(TCIMValue(static_cast<const char*>(nullptr)).IsNull());
  EXPECT_EQ(TCIMValue(static_cast<const char*>(nullptr)).GetType(), ECIMType::eString);
  EXPECT_FALSE(TCIMValue("").IsNull());
  EXPECT_FALSE(TCIMValue("").IsArray());
  EXPECT_TRUE(TCIMValue::Instance(nullptr).IsNull());
  EXPECT_EQ(TCIMValue::Instance(nullptr).GetType(), ECIMType::eInstance);
  EXPECT_TRUE(TCIMValue::Null(ECIMType::eUint8, true).IsArray());
  EXPECT_FALSE(TCIMValue::Array(ECIMType::eUint8, {}).IsNull());
}

TEST(TCIMValue, AValueThatWasMovedFromIsNull) {
  TCIMValue text("text");
  const TCIMValue taken = std::move(text);
  EXPECT_TRUE(text.IsNull());
  EXPECT_EQ(text.ToString(10), "");
  TCIMValue number = TCIMValue::Uint16(7);
  TCIMValue target;
  target = std::move(number);
  EXPECT_TRUE(number.IsNull());
  EXPECT_EQ(target.ToUint16(), 7);
  EXPECT_EQ(taken.ToText(), "text");
}

struct TextRow {
  const char* name;
  TCIMValue value;
  int base;
  const char* wanted;
};

TEST(TCIMValue, IsShownByItsTypesRule) {
  const std::vector<TextRow> rows = {
      {"null", TCIMValue(), 10, ""},
      {"typed null", TCIMValue::Null(ECIMType::eUint32), 10, ""},
      {"true", TCIMValue::Boolean(true), 10, "true"},
      {"false", TCIMValue::Boolean(false), 10, "false"},
      {"ASCII character", TCIMValue::Char16('A'), 10, "A"},
      {"two-byte character", TCIMValue::Char16(0xE9), 10, "\xC3\xA9"},
      {"three-byte character", TCIMValue::Char16(0x20AC), 10, "\xE2\x82\xAC"},
      {"half of a pair", TCIMValue::Char16(0xD800), 10, "\xEF\xBF\xBD"},
      {"zero", TCIMValue::Uint16(0), 10, "0"},
      {"the largest", u64(kMost), 10, "18446744073709551615"},
      {"the largest in bits", u64(kMost), 2,
       "1111111111111111111111111111111111111111111111111111111111111111"},
      {"the smallest", s64(kLeast), 10, "-9223372036854775808"},
      {"hexadecimal", TCIMValue::Uint32(0xBEEF), 16, "beef"},
      {"negative hexadecimal", s64(-255), 16, "-ff"},
      {"base 36", TCIMValue::Uint32(35), 36, "z"},
      {"real", real(0.1), 10, "0.1"},
      {"whole real", real(-2), 10, "-2"},
      {"narrow real", TCIMValue::Real(ECIMType::eReal32, 0.1), 10, "0.1"},
      {"string", TCIMValue("a \"text\""), 16, "a \"text\""},
      {"date", TCIMValue::DateTime("20240131120000.000000+060"), 10, "20240131120000.000000+060"},
      {"reference", TCIMValue(reference("7")), 10, "root/cimv2:CIM_A.Id=\"7\""},
      {"empty reference", TCIMValue(TCIMReference(nullptr, {})), 10, ""},
      {"instance", TCIMValue::Instance(instance()), 10, "root/cimv2:CIM_A"},
      {"empty array", TCIMValue::Array(ECIMType::eString, {}), 10, "{}"},
      {"array", TCIMValue::Array(ECIMType::eUint16, {TCIMValue::Uint16(1), TCIMValue::Uint16(10)}),
       10, "{1,10}"},
      {"array of nulls", TCIMValue::Array(ECIMType::eString, {TCIMValue(), TCIMValue()}), 10,
       "{,}"},
  };
  for (const TextRow& row : rows) EXPECT_EQ(row.value.ToString(row.base), row.wanted) << row.name;
}

TEST(TCIMValue, ABaseWithoutDigitsIsAnInvalidParameter) {
  for (const int base : {-1, 0, 1, 37}) {
    EXPECT_EQ(failureOf([&] { TCIMValue::Uint16(1).ToString(base); }),
              "invalid parameter: number base " + std::to_string(base));
  }
}

TEST(TCIMValue, NumbersAreReadFromEveryTypeThatFits) {
  const auto sint8 = TCIMValue::Signed(ECIMType::eSint8, 127);
  for (const TCIMValue& value :
       {TCIMValue::Unsigned(ECIMType::eUint8, 127), TCIMValue::Uint16(127), TCIMValue::Uint32(127),
        u64(127), sint8, s64(127), TCIMValue("127"), TCIMValue("0127")}) {
    EXPECT_EQ(value.ToUint16(), 127) << value.ToString(10);
    EXPECT_EQ(value.ToUint64(), 127U) << value.ToString(10);
    EXPECT_EQ(value.ToSint64(), 127) << value.ToString(10);
  }
  EXPECT_EQ(TCIMValue::Boolean(true).ToUint16(), 1);
  EXPECT_EQ(TCIMValue::Boolean(false).ToSint64(), 0);
  EXPECT_EQ(s64(kLeast).ToSint64(), kLeast);
  EXPECT_EQ(TCIMValue("-5").ToSint64(), -5);
  EXPECT_EQ(u64(kMost).ToUint64(), kMost);
  EXPECT_EQ(TCIMValue::Uint16(65535).ToUint16(), 65535);
  EXPECT_EQ(u64(kMost).ToReal(), 18446744073709551615.0);
  EXPECT_EQ(s64(-3).ToReal(), -3.0);
  EXPECT_EQ(real(2.5).ToReal(), 2.5);
}

struct MismatchRow {
  std::function<void()> read;
  const char* wanted;
};

TEST(TCIMValue, WhatDoesNotFitIsATypeMismatchThatSaysWhy) {
  const std::vector<MismatchRow> rows = {
      {[] { TCIMValue().ToUint16(); }, "a null untyped cannot be read as an unsigned integer"},
      {[] { TCIMValue::Uint32(65536).ToUint16(); }, "uint32 \"65536\" cannot be read as uint16"},
      {[] { s64(-1).ToUint16(); }, "sint64 \"-1\" cannot be read as an unsigned integer"},
      {[] { TCIMValue("70000").ToUint16(); }, "string \"70000\" cannot be read as uint16"},
      {[] { TCIMValue("12x").ToUint16(); }, "string \"12x\" cannot be read as an unsigned integer"},
      {[] { TCIMValue("").ToUint64(); }, "string \"\" cannot be read as an unsigned integer"},
      {[] { TCIMValue(" 1").ToUint64(); }, "string \" 1\" cannot be read as an unsigned integer"},
      {[] { TCIMValue("18446744073709551616").ToUint64(); },
       "string \"18446744073709551616\" cannot be read as an unsigned integer"},
      {[] { real(1).ToUint16(); }, "real64 \"1\" cannot be read as an unsigned integer"},
      {[] { TCIMValue::Char16('1').ToUint16(); },
       "char16 \"1\" cannot be read as an unsigned integer"},
      {[] { u64(kMost).ToSint64(); },
       "uint64 \"18446744073709551615\" cannot be read as a signed integer"},
      {[] { TCIMValue("1.5").ToReal(); }, "string \"1.5\" cannot be read as a real number"},
      {[] { TCIMValue::Uint16(1).ToBoolean(); }, "uint16 \"1\" cannot be read as a boolean"},
      {[] { TCIMValue::Uint16(1).ToText(); }, "uint16 \"1\" cannot be read as a text"},
      {[] { TCIMValue::Null(ECIMType::eString).ToText(); },
       "a null string cannot be read as a text"},
      {[] { vorcore::texts({"a"}).ToText(); }, "string array cannot be read as a text"},
      {[] { TCIMValue("x").ToReference(); }, "string \"x\" cannot be read as a reference"},
      {[] { TCIMValue::Null(ECIMType::eReference).ToReference(); },
       "a null reference cannot be read as a reference"},
      {[] { TCIMValue("x").ToArray(); }, "string \"x\" cannot be read as an array"},
      {[] { TCIMValue::Null(ECIMType::eString, true).ToArray(); },
       "a null string array cannot be read as an array"},
      {[] { TCIMValue(reference("1")).ToInstance(); }, "reference cannot be read as an instance"},
      {[] { TCIMValue::Unsigned(ECIMType::eUint8, 256); }, "256 does not fit into uint8"},
      {[] { TCIMValue::Unsigned(ECIMType::eUint32, 1ULL << 32U); },
       "4294967296 does not fit into uint32"},
      {[] { TCIMValue::Unsigned(ECIMType::eSint8, 1); }, "sint8 is no unsigned integer type"},
      {[] { TCIMValue::Signed(ECIMType::eSint8, 128); }, "128 does not fit into sint8"},
      {[] { TCIMValue::Signed(ECIMType::eSint8, -129); }, "-129 does not fit into sint8"},
      {[] { TCIMValue::Signed(ECIMType::eUint8, 1); }, "uint8 is no signed integer type"},
      {[] { TCIMValue::Real(ECIMType::eString, 1); }, "string is no real type"},
      {[] { TCIMValue::Array(ECIMType::eUint16, {TCIMValue("a")}); },
       "an array of uint16 cannot hold string"},
      {[] { TCIMValue::Array(ECIMType::eString, {vorcore::texts({})}); },
       "an array of string cannot hold an array"},
      {[] { TCIMValue(std::string(50, 'x')).ToUint16(); },
       "string \"xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx...\" cannot be read as an unsigned "
       "integer"},
  };
  for (const MismatchRow& row : rows) {
    EXPECT_EQ(failureOf(row.read), std::string("type mismatch: ") + row.wanted);
  }
}

TEST(TCIMValue, TheEdgesOfEachWidthFit) {
  EXPECT_EQ(TCIMValue::Signed(ECIMType::eSint8, -128).ToSint64(), -128);
  EXPECT_EQ(TCIMValue::Signed(ECIMType::eSint16, 32767).ToSint64(), 32767);
  EXPECT_EQ(TCIMValue::Signed(ECIMType::eSint32, -2147483648LL).ToSint64(), -2147483648LL);
  EXPECT_EQ(TCIMValue::Unsigned(ECIMType::eUint32, 4294967295U).ToUint64(), 4294967295U);
}

TEST(TCIMValue, BooleansAreReadFromTheirWordsToo) {
  EXPECT_TRUE(TCIMValue("TRUE").ToBoolean());
  EXPECT_FALSE(TCIMValue("False").ToBoolean());
  EXPECT_TRUE(TCIMValue::Boolean(true).ToBoolean());
}

TEST(TCIMValue, PayloadsAreHandedBackAsTheyWere) {
  const auto embedded = instance();
  EXPECT_EQ(TCIMValue::Instance(embedded).ToInstance(), embedded);
  EXPECT_EQ(TCIMValue(reference("9")).ToReference().GetPath(), "root/cimv2:CIM_A.Id=\"9\"");
  EXPECT_EQ(vorcore::texts({"a", "b"}).ToArray().at(1).ToText(), "b");
  EXPECT_EQ(TCIMValue::DateTime("x").ToText(), "x");
}

TEST(TCIMValue, CopiesShareTheirText) {
  const TCIMValue one("text");
  const TCIMValue other = one;
  EXPECT_EQ(&one.GetText(), &other.GetText());
}

TEST(TCIMValue, EqualMeansSameTypeAndSameValue) {
  const auto embedded = instance();
  const std::vector<std::pair<TCIMValue, TCIMValue>> equal = {
      {TCIMValue(), TCIMValue()},
      {TCIMValue::Null(ECIMType::eUint8), TCIMValue::Null(ECIMType::eUint8)},
      {TCIMValue("a"), TCIMValue(std::string("a"))},
      {TCIMValue::Uint16(1), TCIMValue::Unsigned(ECIMType::eUint16, 1)},
      {real(0.0), real(-0.0)},
      {TCIMValue(reference("1")), TCIMValue(reference("1"))},
      {TCIMValue(TCIMReference(nullptr, {})), TCIMValue(TCIMReference(nullptr, {{"a", "b"}}))},
      {TCIMValue::Instance(embedded), TCIMValue::Instance(embedded)},
      {vorcore::texts({"a", "b"}), vorcore::texts({"a", "b"})},
  };
  for (const auto& pair : equal) EXPECT_TRUE(pair.first == pair.second) << pair.first.ToString(10);

  const std::vector<std::pair<TCIMValue, TCIMValue>> different = {
      {TCIMValue(), TCIMValue::Null(ECIMType::eUint8)},
      {TCIMValue::Null(ECIMType::eUint8), TCIMValue::Null(ECIMType::eUint8, true)},
      {TCIMValue(""), TCIMValue::Null(ECIMType::eString)},
      {TCIMValue("a"), TCIMValue("A")},
      {TCIMValue("1"), TCIMValue::Uint16(1)},
      {TCIMValue::Uint16(1), TCIMValue::Uint32(1)},
      {TCIMValue("x"), TCIMValue::DateTime("x")},
      {real(std::numeric_limits<double>::quiet_NaN()),
       real(std::numeric_limits<double>::quiet_NaN())},
      {TCIMValue(reference("1")), TCIMValue(reference("2"))},
      {TCIMValue(reference("1")), TCIMValue(TCIMReference(nullptr, {}))},
      {TCIMValue::Instance(instance()), TCIMValue::Instance(instance())},
      {vorcore::texts({"a", "b"}), vorcore::texts({"b", "a"})},
      {vorcore::texts({"a"}), TCIMValue("a")},
  };
  for (const auto& pair : different) EXPECT_TRUE(pair.first != pair.second);
}

}  // namespace
}  // namespace NZELVOR20
