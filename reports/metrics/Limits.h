#pragma once

#include <cstddef>

namespace reports::metrics {

/// How much one run may put into the database that collects from all machines. Ordinary runs are
/// far below; what is more is counted.
struct Limits {
  std::size_t tests = 1000;
  std::size_t measurements = 10'000;
  std::size_t findings = 1000;
  std::size_t parts = 500;
};

}  // namespace reports::metrics
