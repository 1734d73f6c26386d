#include <gtest/gtest.h>

#include "substitute/cmpi.nsp/broker/lifetime/Tables.h"
#include "substitute/cmpi.nsp/broker/text/Codepages.h"
#include "substitute/cmpi.nsp/broker/text/Text.h"

namespace cmpinsp::broker {
namespace {

struct Row {
  const char* name;
  const char* text;
  const char* wanted;
};

constexpr Row kRows[] = {
    {"plain", "abc", "abc"},
    {"two bytes", "\xC3\xA4", "\xC3\xA4"},
    {"four bytes", "\xF0\x9F\x98\x80", "\xF0\x9F\x98\x80"},
    {"the first of two bytes", "\xC2\x80", "\xC2\x80"},
    {"the last of two bytes", "\xDF\xBF", "\xDF\xBF"},
    {"the first of three bytes", "\xE0\xA0\x80", "\xE0\xA0\x80"},
    {"the last before the surrogates", "\xED\x9F\xBF", "\xED\x9F\xBF"},
    {"the first behind the surrogates", "\xEE\x80\x80", "\xEE\x80\x80"},
    {"the last of three bytes", "\xEF\xBF\xBF", "\xEF\xBF\xBF"},
    {"the first of four bytes", "\xF0\x90\x80\x80", "\xF0\x90\x80\x80"},
    {"the last of all", "\xF4\x8F\xBF\xBF", "\xF4\x8F\xBF\xBF"},
    {"three bytes for two", "\xE0\x9F\xBF", "\xC3\xA0\xC2\x9F\xC2\xBF"},
    {"four bytes for three", "\xF0\x8F\xBF\xBF", "\xC3\xB0\xC2\x8F\xC2\xBF\xC2\xBF"},
    {"the last surrogate", "\xED\xBF\xBF", "\xC3\xAD\xC2\xBF\xC2\xBF"},
    {"no lead byte", "\xF5\x80\x80\x80", "\xC3\xB5\xC2\x80\xC2\x80\xC2\x80"},
    {"a trail byte alone", "\xBF", "\xC2\xBF"},
    {"a letter for a trail byte", "\xE2\x82z", "\xC3\xA2\xC2\x82z"},
    {"behind eight letters", "abcdefgh\xE4", "abcdefgh\xC3\xA4"},
    {"among eight letters",
     "abcd\xE4"
     "fgh",
     "abcd\xC3\xA4"
     "fgh"},
    {"among sixteen letters", "abcdefghijklmno\xE4", "abcdefghijklmno\xC3\xA4"},
    {"Latin-1", "\xE4", "\xC3\xA4"},
    {"cut off", "a\xC3", "a\xC3\x83"},
    {"too long a form", "\xC0\xAF", "\xC3\x80\xC2\xAF"},
    {"a surrogate", "\xED\xA0\x80", "\xC3\xAD\xC2\xA0\xC2\x80"},
    {"above the last plane", "\xF4\x90\x80\x80", "\xC3\xB4\xC2\x90\xC2\x80\xC2\x80"},
    {"mixed", "\xC3\xA4\xE4", "\xC3\xA4\xC3\xA4"},
};

TEST(Text, IsRepairedWhereItIsNoUtf8) {
  for (const Row& row : kRows) {
    EXPECT_EQ(repaired(row.text), row.wanted) << row.name;
    EXPECT_TRUE(isUtf8(repaired(row.text))) << row.name;
  }
}

struct UnitRow {
  const char* text;
  std::u16string units;
};

TEST(Text, GoesToUtf16AndBack) {
  const UnitRow rows[] = {
      {"", u""},
      {"a\xC3\xA4", u"a\u00E4"},
      {"\xED\x9F\xBF\xEE\x80\x80", {char16_t{0xD7FF}, char16_t{0xE000}}},
      {"\xEF\xBF\xBF", {char16_t{0xFFFF}}},
      {"\xF0\x90\x80\x80", {char16_t{0xD800}, char16_t{0xDC00}}},
      {"\xF4\x8F\xBF\xBF", {char16_t{0xDBFF}, char16_t{0xDFFF}}},
  };
  for (const UnitRow& row : rows) {
    EXPECT_EQ(utf16Of(row.text), row.units) << row.text;
    EXPECT_EQ(utf8Of(row.units), row.text);
  }
  EXPECT_EQ(utf16Of("a\xFFz"), (std::u16string{u'a', char16_t{0xFFFD}, u'z'}));
}

// A high one at the end, a low one alone, and two high ones.
TEST(Text, SurrogatesThatMakeNoPairAreReplaced) {
  const char* const replaced = "\xEF\xBF\xBD";
  EXPECT_EQ(utf8Of(std::u16string{char16_t{0xDBFF}}), replaced);
  EXPECT_EQ(utf8Of(std::u16string{char16_t{0xDC00}}), replaced);
  EXPECT_EQ(utf8Of(std::u16string{char16_t{0xDFFF}, u'a'}), std::string(replaced) + "a");
  EXPECT_EQ(utf8Of(std::u16string{char16_t{0xD800}, char16_t{0xD800}, char16_t{0xDC00}}),
            std::string(replaced) + "\xF0\x90\x80\x80");
}

TEST(Text, ALoneSurrogateIsReplaced) {
  const std::u16string lone = {u'a', char16_t{0xD800}, u'b'};
  EXPECT_EQ(utf8Of(lone),
            "a\xEF\xBF\xBD"
            "b");
}

// Catches a text that goes on into whatever memory lies behind it.
TEST(Codepages, EncodedTextEndsWithAZeroOfItsOwnWidth) {
  EXPECT_EQ(encode("ab", CMPI_CP_UTF16).size(), 3 * sizeof(char16_t));
  EXPECT_EQ(encode("ab", CMPI_CP_UTF16).substr(4), std::string(2, '\0'));
  EXPECT_EQ(encode("", CMPI_CP_UTF16), std::string(2, '\0'));
  EXPECT_EQ(encode("ab", CMPI_CP_US_ASCII), std::string("ab\0", 3));
}

}  // namespace
}  // namespace cmpinsp::broker
