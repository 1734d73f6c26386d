#include "substitute/cmpi.nsp/query/Evaluation.h"

#include <algorithm>

#include "framework/ICIMInstance.h"
#include "framework/TCIMReference.h"
#include "substitute/cmpi.nsp/query/QueryError.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp::query {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

using Value = std::optional<TCIMValue>;

Value valueOf(const std::string& name, const IObject& object) {
  if (!vorcore::equalNames(name, kClassProperty)) return object.property(name);
  const std::string className = object.className();
  return className.empty() ? Value() : Value(TCIMValue(className));
}

Value valueOf(const Operand& operand, const IObject& object) {
  if (operand.kind == Operand::Kind::kProperty) return valueOf(operand.text, object);
  return operand.value;
}

/// The class of an embedded object or of what a reference names.
std::string classIn(const TCIMValue& value) {
  if (!value.IsArray() && value.GetType() == ECIMType::eReference) {
    return value.ToReference().GetClassName();
  }
  if (!value.IsArray() && value.GetType() == ECIMType::eInstance) {
    return value.ToInstance()->GetObjectPath({}).GetClassName();
  }
  throw QueryError(Refusal::kTypes, "ISA needs an object or a reference");
}

Truth isA(const Predicate& predicate, const IObject& object) {
  std::string className;
  if (predicate.isOfObject) {
    className = object.className();
  } else {
    const Value value = valueOf(predicate.property, object);
    if (!value || value->IsNull()) return Truth::kUnknown;
    className = classIn(*value);
  }
  if (className.empty()) return Truth::kUnknown;
  return truthOf(object.isA(className, predicate.right.text));
}

Truth isLike(const Predicate& predicate, const IObject& object) {
  const Value left = valueOf(predicate.property, object);
  const Value right = valueOf(predicate.right, object);
  if (!left || !right || left->IsNull() || right->IsNull()) return Truth::kUnknown;
  const std::string text = textForLike(*left);
  if (predicate.pattern) return truthOf(predicate.pattern->matches(text));
  return truthOf(LikePattern::parse(textForLike(*right)).matches(text));
}

Truth comparison(const Predicate& predicate, const IObject& object) {
  const Value left = valueOf(predicate.property, object);
  const Value right = valueOf(predicate.right, object);
  return left && right ? compare(predicate.op, *left, *right) : Truth::kUnknown;
}

Truth holds(const Predicate& predicate, const IObject& object) {
  switch (predicate.op) {
    case Operator::kIsA:
      return isA(predicate, object);
    case Operator::kNotIsA:
      return opposite(isA(predicate, object));
    case Operator::kLike:
      return isLike(predicate, object);
    case Operator::kNotLike:
      return opposite(isLike(predicate, object));
    case Operator::kNull:
    case Operator::kNotNull: {
      const Value value = valueOf(predicate.property, object);
      if (!value) return Truth::kUnknown;
      return truthOf(value->IsNull() == (predicate.op == Operator::kNull));
    }
    default:
      return comparison(predicate, object);
  }
}

/// The least of all, or the most of all; what comes behind a child that decides is not looked at.
Truth together(const std::vector<Node>& children, const IObject& object, Truth decisive) {
  Truth result = opposite(decisive);
  for (const Node& child : children) {
    const Truth one = evaluate(child, object);
    if (one == decisive) return decisive;
    if (one == Truth::kUnknown) result = one;
  }
  return result;
}

}  // namespace

Truth evaluate(const Predicate& predicate, const IObject& object) {
  try {
    return holds(predicate, object);
  } catch (const QueryError& error) {
    if (error.refusal() != Refusal::kTypes) throw;
    throw QueryError(Refusal::kTypes, predicate.property + ": " + error.detail());
  }
}

Truth evaluate(const Node& condition, const IObject& object) {
  switch (condition.kind) {
    case Node::Kind::kAnd:
      return together(condition.children, object, Truth::kFalse);
    case Node::Kind::kOr:
      return together(condition.children, object, Truth::kTrue);
    case Node::Kind::kNot:
      return opposite(evaluate(condition.children.front(), object));
    case Node::Kind::kPredicate:
      break;
  }
  return evaluate(*condition.predicate, object);
}

Truth evaluate(const Query& query, const IObject& object) {
  return query.condition ? evaluate(*query.condition, object) : Truth::kTrue;
}

}  // namespace cmpinsp::query
