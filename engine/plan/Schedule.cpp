#include "engine/plan/Schedule.h"

#include <algorithm>
#include <set>
#include <utility>

namespace engine {
namespace {

/// So many runs that wait are looked at for one that need not.
constexpr std::size_t kLookAhead = 1'000;

/// Nobody knows what a test without a device uses.
bool isAlone(const OfferedTest& test) {
  return test.characteristics.isExclusive || test.device.empty();
}

/// What some runs use, so that others must wait.
class InUse {
 public:
  void add(const PlannedRun& run) {
    m_isAny = true;
    m_isAlone = m_isAlone || isAlone(*run.test);
    m_isMemory = m_isMemory || run.test->isMemoryTest;
    m_block = run.block;
    m_devices.insert(run.test->device);
  }

  bool isFreeFor(const PlannedRun& run) const {
    if (!m_isAny) return true;
    return !isShut(run) && !isAlone(*run.test) && !(m_isMemory && run.test->isMemoryTest) &&
           m_devices.count(run.test->device) == 0;
  }

  /// No run of this block or a later one could begin.
  bool isShut(const PlannedRun& run) const {
    return m_isAny && (m_isAlone || m_block != run.block);
  }

 private:
  bool m_isAny = false, m_isAlone = false, m_isMemory = false;
  std::uint64_t m_block = 0;
  std::set<std::string> m_devices;
};

/// Without a word about repetitions once; for a time or until a failure, for ever.
std::optional<std::uint64_t> passesOf(const Plan& plan) {
  if (plan.repeat) return plan.repeat;
  if (plan.repeatFor || plan.untilFailure) return std::nullopt;
  return 1;
}

}  // namespace

struct Schedule::State {
  State(const Plan& plan, std::vector<OfferedTest> tests)
      : offer(std::move(tests)),
        prepared(prepare(plan, offer)),
        sequence(prepared, offer, passesOf(plan)),
        jobs(std::max<std::uint64_t>(1, plan.jobs)),
        repeatFor(plan.repeatFor),
        untilFailure(plan.untilFailure) {
    refill();
  }

  bool isClosed(Duration elapsed) const {
    return isStopped || (isBegun && repeatFor && elapsed >= *repeatFor);
  }

  void refill() {
    if (waiting.empty()) addWaiting();
  }

  bool addWaiting() {
    auto run = sequence.next();
    if (run) waiting.push_back(*run);
    return run.has_value();
  }

  PlannedRun begin(std::size_t place) {
    const PlannedRun run = waiting[place];
    waiting.erase(waiting.begin() + static_cast<std::ptrdiff_t>(place));
    underWay.push_back(run);
    isBegun = true;
    refill();
    return run;
  }

  std::vector<OfferedTest> offer;
  PreparedPlan prepared;
  Sequence sequence;
  std::uint64_t jobs;
  std::optional<Duration> repeatFor;
  bool untilFailure;
  bool isStopped = false, isBegun = false;
  std::deque<PlannedRun> waiting;  ///< in their order; empty only when there are no more
  std::vector<PlannedRun> underWay;
};

Schedule::Schedule(const Plan& plan, std::vector<OfferedTest> offer)
    : m_state(std::make_unique<State>(plan, std::move(offer))) {}
Schedule::~Schedule() = default;
Schedule::Schedule(Schedule&&) noexcept = default;
Schedule& Schedule::operator=(Schedule&&) noexcept = default;

const std::vector<OfferedTest>& Schedule::offer() const { return m_state->offer; }
const PreparedPlan& Schedule::prepared() const { return m_state->prepared; }
std::size_t Schedule::running() const { return m_state->underWay.size(); }
std::optional<std::uint64_t> Schedule::total() const { return m_state->sequence.total(); }
void Schedule::stop() { m_state->isStopped = true; }

std::optional<PlannedRun> Schedule::next(Duration elapsed) {
  State& state = *m_state;
  if (state.isClosed(elapsed) || state.underWay.size() >= state.jobs) return std::nullopt;
  InUse inUse;
  for (const PlannedRun& run : state.underWay) inUse.add(run);
  for (std::size_t i = 0; i < kLookAhead; ++i) {
    if (i == state.waiting.size() && !state.addWaiting()) return std::nullopt;
    const PlannedRun& run = state.waiting[i];
    if (inUse.isShut(run)) return std::nullopt;
    if (inUse.isFreeFor(run)) return state.begin(i);
    inUse.add(run);
  }
  return std::nullopt;
}

void Schedule::ended(std::uint64_t number, bool isFailure) {
  auto& runs = m_state->underWay;
  const auto found = std::find_if(runs.begin(), runs.end(),
                                  [&](const PlannedRun& run) { return run.number == number; });
  if (found == runs.end()) return;
  runs.erase(found);
  if (isFailure && m_state->untilFailure) stop();
}

bool Schedule::isOver(Duration elapsed) const {
  return m_state->underWay.empty() && (m_state->waiting.empty() || m_state->isClosed(elapsed));
}

bool mayOverlap(const PlannedRun& one, const PlannedRun& other) {
  InUse inUse;
  inUse.add(one);
  return inUse.isFreeFor(other);
}

}  // namespace engine
