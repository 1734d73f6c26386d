#include <gtest/gtest.h>

#include <map>
#include <string>

#include "substitute/cmpi.nsp/model/PathReference.h"
#include "substitute/cmpi.nsp/query/Evaluation.h"
#include "substitute/cmpi.nsp/query/QueryError.h"
#include "substitute/vorcore/values/ClassDeclaration.h"
#include "tests/substitute/cmpi.nsp/query/QueryText.h"

namespace cmpinsp::query {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

/// A fan of ACME, which is a device. "Hidden" cannot be had; nothing else than what is set exists.
class Fan final : public IObject {
 public:
  std::optional<TCIMValue> property(const std::string& name) const override {
    if (vorcore::equalNames(name, "Hidden")) return std::nullopt;
    return m_values.at(vorcore::nameKey(name));
  }
  std::string className() const override { return m_class; }
  bool isA(const std::string& className, const std::string& ancestor) const override {
    return vorcore::equalNames(className, ancestor) ||
           (vorcore::equalNames(className, "ACME_Fan") && vorcore::equalNames(ancestor, "Device"));
  }
  void forgetClass() { m_class.clear(); }

 private:
  std::string m_class = "ACME_Fan";
  std::map<std::string, TCIMValue> m_values = {
      {"name", TCIMValue("left fan")},
      {"speed", TCIMValue::Uint16(900)},
      {"limit", TCIMValue::Uint64(1000)},
      {"on", TCIMValue::Boolean(true)},
      {"owner", TCIMValue::Null(ECIMType::eString)},
      {"pattern", TCIMValue("left%")},
      {"badpattern", TCIMValue("[")},
      {"started", TCIMValue::DateTime("20200101000000.000000+000")},
      {"device", TCIMValue(referenceTo(ObjectPath::parse("root:ACME_Fan.Name=\"x\""), {}))},
      {"nobody", TCIMValue::Null(ECIMType::eReference)},
  };
};

struct Row {
  const char* condition;
  Truth wanted;
};

constexpr Row kRows[] = {
    {"Speed = 900", Truth::kTrue},
    {"SPEED > 900", Truth::kFalse},
    {"Speed < Limit", Truth::kTrue},
    {"On = TRUE", Truth::kTrue},
    {"On <> TRUE", Truth::kFalse},
    {"Name = 'left fan'", Truth::kTrue},
    {"Name LIKE 'left%'", Truth::kTrue},
    {"Name NOT LIKE 'left%'", Truth::kFalse},
    {"Name LIKE Pattern", Truth::kTrue},
    {"Owner LIKE 'x'", Truth::kUnknown},
    {"Name LIKE Owner", Truth::kUnknown},
    {"Started LIKE '2020%'", Truth::kTrue},
    {"Started >= '20191231000000.000000+000'", Truth::kTrue},
    {"Owner IS NULL", Truth::kTrue},
    {"Owner IS NOT NULL", Truth::kFalse},
    {"Name IS NULL", Truth::kFalse},
    {"Name IS NOT NULL", Truth::kTrue},
    {"__CLASS = 'ACME_Fan'", Truth::kTrue},
    {"__class LIKE 'ACME%'", Truth::kTrue},
    {"__THIS ISA Device", Truth::kTrue},
    {"Fan ISA 'device'", Truth::kTrue},
    {"__THIS ISA Disk", Truth::kFalse},
    {"Device ISA Device", Truth::kTrue},
    {"NOT Device ISA Disk", Truth::kTrue},
    {"Nobody ISA Device", Truth::kUnknown},
    // Three values: what is unknown decides nothing by itself.
    {"Owner = 'x'", Truth::kUnknown},
    {"NOT Owner = 'x'", Truth::kUnknown},
    {"Owner = 'x' OR Speed = 900", Truth::kTrue},
    {"Speed = 900 OR Owner = 'x'", Truth::kTrue},
    {"Owner = 'x' OR Speed = 1", Truth::kUnknown},
    {"Owner = 'x' AND Speed = 900", Truth::kUnknown},
    {"Owner = 'x' AND Speed = 1", Truth::kFalse},
    {"Speed = 900 AND Speed = 900 AND Owner = 'x'", Truth::kUnknown},
    {"NOT (Owner = 'x' AND Speed = 1)", Truth::kTrue},
    {"Hidden = 1", Truth::kUnknown},
    {"Hidden IS NULL", Truth::kUnknown},
    {"Hidden ISA Device", Truth::kUnknown},
    {"Hidden LIKE 'x'", Truth::kUnknown},
    {"Speed = Hidden", Truth::kUnknown},
};

TEST(Evaluation, FollowsTheCondition) {
  const Fan fan;
  for (const Row& row : kRows)
    EXPECT_EQ(evaluate(where(row.condition), fan), row.wanted) << row.condition;
}

// The normal forms say the same as the condition, whatever is known.
TEST(Evaluation, OfTheNormalFormsIsThatOfTheCondition) {
  const Fan fan;
  for (const Row& row : kRows) {
    const std::string whole =
        std::string("NOT (") + row.condition + " OR Speed = 1) AND (Owner = 'x' OR NOT On = FALSE)";
    const Query query = where(whole);
    Truth any = Truth::kFalse;
    for (const Group& group : normalForm(query, Form::kOrOfAnds)) {
      Truth all = Truth::kTrue;
      for (const auto& predicate : group) all = std::min(all, evaluate(*predicate, fan));
      any = std::max(any, all);
    }
    Truth every = Truth::kTrue;
    for (const Group& group : normalForm(query, Form::kAndOfOrs)) {
      Truth some = Truth::kFalse;
      for (const auto& predicate : group) some = std::max(some, evaluate(*predicate, fan));
      every = std::min(every, some);
    }
    EXPECT_EQ(any, evaluate(query, fan)) << whole;
    EXPECT_EQ(every, evaluate(query, fan)) << whole;
  }
}

TEST(Evaluation, WithoutAConditionEverythingWillDo) {
  EXPECT_EQ(evaluate(parseQuery(Language::kWql, "SELECT * FROM A"), Fan()), Truth::kTrue);
}

TEST(Evaluation, OfAnObjectWithoutAKnownClassIsUnknown) {
  Fan fan;
  fan.forgetClass();
  EXPECT_EQ(evaluate(where("__THIS ISA Device"), fan), Truth::kUnknown);
  EXPECT_EQ(evaluate(where("__CLASS = 'ACME_Fan'"), fan), Truth::kUnknown);
}

TEST(Evaluation, NamesThePropertyThatDoesNotFit) {
  for (const char* condition : {"Speed = 'fast'", "Speed LIKE 'x'", "Speed ISA Device"}) {
    try {
      evaluate(where(condition), Fan());
      ADD_FAILURE() << condition;
    } catch (const QueryError& error) {
      EXPECT_EQ(error.refusal(), Refusal::kTypes) << condition;
      EXPECT_EQ(error.detail().rfind("Speed: ", 0), 0U) << error.what();
    }
  }
}

TEST(Evaluation, APatternFromAPropertyMayBeBad) {
  EXPECT_THROW(evaluate(where("Name LIKE BadPattern"), Fan()), QueryError);
}

TEST(Evaluation, LetsTheObjectRefuseAProperty) {
  EXPECT_THROW(evaluate(where("Colour = 'red'"), Fan()), std::out_of_range);
}

}  // namespace
}  // namespace cmpinsp::query
