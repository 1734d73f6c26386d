#pragma once

#include <algorithm>
#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "framework/TInmemInstance.h"

namespace vorcore {

/// Instances by number, in the order of their numbers, side by side: enumerating the many instances
/// of a class is then bound by reading them alone. What is taken out leaves a gap; the gaps are
/// closed when they prevail, so that taking all of them out one by one stays cheap.
class InstanceList {
 public:
  using InstancePtr = boost::shared_ptr<const NZELVOR20::TInmemInstance>;

  /// `number` is greater than all the numbers before.
  void add(std::uint64_t number, InstancePtr instance) {
    m_entries.emplace_back(number, std::move(instance));
  }
  /// There has to be one of this number.
  void replace(std::uint64_t number, InstancePtr instance) {
    find(number)->second = std::move(instance);
  }
  /// There has to be one of this number.
  void erase(std::uint64_t number) {
    find(number)->second.reset();
    if (2 * ++m_gaps <= m_entries.size()) return;
    m_entries.erase(std::remove_if(m_entries.begin(), m_entries.end(), isGap), m_entries.end());
    m_gaps = 0;
  }
  void clear() noexcept {
    m_entries.clear();
    m_gaps = 0;
  }
  std::size_t size() const noexcept { return m_entries.size() - m_gaps; }

  /// Calls `visit(number, instance)` for each.
  template <typename Visit>
  void forEach(Visit visit) const {
    for (const Entry& entry : m_entries) {
      if (!isGap(entry)) visit(entry.first, entry.second);
    }
  }

 private:
  using Entry = std::pair<std::uint64_t, InstancePtr>;

  static bool isGap(const Entry& entry) noexcept { return !entry.second; }

  std::vector<Entry>::iterator find(std::uint64_t number) {
    return std::lower_bound(
        m_entries.begin(), m_entries.end(), number,
        [](const Entry& entry, std::uint64_t wanted) { return entry.first < wanted; });
  }

  std::vector<Entry> m_entries;
  std::size_t m_gaps = 0;
};

}  // namespace vorcore
