#include <gtest/gtest.h>

#include "text/Columns.h"

namespace text {
namespace {

struct ColumnsRow {
  const char* name;
  std::string text;
  std::size_t columns;
};

const ColumnsRow kColumns[] = {
    {"nothing", "", 0},
    {"Latin", "Prüfstand", 9},
    {"a mark over a letter", "u\u0308", 1},
    {"Chinese", "内存", 4},
    {"Korean", "한국", 4},
    {"wide Latin", "\uff21", 2},
    {"a picture", "\U0001f9e0", 2},
    {"a picture that some draw wide", "\u2713", 2},
    {"no UTF-8", "\xff", 1},
};

TEST(Columns, AreWhatATerminalTakes) {
  for (const ColumnsRow& row : kColumns) EXPECT_EQ(columnsOf(row.text), row.columns) << row.name;
}

struct FittedRow {
  const char* name;
  std::string text;
  std::size_t columns;
  std::string fitted;
};

const FittedRow kFitted[] = {
    {"room enough", "abc", 3, "abc"},       {"one too few", "abcd", 3, "ab\u2026"},
    {"one column", "abc", 1, "\u2026"},     {"none", "abc", 0, ""},
    {"half a sign", "内存", 3, "内\u2026"}, {"none of a wide sign", "内存", 2, "\u2026"},
};

TEST(Columns, WhatDoesNotFitIsCutAndShowsIt) {
  for (const FittedRow& row : kFitted) {
    EXPECT_EQ(fitted(row.text, row.columns), row.fitted) << row.name;
  }
}

struct WrappedRow {
  const char* name;
  std::string text;
  std::size_t columns;
  std::vector<std::string> lines;
};

const WrappedRow kWrapped[] = {
    {"nothing", "", 5, {}},
    {"one line", "a b c", 5, {"a b c"}},
    {"between words", "ab cd ef", 5, {"ab cd", "ef"}},
    {"before the word that is too long", "ab cdef", 5, {"ab", "cdef"}},
    {"within a word where there is no blank", "abcdefg", 3, {"abc", "def", "g"}},
    {"several blanks", "ab    cd", 4, {"ab", "cd"}},
    {"a sign wider than the line", "内存", 1, {"内", "存"}},
};

TEST(Columns, LinesEndBetweenWordsWhereTheyCan) {
  for (const WrappedRow& row : kWrapped) {
    EXPECT_EQ(wrapped(row.text, row.columns), row.lines) << row.name;
  }
}

}  // namespace
}  // namespace text
