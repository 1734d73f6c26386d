#include <gtest/gtest.h>

#include "substitute/vorcore/values/ClassDeclaration.h"
#include "tests/substitute/vorcore/Expectations.h"

namespace vorcore {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

TCIMValue u16(std::uint16_t value) { return TCIMValue::Uint16(value); }
TCIMValue s32(std::int64_t value) { return TCIMValue::Signed(ECIMType::eSint32, value); }

struct Row {
  const char* name;
  TCIMValue value;
  TCIMValue valueMap;  ///< null: no such qualifier
  TCIMValue values;
  const char* wanted;
};

std::string render(const Row& row) {
  std::vector<Qualifier> qualifiers = {{"Description", TCIMValue("x")}};
  if (!row.valueMap.IsNull()) qualifiers.push_back({"valuemap", row.valueMap});
  if (!row.values.IsNull()) qualifiers.push_back({"VALUES", row.values});
  return renderValue(row.value, qualifiers);
}

void expectRows(const std::vector<Row>& rows) {
  for (const Row& row : rows) EXPECT_EQ(render(row), row.wanted) << row.name;
}

TEST(RenderValue, WithoutNamesTheValueShowsItself) {
  expectRows({
      {"number", u16(5), {}, {}, "5"},
      {"null", TCIMValue(), {}, {}, ""},
      {"text", TCIMValue("OK"), {}, {}, "OK"},
      {"array", texts({"a", "b"}), {}, {}, "{a,b}"},
      {"a map without names", u16(5), texts({"5"}), {}, "5"},
  });
}

TEST(RenderValue, NamesWithoutAMapBelongToTheNumbersFromZero) {
  const TCIMValue names = texts({"zero", "one"});
  expectRows({
      {"first", u16(0), {}, names, "zero"},
      {"last", u16(1), {}, names, "one"},
      {"beyond", u16(2), {}, names, "2"},
      {"negative", s32(-1), {}, names, "-1"},
      {"signed", s32(1), {}, names, "one"},
      {"no number", TCIMValue("1"), {}, names, "1"},
  });
}

TEST(RenderValue, TheClosestEntryOfTheMapNamesTheNumber) {
  const TCIMValue map = texts({"..", "10..20", "12", "0x20", "30..", "..2", "7", "7", "-5"});
  const TCIMValue names = texts({"else", "range", "twelve", "thirty-two", "high", "low", "seven",
                                 "seven again", "minus five"});
  expectRows({
      {"exact before the range around it", u16(12), map, names, "twelve"},
      {"lower end of a range", u16(10), map, names, "range"},
      {"upper end of a range", u16(20), map, names, "range"},
      {"outside of all", u16(21), map, names, "else"},
      {"hexadecimal", u16(32), map, names, "thirty-two"},
      {"open upwards", u16(65535), map, names, "high"},
      {"its end", u16(30), map, names, "high"},
      {"open downwards", u16(2), map, names, "low"},
      {"the first of two", u16(7), map, names, "seven"},
      {"negative", s32(-5), map, names, "minus five"},
      {"negative in the open range", s32(-6), map, names, "low"},
      {"beyond the signed numbers", TCIMValue::Uint64(~0ULL), map, names, "high"},
  });
}

TEST(RenderValue, RangesOfNegativeNumbersKeepTheirOrder) {
  const TCIMValue map = texts({"-10..-5", "-4..4"});
  const TCIMValue names = texts({"low", "middle"});
  expectRows({
      {"below", s32(-11), map, names, "-11"},
      {"lower end", s32(-10), map, names, "low"},
      {"upper end", s32(-5), map, names, "low"},
      {"across zero", s32(0), map, names, "middle"},
      {"above", s32(5), map, names, "5"},
  });
}

TEST(RenderValue, MapAndNamesOfDifferentLengthNameWhatBothHave) {
  expectRows({
      {"a name too few", u16(2), texts({"1", "2"}), texts({"one"}), "2"},
      {"a name too many", u16(1), texts({"1"}), texts({"one", "two"}), "one"},
      {"no names", u16(1), texts({"1"}), texts({}), "1"},
  });
}

TEST(RenderValue, EntriesThatMeanNothingAreSkipped) {
  const TCIMValue map = TCIMValue::Array(
      ECIMType::eString, {TCIMValue(), TCIMValue(""), TCIMValue("x"), TCIMValue("1..x"),
                          TCIMValue("99999999999999999999"), TCIMValue(" 1 ")});
  expectRows({{"the last one fits", u16(1), map, texts({"a", "b", "c", "d", "e", "f"}), "f"}});
}

TEST(RenderValue, TextsAreLookedUpAsTexts) {
  const TCIMValue map = texts({"ok", "..", "5"});
  const TCIMValue names = texts({"All right", "dots", "five"});
  expectRows({
      {"same text", TCIMValue("ok"), map, names, "All right"},
      {"another case", TCIMValue("OK"), map, names, "OK"},
      {"digits", TCIMValue("5"), map, names, "five"},
      {"a range is only a text here", TCIMValue("x"), map, names, "x"},
      {"boolean", TCIMValue::Boolean(true), texts({"false", "true"}), texts({"no", "yes"}), "yes"},
  });
}

TEST(RenderValue, AnArrayIsNamedElementByElement) {
  const TCIMValue elements = TCIMValue::Array(ECIMType::eUint16, {u16(1), TCIMValue(), u16(9)});
  expectRows(
      {{"mixed", elements, texts({"1"}), texts({"one"}), "{one,,9}"},
       {"empty", TCIMValue::Array(ECIMType::eUint16, {}), texts({"1"}), texts({"one"}), "{}"},
       {"null", TCIMValue::Null(ECIMType::eUint16, true), texts({"1"}), texts({"one"}), ""}});
}

TEST(RenderValue, QualifiersThatAreNoArraysNameNothing) {
  expectRows({{"names", u16(0), {}, TCIMValue("one"), "0"},
              {"map", u16(0), TCIMValue("0"), texts({"zero"}), "zero"}});
}

}  // namespace
}  // namespace vorcore
