#pragma once

#include <memory>
#include <vector>

#include "substitute/cmpi.nsp/query/Evaluation.h"

namespace cmpinsp::query {

enum class Form : std::uint8_t {
  kOrOfAnds,  ///< disjunctive
  kAndOfOrs   ///< conjunctive
};

using Group = std::vector<std::shared_ptr<const Predicate>>;

/// The query's condition without negations and in two levels; negated operators stand for the
/// negations. A query without a condition is an AND of no ORs, and an OR of one AND of nothing,
/// both of which hold for everything. Throws `QueryError` (limit) for more than `kMostPredicates`:
/// their number can double with every term of the condition.
std::vector<Group> normalForm(const Query& query, Form form);

constexpr std::size_t kMostPredicates = 10000;

}  // namespace cmpinsp::query
