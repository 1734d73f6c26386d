#include <map>
#include <tuple>

#include "fleet/peers/Direction.h"
#include "fleet/peers/Peers.h"

namespace fleet {
namespace {

using Key = std::tuple<std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t>;
using JointKey = std::tuple<std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t>;

template <typename Numbers, typename Of>
std::uint32_t numberOf(Numbers& numbers, const Of& key) {
  return numbers.emplace(key, static_cast<std::uint32_t>(numbers.size())).first->second;
}

}  // namespace

PeerTable::PeerTable(const std::deque<Series>& series, const Names& names) {
  std::map<Key, std::uint32_t> groups;
  std::map<JointKey, std::uint32_t> joints;
  std::map<std::pair<std::uint32_t, std::uint32_t>, std::uint32_t> peers;
  std::vector<std::uint32_t> measured;
  for (const Series& one : series) {
    m_groupOf.push_back(numberOf(groups, Key{one.test, one.measurement, one.unit, one.model}));
    if (m_groupOf.back() == m_worse.size()) {
      m_worse.push_back(fleet::worseOf(names.textOf(one.measurement), names.textOf(one.unit)));
    }
    m_jointOf.push_back(kAlone);
    if (m_worse[m_groupOf.back()] == Worse::kUnknown) continue;
    const std::uint32_t joint =
        numberOf(joints, JointKey{one.test, one.device, one.place, one.model});
    m_jointOf.back() = joint;
    if (joint == m_peersOfJoint.size()) {
      m_peersOfJoint.push_back(numberOf(peers, std::pair(one.test, one.model)));
      measured.push_back(0);
    }
    ++measured[joint];
  }
  for (std::uint32_t& joint : m_jointOf) {
    if (joint != kAlone && measured[joint] < kLeastJoint) joint = kAlone;
  }
}

}  // namespace fleet
