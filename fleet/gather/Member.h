#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "fleet/reading/StreamResult.h"

namespace fleet {

/// When a stream began, and what decides where two began at once: a whole one is newer than one
/// that was cut off, and the rest is chance that is the same each time.
struct Age {
  std::int64_t began = 0;  ///< in microseconds since 1970
  bool isWhole = false;
  std::uint64_t file = 0;  ///< its name's hash

  bool operator<(const Age& other) const;
};

/// The latest that is known of a test on a device of a machine.
struct Standing {
  std::uint32_t test = 0;
  std::uint32_t device = 0;
  Verdict verdict = Verdict::kNone;
  Age age;
};

/// A part of a machine, its texts by number.
struct PartNumbers {
  std::uint32_t name = 0;
  std::uint32_t place = 0;
  std::uint32_t kind = 0;
  std::uint32_t model = 0;
  std::uint32_t serial = 0;
};

/// What is known of one machine.
struct Member {
  std::string name;
  std::string serial;
  std::string model;
  std::string firmware;
  std::string source;
  std::string lastOpen;
  Age age;
  bool hasEnded = false;
  bool isClockTrusted = true;
  std::uint32_t streams = 0;
  Verdict run = Verdict::kNone;
  std::vector<PartNumbers> parts;
  std::vector<Standing> standings;  ///< by test and device
  std::vector<Value> values;
  std::vector<StreamFinding> findings;
  std::vector<std::pair<std::int64_t, std::string>> runs;  ///< the last few: when and which file
};

}  // namespace fleet
