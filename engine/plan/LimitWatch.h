#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "engine/plan/Limits.h"

namespace engine {

/// Holds the measurements of one test to the limits of its plan as they come. What it keeps does
/// not grow with their number.
class LimitWatch {
 public:
  /// `limits` outlive it; none at all where it is null.
  explicit LimitWatch(const std::vector<Limit>* limits);

  /// The measurement with the limits that hold.
  Measurement take(Measurement measurement);

  bool isBroken() const { return m_broken != 0; }
  /// A text for each measurement that was outside, up to a hundred, and one for all others.
  std::vector<std::string> complaints() const;
  /// Those that no measurement was about.
  const std::vector<Limit>& unmet() const { return m_unmet; }

 private:
  const std::vector<Limit>* m_limits;
  std::vector<Limit> m_unmet;
  std::vector<std::string> m_complaints;
  std::size_t m_broken = 0;
};

}  // namespace engine
