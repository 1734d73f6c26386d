#pragma once

#include <string>
#include <vector>

#include "engine/events/Event.h"

namespace engine {

/// An event and its line.
struct Sample {
  const char* name;
  Event event;
  std::string line;
};

/// At least one of each kind, with all members and with as few as there may be.
const std::vector<Sample>& sampleEvents();

}  // namespace engine
