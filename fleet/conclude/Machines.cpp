#include <algorithm>
#include <map>
#include <unordered_map>

#include "fleet/conclude/Conclude.h"

namespace fleet {
namespace {

using TestIndexes = std::unordered_map<std::uint32_t, std::uint32_t>;

/// By the numbers of their names.
TestIndexes listTests(Answer& answer, const std::vector<Member>& members, const Names& names) {
  std::map<std::string, std::uint32_t> sorted;
  TestIndexes indexes;
  for (const Member& member : members) {
    for (const Standing& standing : member.standings) {
      if (indexes.emplace(standing.test, 0).second) {
        sorted.emplace(names.textOf(standing.test), standing.test);
      }
    }
  }
  for (const auto& [name, number] : sorted) {
    indexes[number] = static_cast<std::uint32_t>(answer.tests.size());
    answer.tests.emplace_back().name = name;
  }
  return indexes;
}

Machine machineFrom(const Member& member, const TestIndexes& tests) {
  Machine machine;
  machine.name = member.name;
  machine.serial = member.serial;
  machine.model = member.model;
  machine.firmware = member.firmware;
  machine.source = member.source;
  machine.began = engine::Time(std::chrono::microseconds(member.age.began));
  machine.hasEnded = member.hasEnded;
  machine.isClockTrusted = member.isClockTrusted;
  machine.streams = member.streams;
  machine.verdicts.resize(tests.size());
  for (const Standing& standing : member.standings) {
    Verdict& verdict = machine.verdicts[tests.at(standing.test)];
    verdict = std::max(verdict, standing.verdict);
  }
  return machine;
}

/// How many machines whose streams are whole have each test.
std::vector<std::size_t> countWhole(const Answer& answer, std::size_t& whole) {
  std::vector<std::size_t> counts(answer.tests.size());
  for (const Machine& machine : answer.machines) {
    if (!machine.hasEnded) continue;
    ++whole;
    for (std::size_t test = 0; test < counts.size(); ++test) {
      if (machine.verdicts[test] != Verdict::kNone) ++counts[test];
    }
  }
  return counts;
}

void closeCutOff(Answer& answer) {
  std::size_t whole = 0;
  const std::vector<std::size_t> counts = countWhole(answer, whole);
  for (Machine& machine : answer.machines) {
    if (machine.hasEnded) continue;
    for (std::size_t test = 0; test < counts.size(); ++test) {
      Verdict& verdict = machine.verdicts[test];
      if (verdict == Verdict::kNone && 2 * counts[test] > whole) verdict = Verdict::kUnfinished;
    }
  }
}

/// Of one that did nothing to the end: unfinished.
Verdict wholeOf(const Machine& machine, const Member& member) {
  Verdict verdict = member.run;
  for (const Verdict one : machine.verdicts) verdict = std::max(verdict, one);
  return machine.hasEnded ? verdict : std::max(verdict, Verdict::kUnfinished);
}

}  // namespace

void concludeMachines(Answer& answer, const std::vector<Member>& members, const Tables& tables) {
  const TestIndexes tests = listTests(answer, members, tables.names);
  answer.machines.reserve(members.size());
  for (const Member& member : members) answer.machines.push_back(machineFrom(member, tests));
  closeCutOff(answer);
  for (std::size_t i = 0; i < members.size(); ++i) {
    answer.machines[i].verdict = wholeOf(answer.machines[i], members[i]);
  }
}

void concludeTotals(Answer& answer) {
  for (const Machine& machine : answer.machines) {
    ++answer.totals.machines[static_cast<std::size_t>(machine.verdict)];
    for (std::size_t test = 0; test < answer.tests.size(); ++test) {
      ++answer.tests[test].verdicts[static_cast<std::size_t>(machine.verdicts[test])];
    }
  }
}

}  // namespace fleet
