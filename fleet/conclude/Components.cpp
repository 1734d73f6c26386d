#include <algorithm>
#include <map>
#include <numeric>

#include "fleet/conclude/Conclude.h"
#include "reports/common/Excerpt.h"

namespace fleet {
namespace {

/// Tests that some machine has together, as sets that are joined.
class Sets {
 public:
  explicit Sets(std::size_t count) : m_above(count) {
    std::iota(m_above.begin(), m_above.end(), std::size_t{0});
  }
  std::size_t rootOf(std::size_t one) {
    while (m_above[one] != one) one = m_above[one] = m_above[m_above[one]];
    return one;
  }
  void join(std::size_t one, std::size_t other) { m_above[rootOf(one)] = rootOf(other); }

 private:
  std::vector<std::size_t> m_above;
};

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

std::size_t firstTestOf(const Machine& machine) {
  const auto has = [](Verdict verdict) { return verdict != Verdict::kNone; };
  const auto found = std::find_if(machine.verdicts.begin(), machine.verdicts.end(), has);
  return found == machine.verdicts.end()
             ? kNone
             : static_cast<std::size_t>(found - machine.verdicts.begin());
}

Sets setsOf(const Answer& answer) {
  Sets sets(answer.tests.size());
  for (const Machine& machine : answer.machines) {
    const std::size_t first = firstTestOf(machine);
    for (std::size_t test = 0; test < machine.verdicts.size(); ++test) {
      if (machine.verdicts[test] != Verdict::kNone) sets.join(test, first);
    }
  }
  return sets;
}

void tell(Answer& answer) {
  constexpr std::size_t kMostTold = 5;
  std::string text =
      std::to_string(answer.components.size()) + " fleets, whose machines have no test in common:";
  const std::size_t told = std::min(kMostTold, answer.components.size());
  for (std::size_t i = 0; i < told; ++i) {
    const Component& one = answer.components[i];
    text += (i == 0 ? " " : ", ") + std::to_string(one.machines) +
            (one.machines == 1 ? " machine" : " machines") + " like " +
            reports::excerpt(answer.machines[one.example].name) + " (" + std::to_string(one.tests) +
            (one.tests == 1 ? " test)" : " tests)");
  }
  if (told < answer.components.size()) text += ", ...";
  answer.complaints.push_back({"", 0, text, false});
}

}  // namespace

void concludeComponents(Answer& answer) {
  Sets sets = setsOf(answer);
  std::map<std::size_t, Component> components;
  for (std::uint32_t i = 0; i < answer.machines.size(); ++i) {
    const std::size_t first = firstTestOf(answer.machines[i]);
    if (first == kNone) continue;
    Component& component = components[sets.rootOf(first)];
    if (component.machines++ == 0) component.example = i;
  }
  for (std::size_t test = 0; test < answer.tests.size(); ++test) {
    const auto found = components.find(sets.rootOf(test));
    if (found != components.end()) ++found->second.tests;
  }
  for (const auto& [root, component] : components) answer.components.push_back(component);
  std::sort(answer.components.begin(), answer.components.end(),
            [](const Component& one, const Component& other) {
              return one.machines != other.machines ? one.machines > other.machines
                                                    : one.example < other.example;
            });
  if (answer.components.size() > 1) tell(answer);
}

}  // namespace fleet
