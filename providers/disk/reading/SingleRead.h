#pragma once

#include <functional>

#include "providers/disk/reading/BlockSource.h"

namespace providers::disk {

/// A read that does not come back within its time.
struct StuckRead {
  Extent extent;
};

/// Reads with nothing else in flight, and waits for the end. Throws `StuckRead`.
class SingleRead {
 public:
  struct Result {
    std::uint32_t bytes = 0;
    ReadError error = ReadError::None;  ///< `Short` where less came without an error
    double seconds = 0;
  };

  /// `clock` tells seconds. All outlive the reader.
  SingleRead(BlockSource& source, const std::function<double()>& clock, double stuckSeconds)
      : m_source(source), m_clock(clock), m_stuckSeconds(stuckSeconds) {}

  Result read(const Extent& extent) const;

 private:
  BlockSource& m_source;
  const std::function<double()>& m_clock;
  const double m_stuckSeconds;
};

}  // namespace providers::disk
