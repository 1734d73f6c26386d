#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>
#include <unordered_map>
#include <utility>

#include "fleet/peers/Peers.h"

namespace fleet {
namespace {

constexpr std::size_t kLeastValues = 9;    ///< one, and eight peers
constexpr double kFloor = 0.02;            ///< of the median: peers are never closer together
constexpr double kJointLimit = 5;          ///< deviations
constexpr double kLeastDifference = 0.05;  ///< on average, of what is put together

/// What one test measured on one part of a machine.
struct Joint {
  double sum = 0;  ///< of the deviations, positive where it is worse
  double ratios = 0;
  double worst = -1e300;
  std::uint32_t count = 0;
  Outlier farthest;
};

using Joints = std::unordered_map<std::uint64_t, Joint>;
using Begin = std::vector<Reading>::iterator;

std::uint64_t keyOf(std::uint32_t machine, std::uint32_t joint) {
  return (static_cast<std::uint64_t>(machine) << 32U) | joint;
}

class Search {
 public:
  Search(std::vector<Reading>& readings, const PeerTable& table)
      : m_readings(readings), m_table(table) {}

  Outliers run() {
    sortByGroup();
    for (auto begin = m_readings.begin(); begin != m_readings.end();) {
      const std::uint32_t group = m_table.groupOf(begin->series);
      const auto end = std::find_if(begin, m_readings.end(), [&](const Reading& reading) {
        return m_table.groupOf(reading.series) != group;
      });
      if (static_cast<std::size_t>(end - begin) >= kLeastValues) compare(begin, end);
      begin = end;
    }
    compareJoints();
    addSingles();
    std::sort(m_outliers.found.begin(), m_outliers.found.end(),
              [](const Outlier& one, const Outlier& other) {
                return std::tie(other.score, one.machine, one.series) <
                       std::tie(one.score, other.machine, other.series);
              });
    return std::move(m_outliers);
  }

 private:
  void sortByGroup() {
    std::sort(m_readings.begin(), m_readings.end(), [&](const Reading& one, const Reading& other) {
      const std::uint32_t group = m_table.groupOf(one.series);
      const std::uint32_t otherGroup = m_table.groupOf(other.series);
      return std::tie(group, one.machine, one.series, one.value) <
             std::tie(otherGroup, other.machine, other.series, other.value);
    });
  }

  void compare(Begin begin, Begin end) {
    const Worse worse = m_table.worseOf(begin->series);
    m_values.clear();
    for (auto reading = begin; reading != end; ++reading) m_values.push_back(reading->value);
    Spread spread = spreadOf(m_values, worse);
    spread.deviation = std::max(spread.deviation, kFloor * std::abs(spread.median));
    if (spread.deviation <= 0) return;  // nearly all are zero: no measure of a distance
    const auto count = static_cast<std::size_t>(end - begin);
    m_outliers.compared += count;
    const double limit = singleLimit(count, worse);
    for (auto reading = begin; reading != end; ++reading) {
      place(outlierOf(*reading, spread, worse, count), limit);
    }
  }

  static Outlier outlierOf(const Reading& reading, const Spread& spread, Worse worse,
                           std::size_t count) {
    Outlier outlier{reading.machine, reading.series, reading.value};
    outlier.median = spread.median;
    outlier.deviation = spread.deviation;
    const double difference = static_cast<double>(reading.value) - spread.median;
    outlier.score = difference / spread.deviation;
    if (worse == Worse::kLow) outlier.score = -outlier.score;
    if (worse == Worse::kUnknown) outlier.score = std::abs(outlier.score);
    outlier.ratio = spread.median == 0 ? 1 : static_cast<double>(reading.value) / spread.median;
    outlier.peers = static_cast<std::uint32_t>(count - 1);
    return outlier;
  }

  void place(const Outlier& outlier, double limit) {
    if (outlier.score >= limit) m_singles.push_back(outlier);
    const std::uint32_t number = m_table.jointOf(outlier.series);
    if (number == PeerTable::kAlone) return;
    Joint& joint = m_joints[keyOf(outlier.machine, number)];
    joint.sum += outlier.score;
    joint.ratios += speedOf(outlier);
    ++joint.count;
    if (outlier.score <= joint.worst) return;
    joint.worst = outlier.score;
    joint.farthest = outlier;
  }

  /// Those of the same test and model, of which as much was measured.
  void compareJoints() {
    std::map<std::pair<std::uint32_t, std::uint32_t>, std::vector<std::uint64_t>> peers;
    for (const auto& [key, joint] : m_joints) {
      if (joint.count < kLeastJoint) continue;
      const auto number = static_cast<std::uint32_t>(key);
      peers[{m_table.peersOfJoint(number), joint.count}].push_back(key);
    }
    for (const auto& [group, keys] : peers) {
      if (keys.size() >= kLeastValues) compareJoints(keys);
    }
  }

  void compareJoints(const std::vector<std::uint64_t>& keys) {
    m_values.clear();
    for (const std::uint64_t key : keys) {
      m_values.push_back(static_cast<float>(meanOf(m_joints[key])));
    }
    const Spread spread = spreadOf(m_values, Worse::kHigh);
    const double least = 0.5 / std::sqrt(static_cast<double>(m_joints[keys.front()].count));
    const double deviation = std::max(spread.deviation, least);
    for (const std::uint64_t key : keys) {
      Joint& joint = m_joints[key];
      const double score = (meanOf(joint) - spread.median) / deviation;
      const double ratio = joint.ratios / joint.count;
      if (score < kJointLimit * smallness(keys.size())) continue;
      if (std::abs(ratio - 1) < kLeastDifference) continue;
      joint.farthest.score = score;
      joint.farthest.ratio = ratio;
      joint.farthest.peers = static_cast<std::uint32_t>(keys.size() - 1);
      joint.farthest.measurements = joint.count;
      m_outliers.found.push_back(joint.farthest);
      joint.count = 0;  // its single values need not be told
    }
  }

  /// Beside the peers': of a time that is longer, less, so that times and speeds have one mean.
  double speedOf(const Outlier& outlier) const {
    const bool isTime = m_table.worseOf(outlier.series) == Worse::kHigh;
    return isTime && outlier.ratio > 0 ? 1 / outlier.ratio : outlier.ratio;
  }

  static double meanOf(const Joint& joint) { return joint.sum / joint.count; }
  static double smallness(std::size_t values) {
    return singleLimit(values, Worse::kHigh) / singleLimit(1'000'000, Worse::kHigh);
  }

  void addSingles() {
    for (const Outlier& outlier : m_singles) {
      const std::uint32_t number = m_table.jointOf(outlier.series);
      const auto joint = number == PeerTable::kAlone
                             ? m_joints.end()
                             : m_joints.find(keyOf(outlier.machine, number));
      if (joint == m_joints.end() || joint->second.count != 0) m_outliers.found.push_back(outlier);
    }
  }

  std::vector<Reading>& m_readings;
  const PeerTable& m_table;
  Joints m_joints;
  std::vector<Outlier> m_singles;
  std::vector<float> m_values;
  Outliers m_outliers;
};

}  // namespace

double singleLimit(std::size_t values, Worse worse) {
  const double limit = worse == Worse::kUnknown ? 5 : 4;
  const auto count = static_cast<double>(values);
  return limit * (1 + 4 / count + 60 / (count * count));
}

Outliers outliersAmong(std::vector<Reading>& readings, const PeerTable& table) {
  return Search(readings, table).run();
}

}  // namespace fleet
