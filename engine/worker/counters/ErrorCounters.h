#pragma once

#include <memory>
#include <string>
#include <vector>

#include "engine/worker/counters/Findings.h"

namespace engine::counters {

/// Watches what the system counts of errors of this machine, those too that were corrected, while
/// a test runs: memory, machine checks, PCI Express, disks and network ports. On Linux alone;
/// elsewhere nothing is read, and nothing found. A process has one.
class ErrorCounters {
 public:
  /// Reads them. `root` is the folder that holds "sys", "proc" and "dev".
  explicit ErrorCounters(const std::string& root);
  ErrorCounters(const ErrorCounters&) = delete;
  ErrorCounters& operator=(const ErrorCounters&) = delete;
  ~ErrorCounters();

  /// Reads them again, and says what rose since. To be called once.
  std::vector<Finding> findings() const;

 private:
  struct Former;
  std::unique_ptr<const Former> m_former;
};

}  // namespace engine::counters
