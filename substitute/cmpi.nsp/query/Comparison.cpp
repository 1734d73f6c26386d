#include "substitute/cmpi.nsp/query/Comparison.h"

#include <cmath>
#include <optional>
#include <string>

#include "framework/TCIMReference.h"
#include "substitute/cmpi.nsp/broker/text/CimDateTime.h"
#include "substitute/cmpi.nsp/model/PathReference.h"
#include "substitute/cmpi.nsp/query/QueryError.h"

namespace cmpinsp::query {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

enum class Family : std::uint8_t {
  kBoolean,
  kUnsigned,
  kSigned,
  kReal,
  kText,
  kDateTime,
  kReference,
  kNone
};

Family familyOf(const TCIMValue& value) {
  if (value.IsArray()) return Family::kNone;
  switch (value.GetType()) {
    case ECIMType::eBoolean:
      return Family::kBoolean;
    case ECIMType::eUint8:
    case ECIMType::eUint16:
    case ECIMType::eUint32:
    case ECIMType::eUint64:
      return Family::kUnsigned;
    case ECIMType::eSint8:
    case ECIMType::eSint16:
    case ECIMType::eSint32:
    case ECIMType::eSint64:
      return Family::kSigned;
    case ECIMType::eReal32:
    case ECIMType::eReal64:
      return Family::kReal;
    case ECIMType::eString:
    case ECIMType::eChar16:
      return Family::kText;
    case ECIMType::eDateTime:
      return Family::kDateTime;
    case ECIMType::eReference:
      return Family::kReference;
    case ECIMType::eInstance:
    case ECIMType::eNone:
      break;
  }
  return Family::kNone;
}

const char* describe(const TCIMValue& value) {
  if (value.IsArray()) return "an array";
  switch (familyOf(value)) {
    case Family::kBoolean:
      return "a boolean";
    case Family::kUnsigned:
    case Family::kSigned:
    case Family::kReal:
      return "a number";
    case Family::kText:
      return "a text";
    case Family::kDateTime:
      return "a date-time";
    case Family::kReference:
      return "a reference";
    case Family::kNone:
      break;
  }
  return "an embedded object";
}

[[noreturn]] void mismatch(const TCIMValue& left, const TCIMValue& right) {
  throw QueryError(Refusal::kTypes,
                   std::string(describe(left)) + " cannot be compared with " + describe(right));
}

bool isNumber(Family family) {
  return family == Family::kUnsigned || family == Family::kSigned || family == Family::kReal;
}

/// Below 0, 0 or above 0; nothing where there is no order.
using Order = std::optional<int>;

template <typename Value>
int orderOf(const Value& left, const Value& right) {
  if (left < right) return -1;
  return right < left ? 1 : 0;
}

/// The sign counts first, so that each comparison is within one type.
Order orderOfIntegers(const TCIMValue& left, const TCIMValue& right) {
  const auto isNegative = [](const TCIMValue& value) {
    return familyOf(value) == Family::kSigned && value.ToSint64() < 0;
  };
  const bool leftNegative = isNegative(left);
  const bool rightNegative = isNegative(right);
  if (leftNegative && rightNegative) return orderOf(left.ToSint64(), right.ToSint64());
  if (leftNegative != rightNegative) return leftNegative ? -1 : 1;
  return orderOf(left.ToUint64(), right.ToUint64());
}

/// An integer against a real: first by the real's whole part, which is exact where it fits into 64
/// bits, then by what is behind its point.
Order orderOfMixed(const TCIMValue& integer, double real) {
  constexpr double kTwoTo64 = 18446744073709551616.0;
  constexpr double kTwoTo63 = 9223372036854775808.0;
  if (real >= kTwoTo64) return -1;
  if (real < -kTwoTo63) return 1;
  const double whole = std::trunc(real);
  const TCIMValue rounded =
      whole < 0 ? TCIMValue::Signed(ECIMType::eSint64, static_cast<std::int64_t>(whole))
                : TCIMValue::Uint64(static_cast<std::uint64_t>(whole));
  const Order order = orderOfIntegers(integer, rounded);
  return *order != 0 ? order : Order(orderOf(whole, real));
}

Order orderOfNumbers(const TCIMValue& left, const TCIMValue& right) {
  const bool leftReal = familyOf(left) == Family::kReal;
  const bool rightReal = familyOf(right) == Family::kReal;
  if (!leftReal && !rightReal) return orderOfIntegers(left, right);
  if ((leftReal && std::isnan(left.ToReal())) || (rightReal && std::isnan(right.ToReal()))) {
    return std::nullopt;
  }
  if (leftReal && rightReal) return orderOf(left.ToReal(), right.ToReal());
  return rightReal ? orderOfMixed(left, right.ToReal())
                   : Order(-*orderOfMixed(right, left.ToReal()));
}

broker::CimDateTime timeOf(const TCIMValue& value) {
  try {
    return broker::CimDateTime::parse(value.ToString(10));
  } catch (const std::exception& notOne) {
    throw QueryError(Refusal::kTypes, notOne.what());
  }
}

Order orderOfTimes(const TCIMValue& leftValue, const TCIMValue& rightValue) {
  const broker::CimDateTime left = timeOf(leftValue);
  const broker::CimDateTime right = timeOf(rightValue);
  if (left.isInterval != right.isInterval) {
    throw QueryError(Refusal::kTypes, "an interval cannot be compared with a point in time");
  }
  return orderOf(left.instant, right.instant);
}

bool isReferenceTo(const TCIMValue& left, const TCIMValue& right) {
  return pathOf(left.ToReference()) == pathOf(right.ToReference());
}

Truth fromOrder(Operator op, Order order) {
  if (!order) return Truth::kUnknown;
  switch (op) {
    case Operator::kEqual:
      return truthOf(*order == 0);
    case Operator::kNotEqual:
      return truthOf(*order != 0);
    case Operator::kLess:
      return truthOf(*order < 0);
    case Operator::kGreaterOrEqual:
      return truthOf(*order >= 0);
    case Operator::kGreater:
      return truthOf(*order > 0);
    default:
      return truthOf(*order <= 0);
  }
}

}  // namespace

Truth compare(Operator op, const TCIMValue& left, const TCIMValue& right) {
  if (left.IsNull() || right.IsNull()) return Truth::kUnknown;
  const Family one = familyOf(left);
  const Family other = familyOf(right);
  const bool hasText = one == Family::kText || other == Family::kText;
  const bool hasTime = one == Family::kDateTime || other == Family::kDateTime;
  if (isNumber(one) && isNumber(other)) return fromOrder(op, orderOfNumbers(left, right));
  if (hasTime && (hasText || one == other)) return fromOrder(op, orderOfTimes(left, right));
  if (hasText && one == other) return fromOrder(op, orderOf(left.ToString(10), right.ToString(10)));
  const bool hasOrder = op != Operator::kEqual && op != Operator::kNotEqual;
  if (one != other || one == Family::kNone || hasOrder) mismatch(left, right);
  const bool isSame = one == Family::kReference ? isReferenceTo(left, right)
                                                : left.ToBoolean() == right.ToBoolean();
  return truthOf(isSame == (op == Operator::kEqual));
}

std::string textForLike(const TCIMValue& value) {
  const Family family = familyOf(value);
  if (family == Family::kText || family == Family::kDateTime) return value.ToString(10);
  throw QueryError(Refusal::kTypes, std::string(describe(value)) + " has no text for a pattern");
}

}  // namespace cmpinsp::query
