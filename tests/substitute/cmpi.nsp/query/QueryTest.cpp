#include <gtest/gtest.h>

#include "substitute/cmpi.nsp/query/Query.h"
#include "substitute/cmpi.nsp/query/QueryError.h"
#include "tests/substitute/cmpi.nsp/query/QueryText.h"

namespace cmpinsp::query {
namespace {

TEST(Query, LanguagesAreFoundByNameWithoutCase) {
  EXPECT_EQ(findLanguage("wql"), Language::kWql);
  EXPECT_EQ(findLanguage("CQL"), Language::kCql);
  EXPECT_EQ(findLanguage("dmtf:cql"), Language::kCql);
  EXPECT_EQ(findLanguage("CIM:CQL"), Language::kCql);
  EXPECT_EQ(findLanguage("DMTF:FQL"), Language::kFql);
  EXPECT_EQ(findLanguage(""), std::nullopt);
}

TEST(Query, AnUnknownLanguageIsRefusedByItsName) {
  try {
    languageNamed("SQL");
    FAIL() << "was taken";
  } catch (const QueryError& error) {
    EXPECT_EQ(error.refusal(), Refusal::kLanguage);
    EXPECT_EQ(error.GetStatus().GetStatusCode(), NZELVOR20::eVORInvalidQuery);
    EXPECT_NE(std::string(error.what()).find("\"SQL\""), std::string::npos);
  }
}

TEST(Query, EachOperatorIsTheOppositeOfItsOpposite) {
  for (int i = 0; i <= static_cast<int>(Operator::kNull); ++i) {
    const auto op = static_cast<Operator>(i);
    EXPECT_EQ(negated(negated(op)), op) << i;
    EXPECT_NE(negated(op), op) << i;
  }
}

TEST(Query, NamesThePropertiesOfItsConditionOnce) {
  const Query query = where("B = a AND (A > 1 OR NOT c IS NULL) AND __CLASS = 'x' AND Fan ISA Y");
  EXPECT_EQ(query.conditionProperties(), (std::vector<std::string>{"B", "a", "c"}));
}

// Takes longer than anybody waits when each name is compared with all before it.
TEST(Query, NamesManyPropertiesAsSoonAsFew) {
  constexpr int kNames = 100000;
  std::string condition = "A = 1";
  for (int i = 0; i < kNames; ++i) condition += " OR a" + std::to_string(i) + " = A";
  EXPECT_EQ(where(condition).conditionProperties().size(), kNames + 1U);
}

}  // namespace
}  // namespace cmpinsp::query
