#pragma once

#include <functional>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "providers/common/Diagnostic.h"

namespace providers {

/// What several diagnostics of a family read of the machine. A listing asks each diagnostic several
/// times; the machine is looked at once for all of them, and again when that is no longer fresh.
/// Safe to use from any thread.
template <typename Value>
class SharedReading {
 public:
  using Reader = std::function<Value()>;
  using Clock = std::function<double()>;

  /// `clock` tells seconds from any beginning; `freshSeconds` is for how long what was read counts.
  SharedReading(Reader read, Clock clock, double freshSeconds = 0.5)
      : m_read(std::move(read)), m_clock(std::move(clock)), m_freshSeconds(freshSeconds) {}

  /// What the reader throws goes on to the caller, and is asked for again by the next one.
  Value get() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const double now = m_clock();
    if (!m_value || now - m_readAt >= m_freshSeconds) {
      m_value.reset();
      m_value = m_read();
      m_readAt = now;
    }
    return *m_value;
  }

 private:
  const Reader m_read;
  const Clock m_clock;
  const double m_freshSeconds;
  mutable std::mutex m_mutex;
  mutable double m_readAt = 0;
  mutable std::optional<Value> m_value;
};

/// Devices that several diagnostics test.
using SharedDevices = SharedReading<std::vector<Device>>;

}  // namespace providers
