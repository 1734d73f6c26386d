#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "framework/TCIMValue.h"
#include "substitute/cmpi.nsp/query/NormalForm.h"
#include "substitute/cmpi.nsp/query/QueryError.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace {

using namespace cmpinsp::query;
using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

/// Has a property of each family of types, one that is null and one that cannot be had.
class Thing final : public IObject {
 public:
  std::optional<TCIMValue> property(const std::string& name) const override {
    if (vorcore::equalNames(name, "N")) return TCIMValue::Uint16(5);
    if (vorcore::equalNames(name, "S")) return TCIMValue("left fan");
    if (vorcore::equalNames(name, "T")) return TCIMValue::DateTime("20200101000000.000000+060");
    if (vorcore::equalNames(name, "B")) return TCIMValue::Boolean(true);
    if (vorcore::equalNames(name, "R")) return TCIMValue::Real(ECIMType::eReal64, -0.5);
    if (vorcore::equalNames(name, "H")) return std::nullopt;
    return TCIMValue::Null(ECIMType::eString);
  }
  std::string className() const override { return "ACME_Fan"; }
  bool isA(const std::string& className, const std::string& ancestor) const override {
    return vorcore::equalNames(className, ancestor);
  }
};

/// The groups' members together, each of them evaluated; throws for types that do not fit.
Truth evaluated(const std::vector<Group>& groups, bool isOrOfAnds) {
  const Thing thing;
  Truth all = isOrOfAnds ? Truth::kFalse : Truth::kTrue;
  for (const Group& group : groups) {
    Truth inner = isOrOfAnds ? Truth::kTrue : Truth::kFalse;
    for (const auto& predicate : group) {
      const Truth one = evaluate(*predicate, thing);
      inner = isOrOfAnds ? std::min(inner, one) : std::max(inner, one);
    }
    all = isOrOfAnds ? std::max(all, inner) : std::min(all, inner);
  }
  return all;
}

void compareWithForm(const Query& query, Form form, Truth wanted) {
  try {
    if (evaluated(normalForm(query, form), form == Form::kOrOfAnds) != wanted) std::abort();
  } catch (const QueryError& refusal) {
    // What decides early hides what does not fit.
    if (refusal.refusal() == Refusal::kLanguage || refusal.refusal() == Refusal::kFeature) {
      std::abort();
    }
  }
}

bool isWhole(const Query& query) {
  return query.className.empty() == (query.language == Language::kFql) &&
         query.selectsAll == query.properties.empty();
}

}  // namespace

/// Whatever is given for a query: it is refused with a reason and, where its text is at fault, with
/// a place; or it is evaluated, and its normal forms come to the same. The first byte chooses the
/// language.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const auto language = static_cast<Language>(data[0] % 3);
  const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
  Query query;
  try {
    query = parseQuery(language, text);
  } catch (const QueryError& refusal) {
    if (std::string(refusal.what()).find("position") == std::string::npos) std::abort();
    return 0;
  }
  if (!isWhole(query)) std::abort();
  try {
    const Truth truth = evaluate(query, Thing());
    compareWithForm(query, Form::kOrOfAnds, truth);
    compareWithForm(query, Form::kAndOfOrs, truth);
  } catch (const QueryError& refusal) {
    // A pattern that comes from a property is read when it is needed.
    if (refusal.refusal() != Refusal::kTypes && refusal.refusal() != Refusal::kSyntax) std::abort();
  }
  return 0;
}
