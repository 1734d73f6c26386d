#pragma once

#include <cstdint>

#include "diagsrunner/SharedFlag.h"

namespace diagsrunner {

/// Shows on standard output how much of the expected time of a run has passed.
class ProgressDisplay {
 public:
  /// `finished` is raised by whoever runs; it must outlive the display.
  ProgressDisplay(unsigned int expectedMinutes, const SharedFlag& finished);

  /// Shows the percentage until the run is over, then wipes it. There is no time-out.
  void show();

 private:
  void poll(std::int64_t start);
  int percentageAt(std::int64_t start) const;
  void showRise(int percentage);
  static void countUp(int percentage);
  static void wipe();

  const float m_expectedSeconds;
  const SharedFlag& m_finished;
  int m_last = -1;
  bool m_hasShown99 = false;
};

}  // namespace diagsrunner
