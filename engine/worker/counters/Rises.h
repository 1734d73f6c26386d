#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engine/worker/counters/Reading.h"

namespace engine::counters {

/// One number that is higher than it was.
struct Rise {
  std::string file;
  std::string name;  ///< of the number among those of the file
  std::uint64_t from = 0;
  std::uint64_t to = 0;
};

/// What rose of one part.
struct RisenPart {
  Place place = Place::kMemory;
  std::string part;
  std::vector<Rise> rises;
};

/// What is in both readings and higher in the later one. A counter that is gone, is new or is lower
/// says nothing: its device went, came or began anew. What a memory controller counts of all of its
/// modules is left out as far as the modules tell it themselves.
std::vector<RisenPart> risesBetween(const Reading& before, const Reading& after);

}  // namespace engine::counters
