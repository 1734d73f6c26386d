#include "fleet/groups/Batches.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <utility>

#include "fleet/groups/Chance.h"

namespace fleet {
namespace {

constexpr std::size_t kLongestPrefix = 64;

/// Part of the sorted numbers; those with one prefix lie side by side.
struct Range {
  std::size_t begin = 0;
  std::size_t end = 0;
  bool operator<(const Range& other) const {
    return std::pair(begin, end) < std::pair(other.begin, other.end);
  }
};

using Prefixes = std::map<Range, std::string>;

bool beginsWith(const std::string& text, std::string_view prefix) {
  return std::string_view(text).substr(0, prefix.size()) == prefix;
}

Range rangeOf(const std::vector<Numbered>& things, Range within, std::string_view prefix) {
  const auto first = things.begin();
  const auto begin = std::lower_bound(
      first + static_cast<std::ptrdiff_t>(within.begin),
      first + static_cast<std::ptrdiff_t>(within.end), prefix,
      [](const Numbered& thing, std::string_view text) { return thing.serial < text; });
  const auto end =
      std::partition_point(begin, first + static_cast<std::ptrdiff_t>(within.end),
                           [&](const Numbered& thing) { return beginsWith(thing.serial, prefix); });
  return {static_cast<std::size_t>(begin - first), static_cast<std::size_t>(end - first)};
}

/// Of several prefixes of the same numbers, the longest; none of all of them, and none of one.
Prefixes prefixesOf(const std::vector<Numbered>& things) {
  Prefixes prefixes;
  for (const Numbered& thing : things) {
    if (!thing.isFailing) continue;
    Range within{0, things.size()};
    const std::size_t longest = std::min(kLongestPrefix, thing.serial.size());
    for (std::size_t length = 1; length <= longest; ++length) {
      const std::string_view prefix(thing.serial.data(), length);
      within = rangeOf(things, within, prefix);
      if (within.end - within.begin < 2) break;
      std::string& kept = prefixes[within];
      if (kept.size() < length) kept = prefix;
    }
  }
  prefixes.erase(Range{0, things.size()});
  return prefixes;
}

class Find {
 public:
  explicit Find(std::vector<Numbered>& things) : m_things(things) {
    m_failing.push_back(0);
    for (const Numbered& thing : things) {
      m_failing.push_back(m_failing.back() + (thing.isFailing ? 1U : 0U));
    }
  }

  std::vector<Batch> run() {
    const Prefixes prefixes = prefixesOf(m_things);
    std::vector<std::pair<double, Range>> clear;
    for (const auto& [range, prefix] : prefixes) {
      if (!standsOut(shareOf(range), restOf(range), prefixes.size())) continue;
      clear.emplace_back(chanceOf(shareOf(range), restOf(range)), range);
    }
    std::sort(clear.begin(), clear.end());
    std::vector<Batch> batches;
    std::vector<Range> told;
    for (const auto& [chance, range] : clear) {
      if (isTold(told, range)) continue;
      told.push_back(range);
      batches.push_back(batchOf(range, prefixes.at(range), chance));
    }
    return batches;
  }

 private:
  std::uint32_t failingIn(Range range) const {
    return m_failing[range.end] - m_failing[range.begin];
  }
  Share shareOf(Range range) const {
    return {failingIn(range), static_cast<std::uint32_t>(range.end - range.begin)};
  }
  Share restOf(Range range) const {
    const Share share = shareOf(range);
    return {m_failing.back() - share.failing,
            static_cast<std::uint32_t>(m_things.size()) - share.all};
  }

  /// Ranges of prefixes lie in each other or apart.
  static bool isTold(const std::vector<Range>& told, Range range) {
    return std::any_of(told.begin(), told.end(), [&](Range other) {
      return range.begin < other.end && other.begin < range.end;
    });
  }

  Batch batchOf(Range range, const std::string& prefix, double chance) const {
    const Share share = shareOf(range);
    const Share rest = restOf(range);
    Batch batch{prefix, share.failing, share.all, rest.failing, rest.all, chance, {}};
    for (std::size_t i = range.begin; i < range.end; ++i) {
      if (m_things[i].isFailing) batch.members.push_back(m_things[i].index);
    }
    return batch;
  }

  std::vector<Numbered>& m_things;
  std::vector<std::uint32_t> m_failing;  ///< before each of them
};

}  // namespace

std::vector<Batch> batchesAmong(std::vector<Numbered> things) {
  std::sort(things.begin(), things.end(), [](const Numbered& one, const Numbered& other) {
    return std::pair(std::string_view(one.serial), one.index) <
           std::pair(std::string_view(other.serial), other.index);
  });
  return Find(things).run();
}

}  // namespace fleet
