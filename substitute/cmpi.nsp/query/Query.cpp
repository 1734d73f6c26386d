#include "substitute/cmpi.nsp/query/Query.h"

#include <unordered_set>
#include <utility>

#include "substitute/cmpi.nsp/query/QueryError.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp::query {
namespace {

struct NamedLanguage {
  const char* name;
  Language language;
};

constexpr NamedLanguage kLanguages[] = {{"WQL", Language::kWql},
                                        {"CQL", Language::kCql},
                                        {"DMTF:CQL", Language::kCql},
                                        {"CIM:CQL", Language::kCql},
                                        {"DMTF:FQL", Language::kFql}};

/// Names in the order in which they come, each once.
struct Names {
  std::vector<std::string> list;
  std::unordered_set<std::string> known;

  void add(const std::string& name) {
    if (vorcore::equalNames(name, kClassProperty)) return;
    if (known.insert(vorcore::nameKey(name)).second) list.push_back(name);
  }

  void addAll(const Node& node) {
    if (node.predicate) {
      const Predicate& predicate = *node.predicate;
      if (!predicate.isOfObject) add(predicate.property);
      if (predicate.right.kind == Operand::Kind::kProperty) add(predicate.right.text);
    }
    for (const Node& child : node.children) addAll(child);
  }
};

}  // namespace

std::optional<Language> findLanguage(const std::string& name) {
  for (const NamedLanguage& known : kLanguages) {
    if (vorcore::equalNames(name, known.name)) return known.language;
  }
  return std::nullopt;
}

Language languageNamed(const std::string& name) {
  if (const std::optional<Language> language = findLanguage(name)) return *language;
  throw QueryError(Refusal::kLanguage, "query language \"" + name + "\" is not supported");
}

Operator negated(Operator op) noexcept {
  switch (op) {
    case Operator::kEqual:
      return Operator::kNotEqual;
    case Operator::kNotEqual:
      return Operator::kEqual;
    case Operator::kLess:
      return Operator::kGreaterOrEqual;
    case Operator::kGreaterOrEqual:
      return Operator::kLess;
    case Operator::kGreater:
      return Operator::kLessOrEqual;
    case Operator::kLessOrEqual:
      return Operator::kGreater;
    case Operator::kIsA:
      return Operator::kNotIsA;
    case Operator::kNotIsA:
      return Operator::kIsA;
    case Operator::kLike:
      return Operator::kNotLike;
    case Operator::kNotLike:
      return Operator::kLike;
    case Operator::kNotNull:
      return Operator::kNull;
    case Operator::kNull:
      break;
  }
  return Operator::kNotNull;
}

std::vector<std::string> Query::conditionProperties() const {
  Names names;
  if (condition) names.addAll(*condition);
  return std::move(names.list);
}

}  // namespace cmpinsp::query
