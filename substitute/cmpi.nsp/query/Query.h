#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "framework/TCIMValue.h"
#include "substitute/cmpi.nsp/query/LikePattern.h"

/// Queries of the object model: what they say, read from their text. Everything here is immutable
/// once it is made, and safe to use from several threads.
namespace cmpinsp::query {

enum class Language : std::uint8_t {
  kWql,  ///< WQL: select ... from ... where ...
  kCql,  ///< the DMTF's query language in its basic form
  kFql   ///< the DMTF's filter query language: a condition alone
};

/// The language of that name ("WQL", "CQL", "DMTF:CQL", "CIM:CQL", "DMTF:FQL", without case).
std::optional<Language> findLanguage(const std::string& name);
/// The same; throws `QueryError` for another name.
Language languageNamed(const std::string& name);

enum class Operator : std::uint8_t {
  kEqual,
  kNotEqual,
  kLess,
  kGreaterOrEqual,
  kGreater,
  kLessOrEqual,
  kIsA,
  kNotIsA,
  kLike,
  kNotLike,
  kNotNull,
  kNull
};

/// The operator that holds where `op` does not, as far as either can be told.
Operator negated(Operator op) noexcept;

/// What a property is compared with.
struct Operand {
  enum class Kind : std::uint8_t { kNone, kLiteral, kProperty, kClassName };

  Kind kind = Kind::kNone;
  std::string text;            ///< a property's or a class's name; a literal without its quotes
  NZELVOR20::TCIMValue value;  ///< a literal's: a boolean, an integer of 64 bits, a real, a string
};

struct Predicate {
  std::string property;     ///< its name as it was written, without that of the class
  bool isOfObject = false;  ///< the object as a whole is meant; `property` says how it was named
  Operator op = Operator::kEqual;
  Operand right;
  std::shared_ptr<const LikePattern> pattern;  ///< of a literal behind LIKE
};

/// A condition. Its depth is limited, so that walking it needs little of a stack.
struct Node {
  enum class Kind : std::uint8_t { kPredicate, kAnd, kOr, kNot };

  Kind kind = Kind::kPredicate;
  std::shared_ptr<const Predicate> predicate;
  std::vector<Node> children;  ///< one of a negation, at least two of the others
};

struct Query {
  Language language = Language::kWql;
  std::string text;
  std::string className;  ///< what is selected from; empty in a condition alone
  bool selectsAll = true;
  std::vector<std::string> properties;  ///< what is selected, unless it is all
  std::optional<Node> condition;

  /// The names of the properties that the condition looks at, each once.
  std::vector<std::string> conditionProperties() const;
};

/// Reads `text`. Throws `QueryError` with the position of what is wrong.
Query parseQuery(Language language, const std::string& text);

/// How deep parentheses and negations may be nested.
constexpr unsigned kDeepestNesting = 200;

/// The pseudo-property that holds the name of an object's class.
constexpr const char* kClassProperty = "__CLASS";

}  // namespace cmpinsp::query
