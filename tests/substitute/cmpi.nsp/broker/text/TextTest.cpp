#include <gtest/gtest.h>

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

TEST(Text, ALoneSurrogateIsReplaced) {
  const std::u16string lone = {u'a', char16_t{0xD800}, u'b'};
  EXPECT_EQ(utf8Of(lone),
            "a\xEF\xBF\xBD"
            "b");
}

}  // namespace
}  // namespace cmpinsp::broker
