#include <gtest/gtest.h>

#include "fleet/groups/Batches.h"
#include "fleet/groups/Chance.h"
#include "fleet/groups/Groups.h"

namespace fleet {
namespace {

TEST(FleetChance, IsFishersExactTest) {
  // Of the tables with these margins, the ones at least as bad: worked out by hand.
  EXPECT_NEAR(chanceOf({3, 3}, {0, 3}), 1.0 / 20, 1e-9);
  EXPECT_NEAR(chanceOf({2, 2}, {0, 2}), 1.0 / 6, 1e-9);
  EXPECT_NEAR(chanceOf({3, 4}, {1, 4}), 17.0 / 70, 1e-9);
  EXPECT_NEAR(chanceOf({0, 5}, {2, 5}), 1, 1e-9);
}

TEST(FleetChance, AGroupStandsOutOnlyWhereItFailsClearlyMoreOften) {
  EXPECT_TRUE(standsOut({30, 100}, {10, 1000}, 10));
  EXPECT_FALSE(standsOut({2, 2}, {0, 1000}, 1)) << "two may be chance";
  EXPECT_FALSE(standsOut({1100, 10'000}, {900, 10'000}, 1)) << "not twice as often";
  EXPECT_FALSE(standsOut({3, 30}, {10, 300}, 10)) << "likely enough by chance";
  EXPECT_FALSE(standsOut({50, 100}, {0, 0}, 1)) << "there is nothing to hold it against";
}

std::vector<Numbered> things(int count, const std::string& bad, int failing) {
  std::vector<Numbered> result;
  for (int i = 0; i < count; ++i) {
    result.push_back({"OK" + std::to_string(1000 + i), false, static_cast<std::uint32_t>(i)});
  }
  for (int i = 0; i < 20; ++i) {
    result.push_back(
        {bad + std::to_string(1000 + i), i < failing, static_cast<std::uint32_t>(count + i)});
  }
  return result;
}

TEST(FleetBatches, TheBatchIsTheLongestBeginningThatTheBadOnesShare) {
  const std::vector<Batch> batches = batchesAmong(things(500, "BAD7X", 12));
  ASSERT_EQ(batches.size(), 1U);
  EXPECT_EQ(batches[0].prefix, "BAD7X10");
  EXPECT_EQ(batches[0].failing, 12U);
  EXPECT_EQ(batches[0].all, 20U);
  EXPECT_EQ(batches[0].restFailing, 0U);
  EXPECT_EQ(batches[0].rest, 500U);
  EXPECT_EQ(batches[0].members.size(), 12U);
}

TEST(FleetBatches, FailuresSpreadOverAllNumbersAreNoBatch) {
  std::vector<Numbered> all = things(500, "OK2", 0);
  for (std::size_t i = 0; i < all.size(); i += 25) all[i].isFailing = true;
  EXPECT_TRUE(batchesAmong(all).empty());
}

TEST(FleetBatches, OneBatchAmongNothingElseIsNone) {
  std::vector<Numbered> all = things(0, "BAD", 20);
  EXPECT_TRUE(batchesAmong(all).empty());
}

/// A fleet in which machines, and parts of theirs, fail.
class Fleet {
 public:
  /// As many as `all`, of which the first `failing` fail, each by a memory module of that model.
  Fleet& machines(std::uint32_t all, std::uint32_t failing, const std::string& model,
                  const std::string& firmware, const std::string& module) {
    for (std::uint32_t i = 0; i < all; ++i) add(i < failing, model, firmware, module);
    return *this;
  }

  const std::vector<Group>& groups() {
    Test test;
    test.name = "Memory";
    m_answer.tests = {test};
    findGroups(m_answer, m_members, m_names);
    return m_answer.groups;
  }
  const Group* of(GroupKind kind) {
    for (const Group& group : m_answer.groups) {
      if (group.kind == kind) return &group;
    }
    return nullptr;
  }

 private:
  void add(bool fails, const std::string& model, const std::string& firmware,
           const std::string& module) {
    const auto index = static_cast<std::uint32_t>(m_answer.machines.size());
    Machine machine;
    machine.name = "n" + std::to_string(index);
    machine.model = model;
    machine.firmware = firmware;
    machine.verdict = fails ? Verdict::kFailed : Verdict::kPassed;
    machine.verdicts = {machine.verdict};
    m_answer.machines.push_back(machine);
    Member& member = m_members.emplace_back();
    for (const char* place : {"A1", "A2"}) {
      const std::string own = fails && std::string(place) == "A2" ? module : "Good";
      member.parts.push_back({m_names.numberOf("DIMM"), m_names.numberOf(place),
                              m_names.numberOf("memory"), m_names.numberOf(own), 0});
    }
    if (!fails) return;
    Finding finding;
    finding.machine = index;
    finding.test = 0;
    finding.part = "DIMM";
    finding.partKind = "memory";
    finding.partModel = module;
    finding.partPlace = "A2";
    m_answer.findings.push_back(finding);
  }

  Answer m_answer;
  std::vector<Member> m_members;
  Names m_names;
};

TEST(FleetGroups, AModelOfMachineThatFailsMoreOftenIsOne) {
  Fleet fleet;
  fleet.machines(20, 8, "Bad", "1.0", "").machines(200, 0, "Sound", "1.0", "").groups();
  const Group* const group = fleet.of(GroupKind::kModel);
  ASSERT_NE(group, nullptr);
  EXPECT_EQ(group->key, "Bad");
  EXPECT_EQ(group->failing, 8U);
  EXPECT_EQ(group->all, 20U);
  EXPECT_EQ(group->restFailing, 0U);
  EXPECT_EQ(group->rest, 200U);
  EXPECT_EQ(group->machines.size(), 8U);
  EXPECT_EQ(group->findings.size(), 8U);
  EXPECT_EQ(fleet.of(GroupKind::kFirmware), nullptr) << "all have the same";
}

TEST(FleetGroups, AFirmwareThatFailsMoreOftenIsOne) {
  Fleet fleet;
  fleet.machines(20, 8, "M", "2.0", "").machines(200, 0, "M", "1.0", "").groups();
  const Group* const group = fleet.of(GroupKind::kFirmware);
  ASSERT_NE(group, nullptr);
  EXPECT_EQ(group->key, "2.0");
  EXPECT_EQ(group->failing, 8U);
  EXPECT_EQ(group->rest, 200U);
  EXPECT_EQ(fleet.of(GroupKind::kModel), nullptr);
}

TEST(FleetGroups, MachinesThatDoNotTellTheirFirmwareAreNoGroup) {
  Fleet fleet;
  fleet.machines(20, 8, "M", "", "").machines(200, 0, "M", "1.0", "").groups();
  EXPECT_EQ(fleet.of(GroupKind::kFirmware), nullptr);
}

// Parts are held against parts of their kind: of each machine one of two is counted.
TEST(FleetGroups, AModelOfPartThatFailsMoreOftenIsOne) {
  Fleet fleet;
  fleet.machines(10, 5, "M", "1.0", "Weak").machines(100, 2, "M", "1.0", "Good").groups();
  const Group* const group = fleet.of(GroupKind::kPart);
  ASSERT_NE(group, nullptr);
  EXPECT_EQ(group->key, "Weak");
  EXPECT_EQ(group->of, "memory");
  EXPECT_EQ(group->failing, 5U);
  EXPECT_EQ(group->all, 5U);
  EXPECT_EQ(group->restFailing, 2U);
  EXPECT_EQ(group->rest, 215U);
  EXPECT_EQ(group->machines.size(), 5U);
}

TEST(FleetGroups, TheTestsThatMachinesFailedComeLastAndAlways) {
  Fleet fleet;
  const std::vector<Group>& groups = fleet.machines(30, 1, "M", "1.0", "Good").groups();
  ASSERT_EQ(groups.size(), 1U);
  EXPECT_EQ(groups[0].kind, GroupKind::kTest);
  EXPECT_EQ(groups[0].key, "Memory");
  EXPECT_EQ(groups[0].failing, 1U);
  EXPECT_EQ(groups[0].findings.size(), 1U);
}

}  // namespace
}  // namespace fleet
