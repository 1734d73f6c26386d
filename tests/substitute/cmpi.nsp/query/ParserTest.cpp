#include <gtest/gtest.h>

#include <string>

#include "substitute/cmpi.nsp/query/QueryError.h"
#include "tests/substitute/cmpi.nsp/query/QueryText.h"

namespace cmpinsp::query {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

/// What is selected and from where: "A,B from Class".
std::string selection(const Query& query) {
  std::string text = query.selectsAll ? "*" : "";
  for (const std::string& name : query.properties) text += (text.empty() ? "" : ",") + name;
  return text + " from " + query.className;
}

struct Row {
  Language language;
  const char* text;
  const char* wanted;
};

constexpr Row kSelections[] = {
    {Language::kWql, "SELECT * FROM ACME_Fan", "* from ACME_Fan"},
    {Language::kWql, "select\t*\nfrom\r\nACME_Fan", "* from ACME_Fan"},
    {Language::kWql, "Select Name, Speed From ACME_Fan", "Name,Speed from ACME_Fan"},
    {Language::kWql, "SELECT __CLASS FROM A", "__CLASS from A"},
    {Language::kWql, "SELECT A.Name FROM A WHERE X = 1", "Name from A"},
    {Language::kCql, "SELECT A.* FROM A", "* from A"},
    {Language::kCql, "SELECT Name, * FROM A", "* from A"},
    {Language::kCql, "SELECT f.Name, a.Speed FROM A AS f", "Name,Speed from A"},
    {Language::kCql, "SELECT f.Name FROM A f WHERE f.Speed > 1", "Name from A"},
    {Language::kCql, "SELECT * FROM A WHERE X = 1", "* from A"},
    {Language::kFql, "X = 1", "* from "},
};

TEST(QueryParser, ReadsWhatIsSelected) {
  for (const Row& row : kSelections) {
    EXPECT_EQ(selection(parseQuery(row.language, row.text)), row.wanted) << row.text;
  }
}

struct Condition {
  const char* text;
  const char* wanted;
};

constexpr Condition kConditions[] = {
    {"A = 1", "A = 1"},
    {"A <> 1", "A <> 1"},
    {"A != 1", "A <> 1"},
    {"A<1", "A < 1"},
    {"A<=1", "A <= 1"},
    {"A>1", "A > 1"},
    {"A>=-1", "A >= -1"},
    {"A = B", "A = B"},
    {"Fan.A = Fan.B", "A = B"},
    {"fan.A = 1", "A = 1"},
    {"1 < A", "A > 1"},
    {"1 <= A", "A >= 1"},
    {"1 > A", "A < 1"},
    {"1 >= A", "A <= 1"},
    {"1 = A", "A = 1"},
    {"'x' <> A", "A <> 'x'"},
    {"A = TRUE", "A = TRUE"},
    {"false = A", "A = false"},
    {"A = 'it''s'", "A = 'it's'"},
    {"A = \"say \"\"x\"\"\"", "A = 'say \"x\"'"},
    {"A = 'a\\'b'", "A = 'a'b'"},
    {"A = 'C:\\\\dir'", "A = 'C:\\dir'"},
    {"A = 'tab\\there'", "A = 'tab\there'"},
    {"A = '\\x41'", "A = 'A'"},
    {"A = ''", "A = ''"},
    {"A = '--'", "A = '--'"},
    {"A IS NULL", "A null"},
    {"A is not null", "A notnull"},
    {"A LIKE 'x%'", "A like 'x%'"},
    {"A NOT LIKE 'x\\%'", "A !like 'x\\%'"},
    {"A LIKE B", "A like B"},
    {"A ISA 'B'", "A isa B"},
    {"A isa B", "A isa B"},
    {"Fan ISA 'B'", "@Fan isa B"},
    {"__this isa B", "@__this isa B"},
    {"__CLASS = 'B'", "__CLASS = 'B'"},
    {"A = 1 AND B = 2 AND C = 3", "and(A = 1, B = 2, C = 3)"},
    {"A = 1 OR B = 2 AND C = 3", "or(A = 1, and(B = 2, C = 3))"},
    {"(A = 1 OR B = 2) AND C = 3", "and(or(A = 1, B = 2), C = 3)"},
    {"NOT A = 1 AND B = 2", "and(not(A = 1), B = 2)"},
    {"NOT (A = 1 AND B = 2)", "not(and(A = 1, B = 2))"},
    {"not not A = 1", "not(not(A = 1))"},
    {"((A = 1))", "A = 1"},
};

TEST(QueryParser, ReadsConditionsOfEveryForm) {
  for (const Condition& row : kConditions) {
    EXPECT_EQ(textOf(*where(row.text).condition), row.wanted) << row.text;
  }
}

TEST(QueryParser, ReadsACqlConditionWithTheNamesOfClassAndAlias) {
  const Query query =
      parseQuery(Language::kCql, "SELECT * FROM A b WHERE A.X = 1 AND b.Y = 2 AND b ISA C");
  EXPECT_EQ(textOf(*query.condition), "and(X = 1, Y = 2, @b isa C)");
}

TEST(QueryParser, ReadsAConditionAloneAsAFilter) {
  const Query query = parseQuery(Language::kFql, "X = 1 AND NOT Y = 'a'");
  EXPECT_EQ(textOf(*query.condition), "and(X = 1, not(Y = 'a'))");
}

struct Number {
  const char* text;
  TCIMValue wanted;
};

TEST(QueryParser, ReadsNumbersOfEveryKind) {
  const auto negative = [](std::int64_t value) {
    return TCIMValue::Signed(ECIMType::eSint64, value);
  };
  const auto real = [](double value) { return TCIMValue::Real(ECIMType::eReal64, value); };
  const Number rows[] = {
      {"0", TCIMValue::Uint64(0)},
      {"+7", TCIMValue::Uint64(7)},
      {"007", TCIMValue::Uint64(7)},
      {"-08", negative(-8)},
      {"18446744073709551615", TCIMValue::Uint64(18446744073709551615U)},
      {"-9223372036854775808", negative(INT64_MIN)},
      {"0xFFFFFFFFFFFFFFFF", TCIMValue::Uint64(18446744073709551615U)},
      {"-0x10", negative(-16)},
      {"101b", TCIMValue::Uint64(5)},
      {"1.5", real(1.5)},
      {".5", real(0.5)},
      {"-1.5e-3", real(-0.0015)},
      {"2E3", real(2000)},
      {"1e+2", real(100)},
      {"36893488147419103232.0", real(36893488147419103232.0)},
  };
  for (const Number& row : rows) {
    const Query query = where(std::string("A = ") + row.text);
    EXPECT_EQ(query.condition->predicate->right.value, row.wanted) << row.text;
  }
}

struct BadRow {
  const char* text;
  Refusal refusal;
  const char* message;
};

constexpr BadRow kBadQueries[] = {
    {"", Refusal::kSyntax, "position 1: expected SELECT"},
    {"DELETE FROM A", Refusal::kSyntax, "position 1: expected SELECT"},
    {"SELECT", Refusal::kSyntax, "position 7: expected \"*\" or a property"},
    {"SELECT FROM A", Refusal::kSyntax, "position 8: expected \"*\" or a property"},
    {"SELECT * A", Refusal::kSyntax, "position 10: expected FROM"},
    {"SELECT * FROM", Refusal::kSyntax, "position 14: expected a class name"},
    {"SELECT * FROM 'A'", Refusal::kSyntax, "position 15: expected a class name"},
    {"SELECT * FROM A B", Refusal::kSyntax, "position 17: expected WHERE or the end"},
    {"SELECT * FROM A ;", Refusal::kSyntax, "position 17: unexpected character"},
    {"SELECT * FROM A WHERE", Refusal::kSyntax, "position 22: expected a property or a value"},
    {"SELECT DISTINCT X FROM A", Refusal::kFeature, "position 8: \"DISTINCT\" is not supported"},
    {"SELECT COUNT(*) FROM A", Refusal::kFeature, "position 8: a function is not supported"},
    {"SELECT * FROM A, B", Refusal::kFeature, "position 16: a join is not supported"},
    {"SELECT * FROM root:A", Refusal::kFeature, "position 19: a namespace is not supported"},
    {"SELECT B.X FROM A", Refusal::kFeature, "position 8: \"B\" is not what"},
    {"SELECT * FROM A ORDER BY X", Refusal::kFeature, "position 17: \"ORDER\" is not supported"},
    {"ASSOCIATORS OF {A}", Refusal::kFeature, "\"ASSOCIATORS\" is not supported"},
};

constexpr BadRow kBadConditions[] = {
    {"A", Refusal::kSyntax, "position 26: expected a comparison"},
    {"A =", Refusal::kSyntax, "position 28: expected a property or a value"},
    {"A == 1", Refusal::kSyntax, "position 28: expected a property or a value"},
    {"A = 1 B", Refusal::kSyntax, "position 31: expected AND, OR or the end"},
    {"A = 1 AND", Refusal::kSyntax, "expected a property or a value"},
    {"(A = 1", Refusal::kSyntax, "expected ')'"},
    {"A = 1)", Refusal::kSyntax, "position 30: expected AND, OR or the end"},
    {"(A = 1 B)", Refusal::kSyntax, "position 32: expected AND, OR or the end"},
    {"A = 'x", Refusal::kSyntax, "position 29: the text has no end"},
    {"A = 'x\\", Refusal::kSyntax, "position 29: the text has no end"},
    {"A = 18446744073709551616", Refusal::kSyntax, "no number"},
    {"A = -9223372036854775809", Refusal::kSyntax, "no number"},
    {"A = 1e999", Refusal::kSyntax, "no number"},
    {"A = 0x", Refusal::kSyntax, "no number"},
    {"A = 12x", Refusal::kSyntax, "no number"},
    {"A = 5b", Refusal::kSyntax, "no number"},
    {"A = NULL", Refusal::kSyntax, "IS NULL and IS NOT NULL"},
    {"A IS 5", Refusal::kSyntax, "expected NULL"},
    {"5 IS NULL", Refusal::kSyntax, "position 25: expected a property"},
    {"1 = 1", Refusal::kSyntax, "position 29: expected a property"},
    {"A LIKE 5", Refusal::kSyntax, "expected a pattern in quotes"},
    {"A LIKE '[a'", Refusal::kSyntax, "position 32: a set in a pattern has no end"},
    {"A LIKE '[z-a]'", Refusal::kSyntax, "runs backwards"},
    {"A NOT 5", Refusal::kSyntax, "expected LIKE"},
    {"A ISA 5", Refusal::kSyntax, "expected a class name"},
    {"__THIS = 5", Refusal::kSyntax, "\"__THIS\" is no property"},
    {"A = __THIS", Refusal::kSyntax, "\"__THIS\" is no property"},
    {"5 = __THIS", Refusal::kSyntax, "\"__THIS\" is no property"},
    {"A ! 5", Refusal::kSyntax, "unexpected character"},
    {"A[2] = 5", Refusal::kFeature, "an element of an array is not supported"},
    {"A.B = 5", Refusal::kFeature, "\"A\" is not what the query selects from"},
    {"Fan.A.B = 5", Refusal::kFeature, "a property of a property is not supported"},
    {"Fan::A = 5", Refusal::kFeature, "the scope of a property is not supported"},
    {"A = Fan.B#'x'", Refusal::kFeature, "a symbolic constant is not supported"},
    {"A + 1 = 5", Refusal::kFeature, "arithmetic is not supported"},
    {"A = 5 * 2", Refusal::kFeature, "arithmetic is not supported"},
    {"UPPERCASE(A) = 'X'", Refusal::kFeature, "a function is not supported"},
};

void expectRefused(Language language, const std::string& text, const BadRow& row) {
  try {
    parseQuery(language, text);
    ADD_FAILURE() << text << " was read";
  } catch (const QueryError& error) {
    EXPECT_EQ(error.refusal(), row.refusal) << text << ": " << error.what();
    EXPECT_NE(error.detail().find(row.message), std::string::npos) << text << ": " << error.what();
  }
}

TEST(QueryParser, RefusesBadQueriesWithTheirPlace) {
  for (const BadRow& row : kBadQueries) expectRefused(Language::kWql, row.text, row);
}

TEST(QueryParser, RefusesBadConditionsWithTheirPlace) {
  for (const BadRow& row : kBadConditions) {
    expectRefused(Language::kWql, std::string("SELECT * FROM Fan WHERE ") + row.text, row);
  }
}

TEST(QueryParser, RefusesWhatAFilterCannotSay) {
  expectRefused(Language::kFql, "SELECT * FROM A",
                {"", Refusal::kSyntax, "position 1: expected a property or a value"});
  expectRefused(Language::kFql, "A LIKE 'x'", {"", Refusal::kFeature, "LIKE is not supported"});
  expectRefused(Language::kFql, "A.B = 1", {"", Refusal::kFeature, "a property of a property is"});
}

// Catches a parser whose stack a query can use up.
TEST(QueryParser, RefusesWhatIsNestedTooDeeply) {
  const auto nested = [](const std::string& open, const std::string& close, unsigned depth) {
    std::string text;
    for (unsigned i = 0; i < depth; ++i) text += open;
    text += "A = 1";
    for (unsigned i = 0; i < depth; ++i) text += close;
    return text;
  };
  EXPECT_EQ(textOf(*where(nested("(", ")", kDeepestNesting)).condition), "A = 1");
  EXPECT_NO_THROW(where(nested("NOT ", "", kDeepestNesting)));
  EXPECT_THROW(where(nested("(", ")", kDeepestNesting + 1)), QueryError);
  EXPECT_THROW(where(nested("NOT ", "", 100000)), QueryError);
  EXPECT_THROW(where(nested("(NOT ", ")", 100000)), QueryError);
}

// Catches a tree that grows deeper with every term of a long chain, and siblings that count as
// depth.
TEST(QueryParser, ReadsALongChainOfTerms) {
  std::string text = "(A = 1)";
  for (int i = 0; i < 20000; ++i) text += " OR NOT (A = 1)";
  EXPECT_EQ(where(text).condition->children.size(), 20001U);
}

}  // namespace
}  // namespace cmpinsp::query
