#pragma once

#include <functional>
#include <mutex>
#include <optional>
#include <utility>

namespace providers {

/// Something that several diagnostics ask for at the same time, and a listing each of them several
/// times: it is looked for once for all, and again when it is no longer fresh. Safe to use from any
/// thread.
template <class Found>
class Fresh {
 public:
  using Look = std::function<Found()>;
  using Clock = std::function<double()>;

  /// `clock` tells seconds from any beginning; `freshSeconds` is for how long what was found
  /// counts.
  Fresh(Look look, Clock clock, double freshSeconds = 0.5)
      : m_look(std::move(look)), m_clock(std::move(clock)), m_freshSeconds(freshSeconds) {}

  Found get() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const double now = m_clock();
    if (!m_foundAt || now - *m_foundAt > m_freshSeconds) {
      m_found = m_look();
      m_foundAt = now;
    }
    return m_found;
  }

 private:
  const Look m_look;
  const Clock m_clock;
  const double m_freshSeconds;
  std::mutex m_mutex;
  std::optional<double> m_foundAt;
  Found m_found;
};

}  // namespace providers
