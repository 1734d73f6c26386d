#pragma once

#include <functional>
#include <string>
#include <vector>

#include "providers/common/Findings.h"
#include "providers/pcie/services/LinkWatch.h"

namespace providers::pcie {

/// How a device is called, by its link: "0000:02:00.0 (Intel Corporation I210, slot 3)".
using NameOf = std::function<std::string(const Link&)>;

/// What is wrong: links first, then what was counted.
std::vector<Finding> findingsOf(const LinkWatch& watch, const NameOf& nameOf);

/// How many links could not be judged, as the system does not tell their width.
std::size_t unknownLinks(const LinkWatch& watch);

/// Whether the device goes slower by itself when it has nothing to do, as graphics and other
/// accelerators do.
bool savesPower(const Link& link);

/// Below what both ends can; not of links that are not told.
bool isNarrow(const Link& link);
bool isSlow(const Link& link);

/// "8.0 GT/s", of tenths.
std::string speedText(unsigned tenths);

/// "8.0 GT/s, 4 lanes"
std::string linkText(const LinkSide& side);

struct ErrorRise {
  std::uint64_t corrected = 0;
  std::uint64_t uncorrected = 0;
};

/// How much was counted between the two times, of all devices.
ErrorRise riseOf(const AllErrors& before, const AllErrors& after);

}  // namespace providers::pcie
