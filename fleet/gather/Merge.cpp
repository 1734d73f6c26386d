#include "fleet/gather/Merge.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace fleet {
namespace {

using Owners = std::unordered_set<std::uint64_t>;

std::uint64_t ownerIn(const Standing& standing) { return ownerOf(standing.test, standing.device); }

std::uint64_t ownerIn(const StreamFinding& finding) {
  return ownerOf(finding.finding.test, finding.device);
}

bool goesBefore(const Standing& one, const Standing& other, Precedence precedence) {
  if (precedence == Precedence::kWorse && one.verdict != other.verdict) {
    return one.verdict > other.verdict;
  }
  return other.age < one.age;
}

/// Takes over what counts. Whose it is.
Owners takeStandings(Member& member, std::vector<Standing>&& standings, Precedence precedence) {
  std::unordered_map<std::uint64_t, std::size_t> places;
  for (std::size_t i = 0; i < member.standings.size(); ++i) {
    places.emplace(ownerIn(member.standings[i]), i);
  }
  Owners taken;
  for (const Standing& standing : standings) {
    const auto [place, isNew] = places.emplace(ownerIn(standing), member.standings.size());
    if (isNew) {
      member.standings.push_back(standing);
    } else if (goesBefore(standing, member.standings[place->second], precedence)) {
      member.standings[place->second] = standing;
    } else {
      continue;
    }
    taken.insert(ownerIn(standing));
  }
  return taken;
}

/// The values of those that are among the owners, or of the others.
std::vector<Value> kept(const std::vector<Value>& values, const Owners& owners, bool isAmong,
                        const Tables& tables) {
  const std::vector<std::uint64_t> owner = tables.ownersOf(values);
  std::vector<Value> result;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if ((owners.count(owner[i]) != 0) == isAmong) result.push_back(values[i]);
  }
  return result;
}

void takeValues(Member& member, const std::vector<Value>& values, const Owners& taken,
                const Tables& tables) {
  std::vector<Value> all = kept(member.values, taken, false, tables);
  const std::vector<Value> fresh = kept(values, taken, true, tables);
  all.insert(all.end(), fresh.begin(), fresh.end());
  all.shrink_to_fit();
  member.values = std::move(all);
}

void takeFindings(Member& member, std::vector<StreamFinding>&& findings, const Owners& taken) {
  std::vector<StreamFinding>& old = member.findings;
  old.erase(std::remove_if(
                old.begin(), old.end(),
                [&](const StreamFinding& finding) { return taken.count(ownerIn(finding)) != 0; }),
            old.end());
  std::copy_if(std::make_move_iterator(findings.begin()), std::make_move_iterator(findings.end()),
               std::back_inserter(old),
               [&](const StreamFinding& finding) { return taken.count(ownerIn(finding)) != 0; });
}

}  // namespace

void merge(Member& member, Results&& results, Precedence precedence, const Tables& tables) {
  if (member.standings.empty()) {
    member.standings = std::move(results.standings);
    member.values = std::move(results.values);
    member.findings = std::move(results.findings);
    return;
  }
  const Owners taken = takeStandings(member, std::move(results.standings), precedence);
  takeValues(member, results.values, taken, tables);
  takeFindings(member, std::move(results.findings), taken);
}

}  // namespace fleet
