#include "providers/memory/placing/Retest.h"

#include <algorithm>
#include <limits>

namespace providers::memory {

namespace {

/// Passes on that the run is to stop; how far a page has come is nobody's affair.
class PageControl : public RunControl {
 public:
  explicit PageControl(RunControl& run) : m_run(run) {}
  void progress(double) override {}
  void status(const std::string&) override {}
  bool stopRequested() const override { return m_run.stopRequested(); }

 private:
  RunControl& m_run;
};

}  // namespace

RestBudget::RestBudget(double restSeconds) : m_round(2 * restSeconds) {
  constexpr double kSeconds = 120;
  m_left = std::max(kSeconds, m_round);
}

unsigned RestBudget::takeRounds() {
  constexpr unsigned kMost = 2;
  unsigned rounds = 0;
  for (; rounds < kMost && m_left >= m_round; ++rounds) m_left -= m_round;
  return rounds;
}

RetestResult retestPage(std::uint64_t* words, const RetestPlan& plan, ThreadTeam& team,
                        Resting& resting, RunControl& control) {
  constexpr std::size_t kWords = kPageBytes / sizeof(std::uint64_t);
  PageControl pageControl(control);
  RetestResult result;
  result.wasPlanned = plan.rounds > 0;
  for (unsigned i = 0; i < plan.rounds && !control.stopRequested(); ++i) {
    EngineSetup setup;
    setup.regions = evenRegions(kWords, 1);
    setup.regions.resize(team.size());  // nothing for the others
    setup.kernels = plan.kernels;
    setup.cacheBytes = std::numeric_limits<std::size_t>::max();  // nothing is to stay in a cache
    setup.clock = [] { return 0.0; };
    MemoryEngine engine(words, kWords, team, resting, setup);
    // Another seed each time, the run's own at first.
    const MemoryReport report = engine.run(
        makeSequence(plan.type, {words, kWords, plan.seed + i, plan.restSeconds}), pageControl);
    ++result.rounds;
    result.failed += report.errors > 0 ? 1 : 0;
    result.bits |= report.bits;
  }
  return result;
}

}  // namespace providers::memory
