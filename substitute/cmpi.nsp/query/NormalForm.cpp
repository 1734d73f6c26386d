#include "substitute/cmpi.nsp/query/NormalForm.h"

#include <utility>

#include "substitute/cmpi.nsp/query/QueryError.h"

namespace cmpinsp::query {
namespace {

using Groups = std::vector<Group>;

void requireSize(std::size_t predicates) {
  if (predicates <= kMostPredicates) return;
  throw QueryError(Refusal::kLimit, "the condition's normal form has more than " +
                                        std::to_string(kMostPredicates) + " comparisons");
}

std::size_t sizeOf(const Groups& groups) {
  std::size_t size = 0;
  for (const Group& group : groups) size += group.size();
  return size;
}

void extend(Group& group, const Group& more) {
  group.insert(group.end(), more.begin(), more.end());
}

/// Each group of the one with each group of the other.
Groups product(Groups left, const Groups& right) {
  requireSize(left.size() * sizeOf(right) + right.size() * sizeOf(left));
  if (right.size() == 1) {
    for (Group& group : left) extend(group, right.front());
    return left;
  }
  Groups all;
  all.reserve(left.size() * right.size());
  for (const Group& one : left) {
    for (const Group& other : right) {
      all.push_back(one);
      extend(all.back(), other);
    }
  }
  return all;
}

void append(Groups& groups, Groups more) {
  for (Group& group : more) groups.push_back(std::move(group));
}

Group leaf(const std::shared_ptr<const Predicate>& predicate, bool isNegated) {
  if (!isNegated) return {predicate};
  auto opposite = std::make_shared<Predicate>(*predicate);
  opposite->op = negated(predicate->op);
  return {std::move(opposite)};
}

Groups expand(const Node& node, Form form, bool isNegated) {
  if (node.kind == Node::Kind::kPredicate) return {leaf(node.predicate, isNegated)};
  if (node.kind == Node::Kind::kNot) return expand(node.children.front(), form, !isNegated);
  // A negation turns each AND into an OR and the other way round.
  const bool isAnd = (node.kind == Node::Kind::kAnd) != isNegated;
  const bool multiplies = isAnd == (form == Form::kOrOfAnds);
  Groups all = expand(node.children.front(), form, isNegated);
  std::size_t appended = sizeOf(all);
  for (std::size_t i = 1; i < node.children.size(); ++i) {
    Groups more = expand(node.children[i], form, isNegated);
    if (multiplies) {
      all = product(std::move(all), more);
    } else {
      requireSize(appended += sizeOf(more));
      append(all, std::move(more));
    }
  }
  return all;
}

}  // namespace

std::vector<Group> normalForm(const Query& query, Form form) {
  if (query.condition) return expand(*query.condition, form, false);
  return form == Form::kOrOfAnds ? Groups(1) : Groups();
}

}  // namespace cmpinsp::query
