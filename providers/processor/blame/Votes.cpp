#include "providers/processor/blame/Votes.h"

#include "providers/processor/operations/KnownAnswers.h"

namespace providers {

void Votes::add(const Words& results, unsigned weight) {
  Party& party = m_parties[digestOf(results)];
  party.results = results;
  party.votes += weight;
}

const Words* Votes::winner() const {
  const Words* best = nullptr;
  unsigned most = 0;
  for (const auto& [digest, party] : m_parties) {
    if (party.votes < most) continue;
    best = party.votes > most ? &party.results : nullptr;
    most = party.votes;
  }
  return best;
}

const Words* Votes::find(std::uint64_t digest) const {
  const auto found = m_parties.find(digest);
  return found == m_parties.end() ? nullptr : &found->second.results;
}

}  // namespace providers
