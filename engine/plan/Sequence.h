#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "engine/plan/Plan.h"
#include "engine/plan/Prepared.h"

namespace engine {

/// One run of one test. What it points to lives as long as the schedule.
struct PlannedRun {
  std::uint64_t number = 0;  ///< its place among all runs, from 1
  const OfferedTest* test = nullptr;
  std::uint64_t repetition = 1;  ///< the how-manieth run of this test, from 1
  double estimate = 0;           ///< in seconds, with these settings; 0 where nobody knows
  Duration timeout = kLeastTimeLimit;
  const SettingValues* settings = nullptr;
  const std::vector<Limit>* limits = nullptr;
  std::uint64_t block = 0;  ///< runs of different blocks do not overlap
};

/// The order in which a seed puts the numbers from 0 to `count` - 1, in its `pass`-th use: the same
/// on every system. Fisher and Yates' shuffle from the last place to the first, with numbers from
/// SplitMix64 begun at the seed plus `pass` times 0x9E3779B97F4A7C15; each is drawn anew while
/// taking its remainder would favour one place.
std::vector<std::uint32_t> shuffled(std::uint32_t count, std::uint64_t seed, std::uint64_t pass);

/// All runs of a plan one behind the other, made when they are asked for. `prepared` and the offer
/// must outlive it.
class Sequence {
 public:
  /// `passes` over all groups; without, there is no end.
  Sequence(const PreparedPlan& prepared, const std::vector<OfferedTest>& offer,
           std::optional<std::uint64_t> passes);

  /// The next one; nothing behind the last.
  std::optional<PlannedRun> next();

  /// How many there are altogether; nothing where there is no end, or it cannot be counted.
  std::optional<std::uint64_t> total() const;

 private:
  bool beginPass();
  void fillOrder(const PreparedGroup& group);

  const PreparedPlan& m_prepared;
  const std::vector<OfferedTest>& m_offer;
  std::optional<std::uint64_t> m_passes;
  std::uint64_t m_pass = 0;  ///< over all groups
  std::size_t m_group = 0;
  std::uint64_t m_groupPass = 0;       ///< over this group in this pass
  std::vector<std::uint32_t> m_order;  ///< of this group's runs: which of its tests each is of
  std::size_t m_place = 0;
  std::uint64_t m_number = 0, m_block = 0;
  std::map<std::size_t, std::uint64_t> m_repetitions;
};

}  // namespace engine
