#include <algorithm>
#include <unordered_map>
#include <utility>

#include "fleet/conclude/Conclude.h"
#include "fleet/peers/Peers.h"

namespace fleet {
namespace {

/// The tests that ended well: what others measured tells nothing of a part's speed.
class Sound {
 public:
  explicit Sound(const Member& member) {
    for (const Standing& standing : member.standings) {
      if (standing.verdict == Verdict::kPassed || standing.verdict == Verdict::kWarned) {
        m_owners.push_back(ownerOf(standing.test, standing.device));
      }
    }
    std::sort(m_owners.begin(), m_owners.end());
  }
  bool has(const Series& series) const {
    return std::binary_search(m_owners.begin(), m_owners.end(),
                              ownerOf(series.test, series.device));
  }

 private:
  std::vector<std::uint64_t> m_owners;
};

std::vector<Reading> takeReadings(std::vector<Member>& members, const Tables& tables) {
  std::size_t count = 0;
  for (const Member& member : members) count += member.values.size();
  std::vector<Reading> readings;
  readings.reserve(count);
  for (std::uint32_t i = 0; i < members.size(); ++i) {
    const Sound sound(members[i]);
    for (const Value& value : members[i].values) {
      if (sound.has(tables.series()[value.series])) {
        readings.push_back({i, value.series, value.value});
      }
    }
    members[i].values = {};
  }
  return readings;
}

/// The part's serial number, where the place is one part's alone.
std::string serialOf(const Member& member, const Series& series, const Names& names) {
  std::uint32_t serial = 0;
  for (const PartNumbers& part : member.parts) {
    const bool isIt = (part.place == 0 ? part.name : part.place) == series.place;
    if (!isIt || part.model != series.model) continue;
    if (serial != 0) return {};
    serial = part.serial;
  }
  return names.textOf(serial);
}

Slow slowFrom(const Outlier& outlier, const Member& member, const Series& series,
              const Names& names, Worse worse) {
  Slow slow;
  slow.machine = outlier.machine;
  slow.unlike = worse == Worse::kUnknown ? Unlike::kDifferent : Unlike::kSlow;
  slow.device = names.textOf(series.place == 0 ? series.device : series.place);
  slow.model = names.textOf(series.model);
  slow.serial = serialOf(member, series, names);
  slow.measurement = names.textOf(series.measurement);
  slow.unit = names.textOf(series.unit);
  slow.value = static_cast<double>(outlier.value);
  slow.median = outlier.median;
  slow.ratio = outlier.ratio;
  slow.deviation = outlier.deviation;
  slow.score = outlier.score;
  slow.peers = outlier.peers;
  slow.measurements = outlier.measurements;
  return slow;
}

}  // namespace

void concludeSlow(Answer& answer, std::vector<Member>& members, const Tables& tables) {
  std::vector<Reading> readings = takeReadings(members, tables);
  const PeerTable table(tables.series(), tables.names);
  const Outliers outliers = outliersAmong(readings, table);
  answer.totals.series = outliers.compared;
  std::unordered_map<std::string, std::uint32_t> tests;
  for (std::uint32_t i = 0; i < answer.tests.size(); ++i) tests[answer.tests[i].name] = i;
  for (const Outlier& outlier : outliers.found) {
    const Series& series = tables.series()[outlier.series];
    answer.slow.push_back(slowFrom(outlier, members[outlier.machine], series, tables.names,
                                   table.worseOf(outlier.series)));
    answer.slow.back().test = tests.at(tables.names.textOf(series.test));
  }
}

}  // namespace fleet
