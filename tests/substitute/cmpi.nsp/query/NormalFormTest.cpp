#include <gtest/gtest.h>

#include <string>

#include "substitute/cmpi.nsp/query/NormalForm.h"
#include "substitute/cmpi.nsp/query/QueryError.h"
#include "tests/substitute/cmpi.nsp/query/QueryText.h"

namespace cmpinsp::query {
namespace {

struct Row {
  const char* condition;
  const char* orOfAnds;
  const char* andOfOrs;
};

constexpr Row kRows[] = {
    {"A = 1", "{A = 1}", "{A = 1}"},
    {"A = 1 AND B = 2", "{A = 1, B = 2}", "{A = 1}{B = 2}"},
    {"A = 1 OR B = 2", "{A = 1}{B = 2}", "{A = 1, B = 2}"},
    {"A = 1 AND (B = 2 OR C = 3)", "{A = 1, B = 2}{A = 1, C = 3}", "{A = 1}{B = 2, C = 3}"},
    {"A = 1 OR B = 2 AND C = 3", "{A = 1}{B = 2, C = 3}", "{A = 1, B = 2}{A = 1, C = 3}"},
    {"NOT A = 1", "{A <> 1}", "{A <> 1}"},
    {"NOT (A < 1 AND B LIKE 'x')", "{A >= 1}{B !like 'x'}", "{A >= 1, B !like 'x'}"},
    {"NOT (A IS NULL OR NOT B ISA C)", "{A notnull, B isa C}", "{A notnull}{B isa C}"},
    {"(A = 1 OR B = 2) AND (C = 3 OR D = 4)",
     "{A = 1, C = 3}{A = 1, D = 4}{B = 2, C = 3}{B = 2, D = 4}", "{A = 1, B = 2}{C = 3, D = 4}"},
};

TEST(NormalForm, HasTwoLevelsAndNoNegation) {
  for (const Row& row : kRows) {
    const Query query = where(row.condition);
    EXPECT_EQ(textOf(normalForm(query, Form::kOrOfAnds)), row.orOfAnds) << row.condition;
    EXPECT_EQ(textOf(normalForm(query, Form::kAndOfOrs)), row.andOfOrs) << row.condition;
  }
}

TEST(NormalForm, WithoutAConditionHoldsForEverything) {
  const Query query = parseQuery(Language::kWql, "SELECT * FROM A");
  EXPECT_EQ(textOf(normalForm(query, Form::kOrOfAnds)), "{}");
  EXPECT_EQ(textOf(normalForm(query, Form::kAndOfOrs)), "");
}

std::string repeated(const std::string& term, const char* between, int count) {
  std::string text = term;
  for (int i = 1; i < count; ++i) text += between + term;
  return text;
}

// Catches a form that uses up the memory: it doubles with each of the terms.
TEST(NormalForm, ThatWouldBeTooLargeIsRefused) {
  const Query manyOrs = where(repeated("(A = 1 OR B = 2)", " AND ", 64));
  EXPECT_THROW(normalForm(manyOrs, Form::kOrOfAnds), QueryError);
  EXPECT_EQ(normalForm(manyOrs, Form::kAndOfOrs).size(), 64U);
  const Query manyAnds = where(repeated("(A = 1 AND B = 2)", " OR ", 64));
  EXPECT_THROW(normalForm(manyAnds, Form::kAndOfOrs), QueryError);
  EXPECT_EQ(normalForm(manyAnds, Form::kOrOfAnds).size(), 64U);
}

TEST(NormalForm, TakesAsManyPredicatesAsItsLimitSays) {
  const int most = static_cast<int>(kMostPredicates);
  for (const char* between : {" AND ", " OR "}) {
    for (const Form form : {Form::kOrOfAnds, Form::kAndOfOrs}) {
      EXPECT_NO_THROW(normalForm(where(repeated("A = 1", between, most)), form));
      EXPECT_THROW(normalForm(where(repeated("A = 1", between, most + 1)), form), QueryError);
    }
  }
}

}  // namespace
}  // namespace cmpinsp::query
