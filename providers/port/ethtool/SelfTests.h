#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "providers/port/ethtool/EthtoolDoor.h"

namespace providers::port {

/// Online tests leave the port at work, offline ones take it out of the network.
enum class TestMode : std::uint8_t { Online, Offline };

/// One of the tests that a driver makes.
struct DriverTest {
  std::string name;         ///< as the driver calls it, printable
  std::uint64_t value = 0;  ///< what it says of the test; 0 unless it found something
};

struct SelfTestReport {
  int problem = 0;  ///< an `errno` when there were no tests; the rest is empty then
  bool failed = false;
  std::vector<DriverTest> tests;
};

/// How many tests the driver has; none also when it does not tell.
std::uint32_t countSelfTests(EthtoolDoor& door, const std::string& port);

/// Has the driver make its tests, which may take some ten seconds.
SelfTestReport runSelfTests(EthtoolDoor& door, const std::string& port, TestMode mode);

}  // namespace providers::port
