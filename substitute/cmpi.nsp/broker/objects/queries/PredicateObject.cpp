#include "substitute/cmpi.nsp/broker/objects/queries/PredicateObject.h"

#include "substitute/cmpi.nsp/broker/objects/Release.h"
#include "substitute/cmpi.nsp/broker/objects/Values.h"
#include "substitute/cmpi.nsp/broker/objects/queries/AccessorObject.h"

namespace cmpinsp::broker {
namespace {

using NZELVOR20::ECIMType;
using query::Operand;
using query::Operator;

CMPIPredOp operationOf(Operator op) {
  switch (op) {
    case Operator::kEqual:
      return CMPI_PredOp_Equals;
    case Operator::kNotEqual:
      return CMPI_PredOp_NotEquals;
    case Operator::kLess:
      return CMPI_PredOp_LessThan;
    case Operator::kGreaterOrEqual:
      return CMPI_PredOp_GreaterThanOrEquals;
    case Operator::kGreater:
      return CMPI_PredOp_GreaterThan;
    case Operator::kLessOrEqual:
      return CMPI_PredOp_LessThanOrEquals;
    case Operator::kIsA:
      return CMPI_PredOp_Isa;
    case Operator::kNotIsA:
      return CMPI_PredOp_NotIsa;
    case Operator::kLike:
      return CMPI_PredOp_Like;
    case Operator::kNotLike:
      return CMPI_PredOp_NotLike;
    case Operator::kNotNull:
      return CMPI_PredOp_Not_Null;
    case Operator::kNull:
      break;
  }
  return CMPI_PredOp_Null;
}

CMPIType typeOfLiteral(ECIMType type) {
  if (type == ECIMType::eBoolean) return CMPI_booleanString;
  if (type == ECIMType::eReal64) return CMPI_realString;
  return type == ECIMType::eString ? CMPI_charString : CMPI_integerString;
}

/// What the right-hand side is, all of which is handed out as text.
CMPIType typeOf(const Operand& operand) {
  switch (operand.kind) {
    case Operand::Kind::kProperty:
      return CMPI_nameString;
    case Operand::Kind::kClassName:
      return CMPI_classNameString;
    case Operand::Kind::kLiteral:
      return typeOfLiteral(operand.value.GetType());
    case Operand::Kind::kNone:
      break;
  }
  return CMPI_null;
}

/// IS NULL has no right-hand side, which is a null pointer.
CMPIStatus getData(const CMPIPredicate* pr, CMPIType* type, CMPIPredOp* prop, CMPIString** lhs,
                   CMPIString** rhs) noexcept {
  return perform([&] {
    Handle& handle = handleOf(pr, Kind::kPredicate);
    const query::Predicate& predicate = *bodyOf<PredicateBody>(handle).predicate;
    const bool hasRight = predicate.right.kind != Operand::Kind::kNone;
    CMPIString* const left = lhs != nullptr ? childString(handle, predicate.property) : nullptr;
    if (rhs != nullptr) *rhs = hasRight ? childString(handle, predicate.right.text) : nullptr;
    if (lhs != nullptr) *lhs = left;
    if (type != nullptr) *type = typeOf(predicate.right);
    if (prop != nullptr) *prop = operationOf(predicate.op);
  });
}

CMPIBoolean evaluateUsingAccessor(const CMPIPredicate* pr, CMPIAccessor* fn, void* parm,
                                  CMPIStatus* st) noexcept {
  return answer(st, CMPI_false, [&] {
    const Handle& handle = handleOf(pr, Kind::kPredicate);
    const AccessorObject object(*handle.broker, fn, parm);
    const query::Truth truth = query::evaluate(*bodyOf<PredicateBody>(handle).predicate, object);
    return truth == query::Truth::kTrue ? CMPI_true : CMPI_false;
  });
}

}  // namespace

const CMPIPredicateFT kPredicateTable = {CMPICurrentVersion, release<PredicateBody>,
                                         clone<PredicateBody>, getData, evaluateUsingAccessor};

}  // namespace cmpinsp::broker
