#include <cstdio>

#include "engine/events/EventLine.h"
#include "tests/engine/events/SampleEvents.h"

/// Writes the line of each sample event to standard output.
int main() {
  for (const engine::Sample& sample : engine::sampleEvents()) {
    std::puts(engine::lineOf(sample.event).c_str());
  }
}
