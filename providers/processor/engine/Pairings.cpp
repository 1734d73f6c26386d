#include "providers/processor/engine/Pairings.h"

#include <algorithm>
#include <optional>

namespace providers {

std::vector<Pairing> pairings(const std::vector<unsigned>& cpus) {
  // The first stays, the others go round the table (Schurig, 1886).
  std::vector<std::optional<unsigned>> seats(cpus.begin(), cpus.end());
  if (seats.size() % 2 != 0) seats.emplace_back();
  std::vector<Pairing> rounds;
  for (std::size_t round = 1; round < seats.size(); ++round) {
    Pairing pairs;
    for (std::size_t i = 0; i < seats.size() / 2; ++i) {
      const auto left = seats[i], right = seats[seats.size() - 1 - i];
      if (left && right) pairs.emplace_back(*left, *right);
    }
    rounds.push_back(pairs);
    std::rotate(seats.begin() + 1, seats.end() - 1, seats.end());
  }
  return rounds;
}

}  // namespace providers
