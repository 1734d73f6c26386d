#include <algorithm>
#include <set>

#include "fleet/conclude/Conclude.h"
#include "reports/common/Excerpt.h"

namespace fleet {
namespace {

/// "n7" and "n7.rack.example" are one: schedulers know short names, machines long ones.
bool isSame(const std::string& one, const std::string& other) {
  const std::string& shorter = one.size() < other.size() ? one : other;
  const std::string& longer = one.size() < other.size() ? other : one;
  if (longer.compare(0, shorter.size(), shorter) != 0) return false;
  if (shorter.size() == longer.size()) return true;
  return longer[shorter.size()] == '.' && shorter.find('.') == std::string::npos;
}

/// Names by their order: whoever is the same lies next to where it would be.
class NameSet {
 public:
  void add(const std::string& name) {
    m_names.insert(name);
    m_short.insert(name.substr(0, name.find('.')));
  }
  bool has(const std::string& name) const {
    if (m_names.count(name) != 0) return true;
    const std::size_t dot = name.find('.');
    if (dot == std::string::npos) return m_short.count(name) != 0;
    const std::string head = name.substr(0, dot);
    return m_names.count(head) != 0 && isSame(head, name);
  }

 private:
  std::set<std::string> m_names;
  std::set<std::string> m_short;
};

std::uint32_t answeredBy(const Machine& machine) {
  return static_cast<std::uint32_t>(
      std::count_if(machine.verdicts.begin(), machine.verdicts.end(), [](Verdict verdict) {
        return verdict != Verdict::kNone && verdict != Verdict::kUnfinished;
      }));
}

void addCutOff(Answer& answer, const std::vector<Member>& members) {
  for (std::uint32_t i = 0; i < members.size(); ++i) {
    if (members[i].hasEnded) continue;
    Silent silent{members[i].name, i, answeredBy(answer.machines[i]), "its stream was cut off"};
    if (!members[i].lastOpen.empty()) silent.why += " in " + members[i].lastOpen;
    answer.silent.push_back(std::move(silent));
  }
}

}  // namespace

void concludeSilent(Answer& answer, const std::vector<Member>& members,
                    const std::optional<std::vector<std::string>>& expected) {
  if (expected) {
    NameSet there;
    NameSet wanted;
    for (const Machine& machine : answer.machines) there.add(machine.name);
    for (const std::string& name : *expected) wanted.add(name);
    std::set<std::string> told;
    for (const std::string& name : *expected) {
      if (there.has(name) || !told.insert(name).second) continue;
      answer.silent.push_back({name, kNowhere, 0, "no stream of it"});
    }
    for (const Machine& machine : answer.machines) {
      if (wanted.has(machine.name)) continue;
      answer.complaints.push_back(
          {machine.source, 0,
           "is of " + reports::excerpt(machine.name) + ", which was not expected", false});
    }
  }
  addCutOff(answer, members);
}

}  // namespace fleet
