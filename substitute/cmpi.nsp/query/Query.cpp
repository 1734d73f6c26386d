#include "substitute/cmpi.nsp/query/Query.h"

#include <algorithm>

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

void addName(std::vector<std::string>& names, const std::string& name) {
  if (vorcore::equalNames(name, kClassProperty)) return;
  const bool isKnown = std::any_of(names.begin(), names.end(), [&](const std::string& known) {
    return vorcore::equalNames(known, name);
  });
  if (!isKnown) names.push_back(name);
}

void addNames(std::vector<std::string>& names, const Node& node) {
  if (node.predicate) {
    const Predicate& predicate = *node.predicate;
    if (!predicate.isOfObject) addName(names, predicate.property);
    if (predicate.right.kind == Operand::Kind::kProperty) addName(names, predicate.right.text);
  }
  for (const Node& child : node.children) addNames(names, child);
}

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
  std::vector<std::string> names;
  if (condition) addNames(names, *condition);
  return names;
}

}  // namespace cmpinsp::query
