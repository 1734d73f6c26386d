#include <algorithm>
#include <tuple>
#include <unordered_map>
#include <utility>

#include "fleet/conclude/Conclude.h"

namespace fleet {
namespace {

std::unordered_map<std::string, std::uint32_t> indexesOf(const Answer& answer) {
  std::unordered_map<std::string, std::uint32_t> indexes;
  for (std::uint32_t i = 0; i < answer.tests.size(); ++i) indexes[answer.tests[i].name] = i;
  return indexes;
}

bool hasFailingTest(const Machine& machine) {
  return std::find(machine.verdicts.begin(), machine.verdicts.end(), Verdict::kFailed) !=
         machine.verdicts.end();
}

Finding ofRun(std::uint32_t machine) {
  Finding finding;
  finding.machine = machine;
  finding.text = "the run's result is FAIL, and none of its tests failed";
  return finding;
}

}  // namespace

void concludeFindings(Answer& answer, std::vector<Member>& members, const Tables& tables) {
  const auto indexes = indexesOf(answer);
  for (std::uint32_t i = 0; i < members.size(); ++i) {
    for (StreamFinding& found : members[i].findings) {
      Finding& finding = answer.findings.emplace_back(std::move(found.finding));
      finding.machine = i;
      finding.test = indexes.at(tables.names.textOf(finding.test));
    }
    members[i].findings = {};
    if (members[i].run == Verdict::kFailed && !hasFailingTest(answer.machines[i])) {
      answer.findings.push_back(ofRun(i));
    }
  }
  std::stable_sort(answer.findings.begin(), answer.findings.end(),
                   [](const Finding& one, const Finding& other) {
                     return std::tie(one.machine, one.test) < std::tie(other.machine, other.test);
                   });
}

}  // namespace fleet
