#include <gtest/gtest.h>

#include <string>

#include "text/SafeText.h"

namespace text {
namespace {

using std::string_literals::operator""s;

struct SafeRow {
  const char* name;
  std::string text;
  std::string line;
};

const SafeRow kHarmless[] = {
    {"nothing", "", ""},
    {"plain", "Memory Test,mem0,System Memory", "Memory Test,mem0,System Memory"},
    {"a backslash", R"(\\.\PHYSICALDRIVE0)", R"(\\.\PHYSICALDRIVE0)"},
    {"Latin letters", "Prüfstand", "Prüfstand"},
    {"a right-to-left script", "בדיקה", "בדיקה"},
    {"a script of another plane", "\U00020000", "\U00020000"},
    {"joiners that scripts need", "a\u200c\u200db", "a\u200c\u200db"},
    {"the last of two bytes", "\u07ff", "\u07ff"},
    {"the first of three bytes", "\u0800", "\u0800"},
    {"beside the surrogates", "\ud7ff\ue000", "\ud7ff\ue000"},
    {"the replacement character", "\ufffd", "\ufffd"},
    {"the last character", "\U0010fffd", "\U0010fffd"},
    {"variants of letters and pictures", "\u2764\ufe0e\u2764\ufe0f", "\u2764\ufe0e\u2764\ufe0f"},
    {"letters beside the fillers", "\u115e\u1161\u3163\u3165", "\u115e\u1161\u3163\u3165"},
    {"beside what is spelt out", "\u00a0\u2027\u202f\u2070", "\u00a0\u2027\u202f\u2070"},
};

const SafeRow kSpeltOut[] = {
    {"NUL", "a\0b"s, R"(a\x00b)"},
    {"an escape sequence", "\x1b[2J", R"(\x1b[2J)"},
    {"a line break", "Pass\nVerdict: Pass", R"(Pass\x0aVerdict: Pass)"},
    {"a carriage return", "Fail\rPass", R"(Fail\x0dPass)"},
    {"backspaces", "Fail\b\b\b\b", R"(Fail\x08\x08\x08\x08)"},
    {"a tab", "a\tb", R"(a\x09b)"},
    {"the last of the first set", "\x1f", R"(\x1f)"},
    {"DEL", "\x7f", R"(\x7f)"},
    {"the first of the second set", "\u0080", R"(\u0080)"},
    {"the sequence introducer of one character", "\u009b2J", R"(\u009b2J)"},
    {"the last of the second set", "\u009f", R"(\u009f)"},
    {"a soft hyphen", "\u00ad", R"(\u00ad)"},
    {"the Arabic letter mark", "\u061c", R"(\u061c)"},
    {"fillers of Korean", "Pass\u115f\u1160\u3164\uffa0", R"(Pass\u115f\u1160\u3164\uffa0)"},
    {"a joiner that joins nothing", "Pa\u034fss", R"(Pa\u034fss)"},
    {"vowels that are not written", "\u17b4\u17b5", R"(\u17b4\u17b5)"},
    {"Mongolian variants", "\u180b\u180d\u180f", R"(\u180b\u180d\u180f)"},
    {"the Mongolian separator", "\u180e", R"(\u180e)"},
    {"a blank without width", "\u200b", R"(\u200b)"},
    {"direction marks", "\u200e\u200f", R"(\u200e\u200f)"},
    {"separators of lines and paragraphs", "\u2028\u2029", R"(\u2028\u2029)"},
    {"overrides of the direction", "\u202a\u202e", R"(\u202a\u202e)"},
    {"isolates", "\u2066\u2069", R"(\u2066\u2069)"},
    {"a word joiner", "\u2060", R"(\u2060)"},
    {"deprecated formats", "\u206a\u206f", R"(\u206a\u206f)"},
    {"a byte order mark", "\ufeff", R"(\ufeff)"},
    {"annotations", "\ufff9\ufffb", R"(\ufff9\ufffb)"},
    {"no characters", "\ufffe\uffff", R"(\ufffe\uffff)"},
    {"tags", "\U000e0041\U000e007f", R"(\U000e0041\U000e007f)"},
    {"variants of another plane", "\U000e0100\U000e0fff", R"(\U000e0100\U000e0fff)"},
};

const SafeRow kNoUtf8[] = {
    {"a byte alone", "\x9b[2J", R"(\x9b[2J)"},
    {"a continuation alone", "a\x80z", R"(a\x80z)"},
    {"cut at the end", "a\xc3", R"(a\xc3)"},
    {"cut before another", "\xe2\x82z", R"(\xe2\x82z)"},
    {"an overlong line break", "\xc0\x8a", R"(\xc0\x8a)"},
    {"overlong in two bytes", "\xc1\xbf", R"(\xc1\xbf)"},
    {"overlong in three bytes", "\xe0\x9f\xbf", R"(\xe0\x9f\xbf)"},
    {"overlong in four bytes", "\xf0\x8f\xbf\xbf", R"(\xf0\x8f\xbf\xbf)"},
    {"half of a pair", "\xed\xa0\x80", R"(\xed\xa0\x80)"},
    {"the other half", "\xed\xbf\xbf", R"(\xed\xbf\xbf)"},
    {"beyond the last character", "\xf4\x90\x80\x80", R"(\xf4\x90\x80\x80)"},
    {"a lead byte that is none", "\xf5\x80\x80\x80", R"(\xf5\x80\x80\x80)"},
    {"Latin-1",
     "Pr\xfc"
     "fung",
     R"(Pr\xfcfung)"},
};

TEST(SafeText, WhatCanBeReadStaysAsItIs) {
  for (const SafeRow& row : kHarmless) EXPECT_EQ(visible(row.text), row.line) << row.name;
}

TEST(SafeText, WhatActsOnATerminalIsSpeltOut) {
  for (const SafeRow& row : kSpeltOut) EXPECT_EQ(visible(row.text), row.line) << row.name;
}

TEST(SafeText, WhatIsNoTextIsSpeltOutByItsBytes) {
  for (const SafeRow& row : kNoUtf8) EXPECT_EQ(visible(row.text), row.line) << row.name;
}

// A second writer must not change what a first one has made safe.
TEST(SafeText, MadeSafeTwiceItIsTheSame) {
  for (const SafeRow& row : kSpeltOut) EXPECT_EQ(visible(row.line), row.line) << row.name;
}

const SafeRow kSetApart[] = {
    {"nothing", "", ""},
    {"one line", "Pass", "Pass"},
    {"the lines of a record", "a\nb", "a\n  b"},
    {"Windows' line ends", "a\r\nb", "a\n  b"},
    {"a carriage return alone", "a\rVerdict: Pass", R"(a\x0dVerdict: Pass)"},
    {"two of them", "a\r\r\nb", "a\\x0d\n  b"},
    {"an empty line", "a\n\nb", "a\n\n  b"},
    {"a forged verdict", "x\nVerdict: Pass", "x\n  Verdict: Pass"},
    {"line breaks of other scripts", "a\u2028Verdict: Pass\u0085x",
     R"(a\u2028Verdict: Pass\u0085x)"},
    {"line breaks of other terminals", "a\v\fb", R"(a\x0b\x0cb)"},
    {"a table", "a\tb\n\tc", "a\tb\n  \tc"},
    {"an escape sequence", "\x1b[1A", R"(\x1b[1A)"},
    {"the end of a line", "a\n", "a\n"},
};

TEST(SafeText, EachLineOfATextStandsBehindTheMargin) {
  for (const SafeRow& row : kSetApart) EXPECT_EQ(setApart(row.text, "  "), row.line) << row.name;
}

}  // namespace
}  // namespace text
