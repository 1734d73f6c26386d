#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/plan/Prepared.h"
#include "engine/plan/Sequence.h"

namespace engine {

/// Which run begins when: a plan on the tests of this machine. It knows no clock and starts nothing
/// itself. Not to be used from two threads at once.
///
/// Runs are numbered in the order of the plan. At most `jobs` of them are under way at a time; two
/// never overlap that are on the same device, of which one is exclusive, that are both memory
/// tests, or that are of different groups. A run whose turn has not come for that reason is not
/// overtaken by one that it must not overlap either: those go on in the order of their numbers,
/// whoever is faster.
class Schedule {
 public:
  /// Throws `PlanError` for what the plan asks for and cannot be had (`prepare`).
  Schedule(const Plan& plan, std::vector<OfferedTest> offer);
  ~Schedule();
  Schedule(Schedule&&) noexcept;
  Schedule& operator=(Schedule&&) noexcept;

  /// The tests on offer, and those that the plan means and that do not run.
  const std::vector<OfferedTest>& offer() const;
  const PreparedPlan& prepared() const;

  /// The run to begin now, if there is one: to be asked until there is none, whenever a run has
  /// ended too. It counts as under way from then on. `elapsed` is since the run as a whole began.
  std::optional<PlannedRun> next(Duration elapsed);

  /// The run of that number is over. With `untilFailure`, nothing begins after one that failed.
  void ended(std::uint64_t number, bool isFailure);

  /// Nothing begins any more.
  void stop();

  /// How many runs are under way.
  std::size_t running() const;

  /// Nothing is under way, and nothing will begin.
  bool isOver(Duration elapsed) const;

  /// How many runs there will be; nothing where nobody knows.
  std::optional<std::uint64_t> total() const;

 private:
  struct State;
  std::unique_ptr<State> m_state;
};

/// Whether the two may be under way at the same time.
bool mayOverlap(const PlannedRun& one, const PlannedRun& other);

}  // namespace engine
