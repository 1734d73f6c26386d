#include "fleet/groups/Groups.h"

#include <algorithm>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <utility>

#include "fleet/groups/Batches.h"
#include "fleet/groups/Chance.h"

namespace fleet {
namespace {

bool isFailing(const Machine& machine) { return machine.verdict == Verdict::kFailed; }

/// A failing part: the machine, and its place among the machine's.
using FailingPart = std::pair<std::uint32_t, std::uint32_t>;

class Grouping {
 public:
  Grouping(Answer& answer, const std::vector<Member>& members, const Names& names)
      : m_answer(answer), m_members(members), m_names(names) {}

  void run() {
    for (std::uint32_t i = 0; i < m_answer.findings.size(); ++i) place(i);
    groupMachines(GroupKind::kModel, [](const Machine& machine) { return machine.model; });
    groupMachines(GroupKind::kFirmware, [](const Machine& machine) { return machine.firmware; });
    groupParts();
    findBatchesOfMachines();
    findBatchesOfParts();
    sort(0);
    groupTests();
  }

 private:
  void place(std::uint32_t index) {
    const Finding& finding = m_answer.findings[index];
    if (finding.verdict != Verdict::kFailed) return;
    m_ofMachine[finding.machine].push_back(index);
    const std::vector<PartNumbers>& parts = m_members[finding.machine].parts;
    for (std::uint32_t i = 0; i < parts.size(); ++i) {
      if (isIt(parts[i], finding)) {
        m_ofPart[{finding.machine, i}].push_back(index);
        return;
      }
    }
  }

  bool isIt(const PartNumbers& part, const Finding& finding) const {
    return !finding.partKind.empty() && m_names.textOf(part.name) == finding.part &&
           m_names.textOf(part.place) == finding.partPlace &&
           m_names.textOf(part.serial) == finding.partSerial &&
           m_names.textOf(part.kind) == finding.partKind;
  }

  template <typename Of>
  void groupMachines(GroupKind kind, Of keyOf) {
    std::map<std::string, Share> shares;
    Share all;
    for (const Machine& machine : m_answer.machines) {
      const std::string key = keyOf(machine);
      if (key.empty()) continue;
      count(shares[key], isFailing(machine));
      count(all, isFailing(machine));
    }
    for (const auto& [key, share] : shares) {
      const Share rest{all.failing - share.failing, all.all - share.all};
      if (!standsOut(share, rest, shares.size())) continue;
      Group group = groupOf(kind, key, "", share, rest);
      for (std::uint32_t i = 0; i < m_answer.machines.size(); ++i) {
        const Machine& machine = m_answer.machines[i];
        if (isFailing(machine) && keyOf(machine) == key) addMachine(group, i);
      }
      m_answer.groups.push_back(std::move(group));
    }
  }

  static void count(Share& share, bool fails) {
    ++share.all;
    if (fails) ++share.failing;
  }

  static Group groupOf(GroupKind kind, const std::string& key, const std::string& of,
                       const Share& share, const Share& rest) {
    Group group;
    group.kind = kind;
    group.key = key;
    group.of = of;
    group.failing = share.failing;
    group.all = share.all;
    group.restFailing = rest.failing;
    group.rest = rest.all;
    group.chance = chanceOf(share, rest);
    return group;
  }

  void addMachine(Group& group, std::uint32_t machine) const {
    group.machines.push_back(machine);
    const auto found = m_ofMachine.find(machine);
    if (found == m_ofMachine.end()) return;
    group.findings.insert(group.findings.end(), found->second.begin(), found->second.end());
  }

  void addPart(Group& group, const FailingPart& part) const {
    if (group.machines.empty() || group.machines.back() != part.first) {
      group.machines.push_back(part.first);
    }
    const std::vector<std::uint32_t>& findings = m_ofPart.at(part);
    group.findings.insert(group.findings.end(), findings.begin(), findings.end());
  }

  /// Models of one kind are held against the others of it.
  void groupParts() {
    std::map<std::uint32_t, std::map<std::uint32_t, Share>> kinds;
    for (std::uint32_t machine = 0; machine < m_members.size(); ++machine) {
      const std::vector<PartNumbers>& parts = m_members[machine].parts;
      for (std::uint32_t i = 0; i < parts.size(); ++i) {
        count(kinds[parts[i].kind][parts[i].model], m_ofPart.count({machine, i}) != 0);
      }
    }
    for (const auto& [kind, models] : kinds) groupModels(kind, models);
  }

  void groupModels(std::uint32_t kind, const std::map<std::uint32_t, Share>& models) {
    Share all;
    for (const auto& [model, share] : models) {
      all.all += share.all;
      all.failing += share.failing;
    }
    for (const auto& [model, share] : models) {
      const Share rest{all.failing - share.failing, all.all - share.all};
      if (!standsOut(share, rest, models.size())) continue;
      Group group =
          groupOf(GroupKind::kPart, m_names.textOf(model), m_names.textOf(kind), share, rest);
      for (const auto& [part, findings] : m_ofPart) {
        const PartNumbers& numbers = m_members[part.first].parts[part.second];
        if (numbers.kind == kind && numbers.model == model) addPart(group, part);
      }
      m_answer.groups.push_back(std::move(group));
    }
  }

  void findBatchesOfMachines() {
    std::map<std::string, std::vector<Numbered>> models;
    for (std::uint32_t i = 0; i < m_answer.machines.size(); ++i) {
      const Machine& machine = m_answer.machines[i];
      if (machine.serial.empty()) continue;
      models[machine.model].push_back({machine.serial, isFailing(machine), i});
    }
    for (auto& [model, things] : models) {
      for (const Batch& batch : batchesAmong(std::move(things))) {
        Group group = groupOf(batch, model);
        std::vector<std::uint32_t> machines = batch.members;
        std::sort(machines.begin(), machines.end());
        for (const std::uint32_t machine : machines) addMachine(group, machine);
        m_answer.groups.push_back(std::move(group));
      }
    }
  }

  /// Only of models of which a part fails: the numbers of the others tell nothing.
  void findBatchesOfParts() {
    std::set<std::pair<std::uint32_t, std::uint32_t>> failing;
    for (const auto& [part, findings] : m_ofPart) {
      const PartNumbers& numbers = m_members[part.first].parts[part.second];
      if (!isWhole(numbers)) failing.insert({numbers.kind, numbers.model});
    }
    for (const auto& [kind, model] : failing) findBatchesOf(kind, model);
  }

  /// The machine itself is among its parts.
  bool isWhole(const PartNumbers& part) const { return m_names.textOf(part.kind) == "system"; }

  void findBatchesOf(std::uint32_t kind, std::uint32_t model) {
    std::vector<Numbered> things;
    std::vector<FailingPart> places;
    for (std::uint32_t machine = 0; machine < m_members.size(); ++machine) {
      const std::vector<PartNumbers>& parts = m_members[machine].parts;
      for (std::uint32_t i = 0; i < parts.size(); ++i) {
        if (parts[i].kind != kind || parts[i].model != model || parts[i].serial == 0) continue;
        things.push_back({m_names.textOf(parts[i].serial), m_ofPart.count({machine, i}) != 0,
                          static_cast<std::uint32_t>(places.size())});
        places.emplace_back(machine, i);
      }
    }
    for (const Batch& batch : batchesAmong(std::move(things))) {
      Group group = groupOf(batch, m_names.textOf(model));
      std::vector<std::uint32_t> members = batch.members;
      std::sort(members.begin(), members.end());
      for (const std::uint32_t member : members) addPart(group, places[member]);
      m_answer.groups.push_back(std::move(group));
    }
  }

  static Group groupOf(const Batch& batch, const std::string& of) {
    Group group;
    group.kind = GroupKind::kBatch;
    group.key = batch.prefix;
    group.of = of;
    group.failing = batch.failing;
    group.all = batch.all;
    group.restFailing = batch.restFailing;
    group.rest = batch.rest;
    group.chance = batch.chance;
    return group;
  }

  void groupTests() {
    const std::size_t first = m_answer.groups.size();
    for (std::uint32_t test = 0; test < m_answer.tests.size(); ++test) {
      Group group;
      group.key = m_answer.tests[test].name;
      for (std::uint32_t i = 0; i < m_answer.machines.size(); ++i) {
        const Verdict verdict = m_answer.machines[i].verdicts[test];
        if (verdict != Verdict::kNone) ++group.all;
        if (verdict == Verdict::kFailed) group.machines.push_back(i);
      }
      group.failing = static_cast<std::uint32_t>(group.machines.size());
      if (group.failing > 0) m_answer.groups.push_back(std::move(group));
    }
    for (std::uint32_t i = 0; i < m_answer.findings.size(); ++i) {
      const Finding& finding = m_answer.findings[i];
      if (finding.verdict != Verdict::kFailed || finding.test == kNowhere) continue;
      for (std::size_t group = first; group < m_answer.groups.size(); ++group) {
        if (m_answer.groups[group].key == m_answer.tests[finding.test].name) {
          m_answer.groups[group].findings.push_back(i);
        }
      }
    }
    std::stable_sort(
        m_answer.groups.begin() + static_cast<std::ptrdiff_t>(first), m_answer.groups.end(),
        [](const Group& one, const Group& other) { return one.failing > other.failing; });
  }

  void sort(std::size_t first) {
    std::stable_sort(m_answer.groups.begin() + static_cast<std::ptrdiff_t>(first),
                     m_answer.groups.end(), [](const Group& one, const Group& other) {
                       return std::tie(one.chance, one.kind, one.of, one.key) <
                              std::tie(other.chance, other.kind, other.of, other.key);
                     });
  }

  Answer& m_answer;
  const std::vector<Member>& m_members;
  const Names& m_names;
  std::map<std::uint32_t, std::vector<std::uint32_t>> m_ofMachine;  ///< failing findings
  std::map<FailingPart, std::vector<std::uint32_t>> m_ofPart;
};

}  // namespace

void findGroups(Answer& answer, const std::vector<Member>& members, const Names& names) {
  Grouping(answer, members, names).run();
}

}  // namespace fleet
