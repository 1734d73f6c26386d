#pragma once

#include <functional>
#include <utility>

#include "providers/disk/reading/BlockSource.h"

namespace providers::disk {

/// A read that does not come back within its time.
struct StuckRead {
  Extent extent;
};

/// A read that nobody waits for any more, as the run is to end.
struct LeftRead {
  Extent extent;
};

/// Reads with nothing else in flight, and waits for the end. Throws `StuckRead`, `LeftRead` and
/// what the source does.
class SingleRead {
 public:
  struct Result {
    std::uint32_t bytes = 0;
    ReadError error = ReadError::None;  ///< `Short` where less came without an error
    double seconds = 0;
  };

  /// `clock` tells seconds; `leaves` whether a read that does not come back is to be waited for no
  /// longer. All outlive the reader.
  SingleRead(BlockSource& source, const std::function<double()>& clock, double stuckSeconds,
             std::function<bool()> leaves)
      : m_source(source),
        m_clock(clock),
        m_stuckSeconds(stuckSeconds),
        m_leaves(std::move(leaves)) {}

  Result read(const Extent& extent) const;

 private:
  BlockSource& m_source;
  const std::function<double()>& m_clock;
  const double m_stuckSeconds;
  const std::function<bool()> m_leaves;
};

}  // namespace providers::disk
