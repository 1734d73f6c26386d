#pragma once

#include <cstdint>
#include <set>

namespace reports {

/// Numbers from 1 that have been seen. Where they come roughly in their order, as those of tests
/// do, it stays small however many there are.
class IdSet {
 public:
  bool has(std::uint64_t id) const { return id <= m_all || m_above.count(id) != 0; }

  void add(std::uint64_t id) {
    if (id > m_all) m_above.insert(id);
    while (!m_above.empty() && *m_above.begin() == m_all + 1) {
      ++m_all;
      m_above.erase(m_above.begin());
    }
  }

 private:
  std::uint64_t m_all = 0;  ///< each up to it has been seen
  std::set<std::uint64_t> m_above;
};

}  // namespace reports
