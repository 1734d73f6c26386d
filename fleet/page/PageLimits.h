#pragma once

#include <cstddef>

namespace fleet {

/// How much of an answer its page shows. What is left out is counted, and the page says so; every
/// machine and what each test came to on it is there always.
struct PageLimits {
  std::size_t nameBytes = 200;  ///< of a name, a model and the like
  std::size_t textBytes = 400;  ///< of what a finding says
  std::size_t groups = 50;      ///< that stand out
  std::size_t rows = 100;       ///< of slow parts, silent machines, failed tests, complaints, each
  std::size_t notes = 20;       ///< findings and slow parts that a machine's row opens to
  std::size_t noteBytes = 8U << 20U;  ///< of these together
};

}  // namespace fleet
