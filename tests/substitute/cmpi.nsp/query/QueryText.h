#pragma once

#include <string>

#include "substitute/cmpi.nsp/query/NormalForm.h"

/// Conditions as the tests write them down.
namespace cmpinsp::query {

inline const char* symbolOf(Operator op) {
  constexpr const char* kSymbols[] = {
      "=", "<>", "<", ">=", ">", "<=", "isa", "!isa", "like", "!like", "notnull", "null"};
  return kSymbols[static_cast<std::size_t>(op)];
}

inline std::string textOf(const Predicate& predicate) {
  std::string text = predicate.isOfObject ? "@" + predicate.property : predicate.property;
  text += std::string(" ") + symbolOf(predicate.op);
  const Operand& right = predicate.right;
  if (right.kind == Operand::Kind::kNone) return text;
  const bool isString = right.kind == Operand::Kind::kLiteral &&
                        right.value.GetType() == NZELVOR20::ECIMType::eString;
  return text + (isString ? " '" + right.text + "'" : " " + right.text);
}

/// The operators of a condition stand in front of what is in their parentheses.
inline std::string textOf(const Node& node) {
  if (node.predicate) return textOf(*node.predicate);
  std::string text = node.kind == Node::Kind::kAnd ? "and(" : "or(";
  if (node.kind == Node::Kind::kNot) text = "not(";
  for (const Node& child : node.children) {
    text += (text.back() == '(' ? "" : ", ") + textOf(child);
  }
  return text + ")";
}

inline std::string textOf(const std::vector<Group>& groups) {
  std::string text;
  for (const Group& group : groups) {
    std::string inner;
    for (const auto& predicate : group) inner += (inner.empty() ? "" : ", ") + textOf(*predicate);
    text += "{" + inner + "}";
  }
  return text;
}

/// A condition alone, in WQL.
inline Query where(const std::string& condition) {
  return parseQuery(Language::kWql, "SELECT * FROM Fan WHERE " + condition);
}

}  // namespace cmpinsp::query
