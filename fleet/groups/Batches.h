#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace fleet {

/// A thing with a serial number; `index` is the caller's.
struct Numbered {
  std::string serial;
  bool isFailing = false;
  std::uint32_t index = 0;
};

/// Serial numbers with the same beginning.
struct Batch {
  std::string prefix;
  std::uint32_t failing = 0;
  std::uint32_t all = 0;
  std::uint32_t restFailing = 0;
  std::uint32_t rest = 0;
  double chance = 1;
  std::vector<std::uint32_t> members;  ///< the indexes of the failing ones
};

/// The batches among things of one kind that fail clearly more often than the others, the least
/// likely to be chance first. Of those that lie in each other, the clearest one is told.
std::vector<Batch> batchesAmong(std::vector<Numbered> things);

}  // namespace fleet
