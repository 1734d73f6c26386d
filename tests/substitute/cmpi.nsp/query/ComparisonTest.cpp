#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "substitute/cmpi.nsp/model/PathReference.h"
#include "substitute/cmpi.nsp/query/Comparison.h"
#include "substitute/cmpi.nsp/query/QueryError.h"

namespace cmpinsp::query {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

TCIMValue sint(std::int64_t value) { return TCIMValue::Signed(ECIMType::eSint64, value); }
TCIMValue real(double value) { return TCIMValue::Real(ECIMType::eReal64, value); }
TCIMValue reference(const char* path) {
  return TCIMValue(referenceTo(ObjectPath::parse(path), {}));
}

struct Row {
  const char* name;
  TCIMValue left;
  int order;  ///< of left to right
  TCIMValue right;
};

std::vector<Row> orderedRows() {
  const std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
  return {
      {"small numbers", TCIMValue::Uint16(900), 0, TCIMValue::Uint64(900)},
      {"different widths", TCIMValue::Uint16(900), 1, sint(-900)},
      {"signed and unsigned", TCIMValue::Signed(ECIMType::eSint8, -1), -1, TCIMValue::Uint64(most)},
      {"both negative", sint(-5), -1, sint(-4)},
      {"uint64, exact", TCIMValue::Uint64(most), 1, TCIMValue::Uint64(most - 1)},
      {"signed above", TCIMValue::Uint64(1U << 31U), -1, sint(1LL << 40)},
      {"integer and real", TCIMValue::Uint16(1), -1, real(1.5)},
      {"integer and equal real", TCIMValue::Uint16(2), 0, real(2.0)},
      {"negative and real", sint(-1), 1, real(-1.5)},
      {"real and integer", real(0.5), 1, TCIMValue::Uint16(0)},
      {"real below zero", real(-0.5), -1, TCIMValue::Uint16(0)},
      {"an integer that no real holds", TCIMValue::Uint64((1ULL << 53) + 1), 1,
       real(9007199254740992.0)},
      {"a real above every integer", TCIMValue::Uint64(most), -1, real(1e30)},
      {"a real below every integer", sint(std::numeric_limits<std::int64_t>::min()), 1,
       real(-1e30)},
      {"two reals", real(1.5), -1, TCIMValue::Real(ECIMType::eReal32, 2.5)},
      {"texts", TCIMValue("abc"), -1, TCIMValue("abd")},
      {"texts with case", TCIMValue("Fan"), -1, TCIMValue("fan")},
      {"a character and a text", TCIMValue::Char16('x'), 0, TCIMValue("x")},
      {"a character beyond ASCII", TCIMValue::Char16(0xE4), 0, TCIMValue("\xC3\xA4")},
      {"a date-time and a text", TCIMValue::DateTime("20200101000000.000000+000"), -1,
       TCIMValue("20200101000000.000001+000")},
      {"date-times of two zones", TCIMValue::DateTime("20200101010000.000000+060"), 0,
       TCIMValue::DateTime("20200101000000.000000+000")},
      {"a later zone", TCIMValue::DateTime("20200101010000.000000+000"), 1,
       TCIMValue("20200101010000.000000+060")},
      {"date-times before 1970", TCIMValue::DateTime("19600101000000.000000+000"), -1,
       TCIMValue("19610101000000.000000+000")},
      {"date-times before 1970 of two zones", TCIMValue::DateTime("19600101000000.000000+060"), 1,
       TCIMValue("19500101000000.000000+000")},
      {"the same before 1970", TCIMValue::DateTime("19600101010000.000000+060"), 0,
       TCIMValue("19600101000000.000000+000")},
      {"vague date-times before 1970", TCIMValue::DateTime("1960**********.******+000"), -1,
       TCIMValue("1961**********.******+000")},
      {"vague date-times", TCIMValue::DateTime("20200101000000.******+000"), 0,
       TCIMValue("20200101000000.000000+000")},
      {"intervals", TCIMValue::DateTime("00000001000000.000000:000"), 1,
       TCIMValue("00000000235959.999999:000")},
  };
}

TEST(Comparison, EveryOperatorGoesByTheOrder) {
  for (const Row& row : orderedRows()) {
    const auto is = [&](Operator op) { return compare(op, row.left, row.right); };
    EXPECT_EQ(is(Operator::kEqual), truthOf(row.order == 0)) << row.name;
    EXPECT_EQ(is(Operator::kNotEqual), truthOf(row.order != 0)) << row.name;
    EXPECT_EQ(is(Operator::kLess), truthOf(row.order < 0)) << row.name;
    EXPECT_EQ(is(Operator::kLessOrEqual), truthOf(row.order <= 0)) << row.name;
    EXPECT_EQ(is(Operator::kGreater), truthOf(row.order > 0)) << row.name;
    EXPECT_EQ(is(Operator::kGreaterOrEqual), truthOf(row.order >= 0)) << row.name;
    EXPECT_EQ(compare(Operator::kLess, row.right, row.left), truthOf(row.order > 0)) << row.name;
  }
}

TEST(Comparison, WithNullNothingIsKnown) {
  const TCIMValue null = TCIMValue::Null(ECIMType::eUint16);
  EXPECT_EQ(compare(Operator::kEqual, null, TCIMValue::Uint16(1)), Truth::kUnknown);
  EXPECT_EQ(compare(Operator::kNotEqual, TCIMValue("x"), null), Truth::kUnknown);
  EXPECT_EQ(compare(Operator::kEqual, null, null), Truth::kUnknown);
}

TEST(Comparison, WithARealThatIsNoNumberNothingIsKnown) {
  const TCIMValue nan = real(std::numeric_limits<double>::quiet_NaN());
  for (const Operator op : {Operator::kEqual, Operator::kNotEqual, Operator::kLess}) {
    EXPECT_EQ(compare(op, nan, nan), Truth::kUnknown);
    EXPECT_EQ(compare(op, nan, TCIMValue::Uint16(1)), Truth::kUnknown);
    EXPECT_EQ(compare(op, TCIMValue::Uint16(1), nan), Truth::kUnknown);
  }
}

TEST(Comparison, BooleansAndReferencesAreEqualOrNot) {
  const TCIMValue yes = TCIMValue::Boolean(true);
  const TCIMValue no = TCIMValue::Boolean(false);
  EXPECT_EQ(compare(Operator::kEqual, yes, yes), Truth::kTrue);
  EXPECT_EQ(compare(Operator::kNotEqual, yes, no), Truth::kTrue);
  EXPECT_EQ(compare(Operator::kEqual, yes, no), Truth::kFalse);
  const TCIMValue one = reference("root:A.K=\"1\"");
  EXPECT_EQ(compare(Operator::kEqual, one, reference("root:a.k=\"1\"")), Truth::kTrue);
  EXPECT_EQ(compare(Operator::kNotEqual, one, reference("root:A.K=\"2\"")), Truth::kTrue);
}

struct Mismatch {
  Operator op;
  TCIMValue left;
  TCIMValue right;
  const char* message;
};

TEST(Comparison, WhatCannotBeComparedIsAnError) {
  const TCIMValue array = TCIMValue::Array(ECIMType::eUint16, {TCIMValue::Uint16(1)});
  const TCIMValue time = TCIMValue::DateTime("20200101000000.000000+000");
  const Mismatch rows[] = {
      {Operator::kEqual, TCIMValue::Uint16(1), TCIMValue("1"),
       "a number cannot be compared with a text"},
      {Operator::kEqual, TCIMValue::Boolean(true), TCIMValue::Uint16(1), "a boolean cannot"},
      {Operator::kLess, TCIMValue::Boolean(true), TCIMValue::Boolean(false), "with a boolean"},
      {Operator::kEqual, array, TCIMValue::Uint16(1), "an array cannot"},
      {Operator::kEqual, array, array, "an array cannot"},
      {Operator::kLess, reference("A.K=1"), reference("A.K=2"), "a reference cannot"},
      {Operator::kEqual, time, TCIMValue("yesterday"), "\"yesterday\" is no CIM date-time"},
      {Operator::kEqual, time, TCIMValue("00000001000000.000000:000"), "an interval cannot"},
      {Operator::kEqual, time, TCIMValue::Uint16(1), "a date-time cannot"},
  };
  for (const Mismatch& row : rows) {
    try {
      compare(row.op, row.left, row.right);
      ADD_FAILURE() << row.message;
    } catch (const QueryError& error) {
      EXPECT_EQ(error.refusal(), Refusal::kTypes);
      EXPECT_EQ(error.GetStatus().GetStatusCode(), NZELVOR20::eVORTypeMismatch);
      EXPECT_NE(error.detail().find(row.message), std::string::npos) << error.what();
    }
  }
}

TEST(Comparison, PatternsNeedAText) {
  EXPECT_EQ(textForLike(TCIMValue("x")), "x");
  EXPECT_EQ(textForLike(TCIMValue::Char16('x')), "x");
  EXPECT_THROW(textForLike(TCIMValue::Uint16(1)), QueryError);
}

}  // namespace
}  // namespace cmpinsp::query
