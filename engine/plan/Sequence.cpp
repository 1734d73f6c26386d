#include "engine/plan/Sequence.h"

#include <limits>
#include <numeric>
#include <utility>

namespace engine {
namespace {

/// SplitMix64: two multiplications, the same everywhere, and any seed is as good as another.
class Numbers {
 public:
  explicit Numbers(std::uint64_t start) : m_state(start) {}

  /// Below `bound`, each with the same chance.
  std::uint64_t below(std::uint64_t bound) {
    const std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    const std::uint64_t whole = most - most % bound;
    std::uint64_t number = next();
    while (number >= whole) number = next();
    return number % bound;
  }

 private:
  std::uint64_t next() {
    m_state += kStep;
    std::uint64_t mixed = m_state;
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9u;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBu;
    return mixed ^ (mixed >> 31);
  }

 public:
  static constexpr std::uint64_t kStep = 0x9E3779B97F4A7C15u;

 private:
  std::uint64_t m_state;
};

std::uint64_t runsOf(const PreparedGroup& group) {
  std::uint64_t runs = 0;
  for (const PreparedTest& test : group.tests) runs += test.repeat;
  return runs;
}

void refuseTooMany(const PreparedGroup& group) {
  if (runsOf(group) <= kMostRepetitions) return;
  throw PlanError((group.name.empty() ? "the plan" : "group \"" + group.name + "\"") +
                  " repeats its tests too often: more than " + std::to_string(kMostRepetitions) +
                  " runs in one pass");
}

}  // namespace

std::vector<std::uint32_t> shuffled(std::uint32_t count, std::uint64_t seed, std::uint64_t pass) {
  std::vector<std::uint32_t> order(count);
  std::iota(order.begin(), order.end(), 0u);
  Numbers numbers(seed + pass * Numbers::kStep);
  for (std::size_t place = count; place > 1; --place) {
    std::swap(order[place - 1], order[static_cast<std::size_t>(numbers.below(place))]);
  }
  return order;
}

Sequence::Sequence(const PreparedPlan& prepared, const std::vector<OfferedTest>& offer,
                   std::optional<std::uint64_t> passes)
    : m_prepared(prepared), m_offer(offer), m_passes(passes) {
  for (const PreparedGroup& group : prepared.groups) refuseTooMany(group);
}

void Sequence::fillOrder(const PreparedGroup& group) {
  std::vector<std::uint32_t> listed;
  listed.reserve(static_cast<std::size_t>(runsOf(group)));
  for (std::uint32_t test = 0; test < group.tests.size(); ++test) {
    listed.insert(listed.end(), static_cast<std::size_t>(group.tests[test].repeat), test);
  }
  if (group.shuffle) {
    const std::uint64_t pass = m_pass * group.repeat + m_groupPass;
    const auto count = static_cast<std::uint32_t>(listed.size());
    std::vector<std::uint32_t> order = shuffled(count, *group.shuffle, pass);
    for (std::uint32_t& place : order) place = listed[place];
    listed = std::move(order);
  }
  m_order = std::move(listed);
  m_place = 0;
}

/// Goes on to the next pass over a group; false behind the last one.
bool Sequence::beginPass() {
  const bool isFirst = m_number == 0 && m_order.empty();
  if (!isFirst && ++m_groupPass == m_prepared.groups[m_group].repeat) {
    m_groupPass = 0;
    if (m_prepared.groups.size() > 1) ++m_block;
    if (++m_group == m_prepared.groups.size()) {
      m_group = 0;
      ++m_pass;
    }
  }
  if (m_passes && m_pass >= *m_passes) return false;
  fillOrder(m_prepared.groups[m_group]);
  return true;
}

std::optional<PlannedRun> Sequence::next() {
  if (m_prepared.groups.empty() || (m_passes && m_pass >= *m_passes)) return std::nullopt;
  if (m_place == m_order.size() && !beginPass()) return std::nullopt;
  const PreparedTest& test = m_prepared.groups[m_group].tests[m_order[m_place++]];
  PlannedRun run;
  run.number = ++m_number;
  run.test = &m_offer[test.test];
  run.repetition = ++m_repetitions[test.test];
  run.estimate = test.estimate;
  run.timeout = test.timeout;
  run.settings = &test.settings;
  run.limits = &test.limits;
  run.block = m_block;
  return run;
}

std::optional<std::uint64_t> Sequence::total() const {
  if (!m_passes) return std::nullopt;
  // Each factor is at most a million, so that only many groups could go over.
  const double most = 9e18;
  double rough = 0;
  std::uint64_t onePass = 0;
  for (const PreparedGroup& group : m_prepared.groups) {
    rough += static_cast<double>(runsOf(group)) * static_cast<double>(group.repeat);
    onePass += runsOf(group) * group.repeat;
  }
  if (rough * static_cast<double>(*m_passes) > most) return std::nullopt;
  return onePass * *m_passes;
}

}  // namespace engine
