#include "engine/plan/Prepared.h"

#include <algorithm>
#include <set>
#include <utility>

#include "engine/plan/Estimate.h"
#include "engine/plan/Permission.h"
#include "engine/plan/Quick.h"
#include "engine/plan/TestNames.h"

namespace engine {
namespace {

/// What is said about tests, on three levels: the plan, a group, an entry.
struct Level {
  const std::vector<SettingText>* settings;
  const std::vector<Limit>* limits;
  std::optional<Duration> timeout;
};

template <typename Part>
Level levelOf(const Part& part) {
  return {&part.settings, &part.limits, part.timeout};
}

class Preparation {
 public:
  Preparation(const Plan& plan, const std::vector<OfferedTest>& offer)
      : m_plan(plan), m_offer(offer), m_names(offer) {}

  PreparedPlan run() {
    exclude();
    for (const Group& group : m_plan.groups) addGroup(group);
    refuseUnknownSettings(named(m_meant), m_plan.settings);
    if (m_plan.quick) keepQuickest(m_prepared, *m_plan.quick);
    m_prepared.groups.erase(
        std::remove_if(m_prepared.groups.begin(), m_prepared.groups.end(),
                       [](const PreparedGroup& group) { return group.tests.empty(); }),
        m_prepared.groups.end());
    if (m_prepared.groups.empty()) refuseNothing();
    return std::move(m_prepared);
  }

 private:
  using Tests = std::vector<std::size_t>;

  std::vector<const OfferedTest*> named(const Tests& tests) const {
    std::vector<const OfferedTest*> all;
    for (const std::size_t test : tests) all.push_back(&m_offer[test]);
    return all;
  }

  NamedMatch find(const NamedTests& tests, bool isEveryDevice) const {
    try {
      return m_names.find(tests.name, isEveryDevice);
    } catch (const PlanError& error) {
      refuse(tests.place, error.what());
    }
  }

  void exclude() {
    for (const NamedTests& excluded : m_plan.excluded) {
      // Better one too many left out.
      for (const std::size_t test : find(excluded, true).tests) m_excluded.insert(test);
    }
  }

  void addGroup(const Group& group) {
    PreparedGroup prepared;
    prepared.name = group.name;
    prepared.repeat = group.repeat;
    prepared.shuffle = group.shuffle ? group.shuffle : m_plan.shuffle;
    Tests meant;
    for (const PlannedTest& entry : group.tests) {
      const Tests added = addEntry(group, entry, prepared.tests);
      meant.insert(meant.end(), added.begin(), added.end());
    }
    refuseUnknownSettings(named(meant), group.settings);
    m_meant.insert(m_meant.end(), meant.begin(), meant.end());
    m_prepared.groups.push_back(std::move(prepared));
  }

  /// The tests that the entry means, whether they run or not.
  Tests addEntry(const Group& group, const PlannedTest& entry, std::vector<PreparedTest>& tests) {
    if (entry.isOptional && !m_names.has(entry.tests.name)) return {};
    NamedMatch match = find(entry.tests, entry.isEveryDevice);
    refuseUnknownSettings(named(match.tests), entry.settings);
    for (const std::size_t test : match.tests) {
      if (m_excluded.count(test) > 0) continue;
      if (!match.isDirect && isAmong(test, tests)) continue;
      const std::string reason = whyNotAllowed(m_plan, m_offer[test].characteristics);
      if (reason.empty()) {
        tests.push_back(preparedTest(group, entry, test));
      } else if (match.isDirect) {
        refuse(entry.tests.place,
               "test \"" + m_offer[test].identifier + "\" is refused: " + reason);
      } else if (m_skipped.insert(test).second) {
        m_prepared.skipped.push_back({test, reason});
      }
    }
    return std::move(match.tests);
  }

  static bool isAmong(std::size_t test, const std::vector<PreparedTest>& tests) {
    return std::any_of(tests.begin(), tests.end(),
                       [&](const PreparedTest& each) { return each.test == test; });
  }

  PreparedTest preparedTest(const Group& group, const PlannedTest& entry, std::size_t test) const {
    PreparedTest prepared;
    prepared.test = test;
    prepared.repeat = entry.repeat;
    std::optional<Duration> timeout;
    for (const Level& level : {levelOf(m_plan), levelOf(group), levelOf(entry)}) {
      if (level.timeout) timeout = level.timeout;
      prepared.settings =
          overlaid(prepared.settings, settingValues(m_offer[test], *level.settings));
      prepared.limits.insert(prepared.limits.end(), level.limits->begin(), level.limits->end());
    }
    prepared.estimate = expectedSeconds(m_offer[test], prepared.settings);
    prepared.timeout = timeout.value_or(defaultTimeLimit(prepared.estimate));
    return prepared;
  }

  [[noreturn]] void refuseNothing() const {
    std::string reason = "nothing to run";
    if (m_plan.quick) reason += ": no estimate fits into " + textOf(*m_plan.quick);
    if (!m_prepared.skipped.empty()) {
      const SkippedTest& first = m_prepared.skipped.front();
      reason += "; \"" + m_offer[first.test].identifier + "\" is skipped: " + first.reason;
    }
    throw NothingToRun(reason);
  }

  const Plan& m_plan;
  const std::vector<OfferedTest>& m_offer;
  TestNames m_names;
  std::set<std::size_t> m_excluded, m_skipped;
  Tests m_meant;
  PreparedPlan m_prepared;
};

}  // namespace

Duration defaultTimeLimit(double expectedSeconds) {
  return std::max<Duration>(kLeastTimeLimit, durationOfSeconds(3 * expectedSeconds));
}

PreparedPlan prepare(const Plan& plan, const std::vector<OfferedTest>& offer) {
  return Preparation(plan, offer).run();
}

}  // namespace engine
