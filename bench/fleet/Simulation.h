#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace bench {

/// A fleet that is made up, the same one each time for a seed.
struct FleetShape {
  std::uint32_t machines = 1000;
  std::uint32_t tests = 40;
  std::uint32_t measurements = 20;  ///< of each test
  std::uint64_t seed = 1;
  double slowSpeed = 0.8;       ///< of a slow part, to its peers'
  double noise = 0.05;          ///< of each measurement, as a standard deviation
  double slowShare = 0.005;     ///< of the machines have a slow part
  double failingShare = 0.005;  ///< have a part that fails for no common reason
  double batchShare = 0.3;      ///< of the memory modules of the bad batch fail
  double cutShare = 0.002;      ///< vanish before their run ends
};

/// A part of a machine in a test.
struct TrueSlow {
  std::string machine;
  std::string test;
};

/// What was done to it.
struct FleetTruth {
  std::string badBatch;              ///< the serial numbers of its modules begin so
  std::vector<std::string> failing;  ///< machines
  std::vector<std::string> cut;
  std::vector<TrueSlow> slow;
  std::uint64_t bytes = 0;
  std::uint64_t measurements = 0;
};

/// Writes a stream for each machine into the folder, a hundred in each of its folders.
FleetTruth simulateFleet(const FleetShape& shape, const std::filesystem::path& folder);

}  // namespace bench
