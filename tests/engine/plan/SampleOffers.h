#pragma once

#include <string>
#include <vector>

#include "engine/Offer.h"

namespace engine {

/// A test of a service on a device, with its estimate in seconds.
inline OfferedTest offered(const std::string& service, const std::string& device,
                           double estimate = 0) {
  OfferedTest test;
  test.identifier = service + ',' + device + ",The " + device;
  test.service = service;
  test.device = device;
  test.element = "The " + device;
  test.estimate = estimate;
  return test;
}

inline OfferedTest destructive(OfferedTest test) {
  test.characteristics.isDestructive = true;
  return test;
}

inline OfferedTest risky(OfferedTest test) {
  test.characteristics.isRisky = true;
  return test;
}

inline OfferedTest interactive(OfferedTest test) {
  test.characteristics.isInteractive = true;
  return test;
}

inline OfferedTest exclusive(OfferedTest test) {
  test.characteristics.isExclusive = true;
  return test;
}

inline OfferedTest ofMemory(OfferedTest test) {
  test.isMemoryTest = true;
  return test;
}

inline OfferedTest with(OfferedTest test, const std::string& type, const std::string& name) {
  test.settings.push_back({name, type, "", ""});
  return test;
}

/// The properties of the standard's settings of memory tests that people use.
inline OfferedTest withMemorySettings(OfferedTest test) {
  test = with(with(std::move(test), "boolean", "HaltOnError"), "uint8", "PercentOfTestCoverage");
  test = with(with(std::move(test), "string[]", "LoopControlParameter"), "uint16[]", "LoopControl");
  return with(with(std::move(test), "uint64", "NumberOfBytes"), "uint32", "Seed");
}

inline std::vector<OfferedTest> smallMachine() {
  return {ofMemory(withMemorySettings(offered("Memory Test", "mem0", 30))),
          offered("Fan Test", "fan0", 5), offered("Fan Test", "fan1", 5),
          destructive(offered("Disk Write Test", "disk0", 600)),
          offered("Disk Read Test", "disk0", 60)};
}

}  // namespace engine
