#include "engine/plan/TestNames.h"

#include <set>
#include <utility>

#include "engine/plan/Glob.h"
#include "engine/plan/PlanError.h"
#include "text/CloseMatches.h"
#include "text/SafeText.h"

namespace engine {

TestNames::TestNames(const std::vector<OfferedTest>& offer) : m_offer(offer) {
  std::set<std::string> seen;
  for (std::size_t i = 0; i < offer.size(); ++i) {
    if (!seen.insert(offer[i].identifier).second) continue;
    m_entries.push_back({i, text::visible(offer[i].identifier), text::visible(offer[i].service),
                         text::visible(offer[i].device)});
  }
}

TestNames::Tests TestNames::withIdentifier(const std::string& name) const {
  // What is printed alike does not hide the one that has this very name.
  for (const Entry& entry : m_entries) {
    if (m_offer[entry.test].identifier == name) return {entry.test};
  }
  for (const Entry& entry : m_entries) {
    if (entry.identifier == name) return {entry.test};
  }
  return {};
}

TestNames::Tests TestNames::withService(const std::string& name) const {
  Tests found;
  for (const Entry& entry : m_entries) {
    if (m_offer[entry.test].service == name || entry.service == name) found.push_back(entry.test);
  }
  return found;
}

TestNames::Tests TestNames::onDevice(const std::string& name) const {
  Tests found;
  for (const Entry& entry : m_entries) {
    if (m_offer[entry.test].device == name || entry.device == name) found.push_back(entry.test);
  }
  return found;
}

TestNames::Tests TestNames::fitting(const std::string& pattern) const {
  Tests found;
  for (const Entry& entry : m_entries) {
    const OfferedTest& test = m_offer[entry.test];
    if (matchesGlob(pattern, test.identifier) || matchesGlob(pattern, entry.identifier) ||
        matchesGlob(pattern, test.service) || matchesGlob(pattern, entry.service)) {
      found.push_back(entry.test);
    }
  }
  return found;
}

std::vector<std::string> TestNames::identifiersOf(const Tests& tests) const {
  std::vector<std::string> identifiers;
  identifiers.reserve(tests.size());
  for (const std::size_t test : tests) identifiers.push_back(m_offer[test].identifier);
  return identifiers;
}

void TestNames::refuseUnknown(const std::string& name) const {
  std::vector<std::string> known;
  for (const Entry& entry : m_entries) known.push_back(m_offer[entry.test].identifier);
  std::set<std::string> others;
  for (const Entry& entry : m_entries) {
    for (const std::string& other : {m_offer[entry.test].service, m_offer[entry.test].device}) {
      if (!other.empty() && others.insert(other).second) known.push_back(other);
    }
  }
  const std::string close = text::suggestions(name, known);
  throw PlanError((isGlob(name) ? "no test fits \"" : "unknown test \"") + name + "\"" +
                  (close.empty() ? "; diags list names the tests" : close));
}

NamedMatch TestNames::find(const std::string& name, bool isEveryDevice) const {
  if (Tests found = withIdentifier(name); !found.empty()) return {std::move(found), true};
  if (name.empty()) refuseUnknown(name);
  if (Tests found = withService(name); !found.empty()) {
    if (found.size() > 1 && !isEveryDevice) {
      throw PlanError("ambiguous test \"" + name + "\"; it may be " +
                      text::quotedList(identifiersOf(found)));
    }
    return {std::move(found), true};
  }
  if (Tests found = onDevice(name); !found.empty()) return {std::move(found), false};
  if (isGlob(name)) {
    if (Tests found = fitting(name); !found.empty()) return {std::move(found), false};
  }
  refuseUnknown(name);
}

bool TestNames::has(const std::string& name) const {
  return !withIdentifier(name).empty() ||
         (!name.empty() && (!withService(name).empty() || !onDevice(name).empty() ||
                            (isGlob(name) && !fitting(name).empty())));
}

}  // namespace engine
