#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "engine/plan/Schedule.h"
#include "tests/engine/plan/SampleOffers.h"

namespace engine {
namespace {

/// Machines, plans and ends of runs by chance: the same ones each time.
class Chance {
 public:
  explicit Chance(unsigned seed) : m_numbers(seed) {}

  unsigned below(unsigned bound) { return static_cast<unsigned>(m_numbers() % bound); }
  bool oneIn(unsigned chances) { return below(chances) == 0; }

  std::vector<OfferedTest> machine() {
    std::vector<OfferedTest> offer;
    const unsigned count = 1 + below(12);
    for (unsigned i = 0; i < count; ++i) {
      OfferedTest test = offered("T" + std::to_string(i), "d" + std::to_string(below(6)));
      test.characteristics.isExclusive = oneIn(8);
      test.isMemoryTest = oneIn(4);
      if (oneIn(15)) test.device.clear();
      offer.push_back(std::move(test));
    }
    return offer;
  }

  Plan plan(std::size_t tests) {
    Plan plan;
    plan.groups.resize(1 + below(3));
    for (Group& group : plan.groups) {
      group.repeat = 1 + below(3);
      for (unsigned i = 0; i <= below(4); ++i) {
        group.tests.emplace_back();
        group.tests.back().tests.name =
            oneIn(3) ? "*" : "T" + std::to_string(below(static_cast<unsigned>(tests)));
        group.tests.back().repeat = 1 + below(3);
      }
    }
    plan.repeat = 1 + below(3);
    plan.jobs = 1 + below(5);
    if (oneIn(2)) plan.shuffle = below(1000);
    return plan;
  }

 private:
  std::mt19937 m_numbers;
};

/// Two runs that must not be under way together, said once more in other words.
bool areApart(const PlannedRun& one, const PlannedRun& other) {
  const auto isAlone = [](const PlannedRun& run) {
    return run.test->characteristics.isExclusive || run.test->device.empty();
  };
  return one.block != other.block || isAlone(one) || isAlone(other) ||
         one.test->device == other.test->device ||
         (one.test->isMemoryTest && other.test->isMemoryTest);
}

/// What runs one at a time, in the order of the numbers.
std::vector<PlannedRun> inOrder(Schedule& schedule) {
  std::vector<PlannedRun> runs;
  while (const auto run = schedule.next(Duration(0))) {
    runs.push_back(*run);
    schedule.ended(run->number, false);
  }
  return runs;
}

class Walk {
 public:
  Walk(Schedule& schedule, std::uint64_t jobs, Chance& chance)
      : m_schedule(schedule), m_jobs(jobs), m_chance(chance) {}

  void go() {
    beginAll();
    while (!m_underWay.empty() && !testing::Test::HasFailure()) {
      const std::size_t ended = m_chance.below(static_cast<unsigned>(m_underWay.size()));
      m_schedule.ended(m_underWay[ended].number, m_chance.oneIn(2));
      m_underWay.erase(m_underWay.begin() + static_cast<std::ptrdiff_t>(ended));
      // Sometimes several end before anybody asks.
      if (m_underWay.empty() || !m_chance.oneIn(3)) beginAll();
    }
    EXPECT_TRUE(m_schedule.isOver(Duration(0)));
  }

  const std::vector<PlannedRun>& begun() const { return m_begun; }

 private:
  void beginAll() {
    while (const auto run = m_schedule.next(Duration(0))) {
      for (const PlannedRun& other : m_underWay) {
        EXPECT_FALSE(areApart(*run, other)) << run->number << " beside " << other.number;
      }
      m_underWay.push_back(*run);
      m_begun.push_back(*run);
      ASSERT_LE(m_underWay.size(), m_jobs);
    }
    EXPECT_EQ(m_schedule.running(), m_underWay.size());
  }

  Schedule& m_schedule;
  std::uint64_t m_jobs;
  Chance& m_chance;
  std::vector<PlannedRun> m_underWay, m_begun;
};

/// Each run began once, and is the one that has its number when they run one at a time.
void expectAll(const std::vector<PlannedRun>& begun, const std::vector<PlannedRun>& wanted) {
  std::map<std::uint64_t, PlannedRun> byNumber;
  for (const PlannedRun& run : begun) EXPECT_TRUE(byNumber.emplace(run.number, run).second);
  ASSERT_EQ(byNumber.size(), wanted.size());
  for (const PlannedRun& run : wanted) {
    ASSERT_EQ(byNumber.count(run.number), 1u);
    EXPECT_EQ(byNumber.at(run.number).test->identifier, run.test->identifier);
    EXPECT_EQ(byNumber.at(run.number).repetition, run.repetition);
  }
}

void expectOrderOfThoseApart(const std::vector<PlannedRun>& begun) {
  for (std::size_t i = 0; i < begun.size(); ++i) {
    for (std::size_t j = i + 1; j < begun.size(); ++j) {
      if (!areApart(begun[i], begun[j])) continue;
      EXPECT_LT(begun[i].number, begun[j].number);
    }
  }
}

TEST(ScheduleProperty, EveryRunBeginsOnceBesideWhatItMayAndInOrderWithTheOthers) {
  for (unsigned seed = 0; seed < 500 && !HasFailure(); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Chance chance(seed);
    const std::vector<OfferedTest> offer = chance.machine();
    const Plan plan = chance.plan(offer.size());
    Schedule schedule(plan, offer);
    Plan single = plan;
    single.jobs = 1;
    Schedule singly(single, offer);
    const std::vector<PlannedRun> wanted = inOrder(singly);
    EXPECT_EQ(schedule.total(), std::optional<std::uint64_t>(wanted.size()));
    Walk walk(schedule, plan.jobs, chance);
    walk.go();
    expectAll(walk.begun(), wanted);
    expectOrderOfThoseApart(walk.begun());
  }
}

// A machine of independent tests is never left idle.
TEST(ScheduleProperty, AsManyAsThereAreJobsAreUnderWayWhereNothingForbidsIt) {
  std::vector<OfferedTest> offer;
  for (int i = 0; i < 20; ++i) offer.push_back(offered("T", "d" + std::to_string(i)));
  Plan plan;
  plan.groups.resize(1);
  plan.groups[0].tests.emplace_back();
  plan.groups[0].tests[0].tests.name = "*";
  plan.jobs = 7;
  plan.repeat = 3;
  Schedule schedule(plan, offer);
  std::set<std::uint64_t> underWay;
  for (std::size_t begun = 0; begun < 60;) {
    while (const auto run = schedule.next(Duration(0))) underWay.insert(run->number), ++begun;
    ASSERT_TRUE(underWay.size() == 7 || begun == 60) << begun;
    schedule.ended(*underWay.begin(), false);
    underWay.erase(underWay.begin());
  }
}

}  // namespace
}  // namespace engine
