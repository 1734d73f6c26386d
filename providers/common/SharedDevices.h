#pragma once

#include <functional>
#include <mutex>
#include <optional>
#include <vector>

#include "providers/common/Diagnostic.h"

namespace providers {

/// Devices that several diagnostics of a family test. A listing asks each diagnostic several times;
/// the machine is looked at once for all of them, and again when that is no longer fresh. Safe to
/// use from any thread.
class SharedDevices {
 public:
  using Reader = std::function<std::vector<Device>()>;
  using Clock = std::function<double()>;

  /// `clock` tells seconds from any beginning; `freshSeconds` is for how long what was read counts.
  SharedDevices(Reader read, Clock clock, double freshSeconds = 0.5);

  /// What the reader throws goes on to the caller, and is asked for again by the next one.
  std::vector<Device> get() const;

 private:
  const Reader m_read;
  const Clock m_clock;
  const double m_freshSeconds;
  mutable std::mutex m_mutex;
  mutable std::optional<double> m_readAt;
  mutable std::vector<Device> m_devices;
};

}  // namespace providers
