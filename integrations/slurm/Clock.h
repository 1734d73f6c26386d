#pragma once

#include <chrono>

#include "integrations/slurm/Duration.h"

namespace slurm {

/// The time since the program began.
class Clock {
 public:
  Duration elapsed() const {
    return std::chrono::duration_cast<Duration>(std::chrono::steady_clock::now() - m_start);
  }

 private:
  std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

}  // namespace slurm
