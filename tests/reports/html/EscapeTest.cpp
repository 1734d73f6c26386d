#include <gtest/gtest.h>

#include "reports/html/Escape.h"

namespace reports::html {
namespace {

struct EscapeRow {
  const char* name;
  std::string text;
  std::string html;
};

const EscapeRow kEscapes[] = {
    {"nothing", "", ""},
    {"plain", "Memory Test, mem0", "Memory Test, mem0"},
    {"letters of any script", "Prüfstand בדיקה", "Prüfstand בדיקה"},
    {"markup", "<b>", "&lt;b&gt;"},
    {"quotes", "\"'", "&quot;&#39;"},
    {"an entity", "&lt;", "&amp;lt;"},
    {"a line break", "a\nb", R"(a\x0ab)"},
    {"an escape sequence", "\x1b[2J", R"(\x1b[2J)"},
    {"turned writing", "\u202e", R"(\u202e)"},
    {"no UTF-8", "\xff<", R"(\xff&lt;)"},
};

TEST(HtmlEscape, NothingIsMarkupAndNothingActs) {
  for (const EscapeRow& row : kEscapes) EXPECT_EQ(escaped(row.text), row.html) << row.name;
}

TEST(HtmlEscape, LinesStayLinesWhereTheyMay) {
  EXPECT_EQ(escapedLines("a\r\n<b>\tc\x07"), "a\n&lt;b&gt;\tc\\x07");
}

const EscapeRow kCuts[] = {
    {"as long as allowed", "12345678", "12345678"},
    {"one more", "123456789", "12345678 \u2026 (1 more bytes)"},
    {"in a character", "1234567\u00fc", "1234567 \u2026 (2 more bytes)"},
    {"in a long character", "12345\U00020000", "12345 \u2026 (4 more bytes)"},
    {"no characters at all", std::string(12, '\x80'),
     std::string(5, '\x80') + " \u2026 (7 more bytes)"},
};

TEST(HtmlEscape, LongTextsAreCutBetweenCharactersAndSaySo) {
  for (const EscapeRow& row : kCuts) EXPECT_EQ(shortened(row.text, 8), row.html) << row.name;
}

}  // namespace
}  // namespace reports::html
