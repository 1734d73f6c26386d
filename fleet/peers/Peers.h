#pragma once

#include <cstdint>
#include <deque>
#include <vector>

#include "fleet/Answer.h"
#include "fleet/peers/Robust.h"
#include "fleet/reading/Series.h"

namespace fleet {

/// Of fewer measurements of a part in a test, each stands for itself.
constexpr std::uint32_t kLeastJoint = 4;

/// One value of a machine.
struct Reading {
  std::uint32_t machine = 0;
  std::uint32_t series = 0;
  float value = 0;
};

/// What each series belongs to: its peers are those of the same test, measurement, unit and model;
/// what is put together is what one test measures on one part, on the side that is known to be
/// worse.
class PeerTable {
 public:
  static constexpr std::uint32_t kAlone = 0xFFFFFFFF;

  PeerTable(const std::deque<Series>& series, const Names& names);

  std::uint32_t groupOf(std::uint32_t series) const { return m_groupOf[series]; }
  Worse worseOf(std::uint32_t series) const { return m_worse[m_groupOf[series]]; }
  /// The part in the test; alone where too little is measured of it.
  std::uint32_t jointOf(std::uint32_t series) const { return m_jointOf[series]; }
  /// Which joints are peers.
  std::uint32_t peersOfJoint(std::uint32_t joint) const { return m_peersOfJoint[joint]; }

 private:
  std::vector<std::uint32_t> m_groupOf;
  std::vector<Worse> m_worse;  ///< by group
  std::vector<std::uint32_t> m_jointOf;
  std::vector<std::uint32_t> m_peersOfJoint;
};

/// How far off, in robust standard deviations, a value of so many has to be to stand out. With few
/// peers their deviation is not known well.
double singleLimit(std::size_t values, Worse worse);

/// A value or joint that stands out.
struct Outlier {
  std::uint32_t machine = 0;
  std::uint32_t series = 0;  ///< of a joint, the one that is farthest off
  float value = 0;
  double median = 0;
  double deviation = 0;
  double score = 0;
  double ratio = 1;
  std::uint32_t peers = 0;
  std::uint32_t measurements = 1;
};

/// What is held against peers, and what stands out among it, the farthest off first.
struct Outliers {
  std::vector<Outlier> found;
  std::uint64_t compared = 0;
};

/// Puts the readings into another order.
Outliers outliersAmong(std::vector<Reading>& readings, const PeerTable& table);

}  // namespace fleet
