#pragma once

#include <functional>
#include <mutex>
#include <optional>
#include <vector>

#include "providers/disk/finding/Disk.h"

namespace providers::disk {

/// The disks of this machine.
std::vector<Disk> findMachineDisks();

/// The disks for several tests: a listing asks each of them several times, and the machine is
/// looked at once for all. Safe to use from any thread.
class FreshDisks {
 public:
  /// `clock` tells seconds; `freshSeconds` is for how long what was found counts.
  FreshDisks(FindDisks find, std::function<double()> clock, double freshSeconds = 0.5);

  std::vector<Disk> get();

 private:
  const FindDisks m_find;
  const std::function<double()> m_clock;
  const double m_freshSeconds;
  std::mutex m_mutex;
  std::optional<double> m_foundAt;
  std::vector<Disk> m_disks;
};

}  // namespace providers::disk
