#include "reports/html/Timeline.h"

#include <algorithm>

#include "reports/html/Words.h"

namespace reports::html {
namespace {

/// More cannot be told apart on a screen.
constexpr std::size_t kBars = 400;

bool isWorse(engine::Outcome one, engine::Outcome other) { return rankOf(one) > rankOf(other); }

void unite(Timeline::Bar& one, const Timeline::Bar& other) {
  one.from = std::min(one.from, other.from);
  one.to = std::max(one.to, other.to);
  if (isWorse(other.outcome, one.outcome)) one.outcome = other.outcome;
}

/// Unites neighbours two by two; only those of one outcome unless `all`.
void unitePairs(std::vector<Timeline::Bar>& bars, bool all) {
  std::vector<Timeline::Bar> result;
  for (std::size_t i = 0; i < bars.size(); ++i) {
    result.push_back(bars[i]);
    if (i + 1 < bars.size() && (all || bars[i].outcome == bars[i + 1].outcome)) {
      unite(result.back(), bars[++i]);
    }
  }
  bars = std::move(result);
}

}  // namespace

void Timeline::add(const engine::TestStarted& test, const Bar& bar) {
  const auto [place, isNew] = m_places.try_emplace(test.name, m_rows.size());
  if (isNew && m_rows.size() == m_limit) {
    m_places.erase(place);
    ++m_leftOut;
    return;
  }
  if (isNew) m_rows.push_back({test.name, serviceOf(test), whereOf(test), 0, {}});
  Row& row = m_rows[place->second];
  ++row.runs;
  row.bars.push_back(bar);
  if (row.bars.size() > kBars) unitePairs(row.bars, false);
  if (row.bars.size() > kBars) unitePairs(row.bars, true);
}

}  // namespace reports::html
