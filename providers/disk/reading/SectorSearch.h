#pragma once

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include "providers/disk/reading/SingleRead.h"

namespace providers::disk {

/// Blocks that could not be read, at all or at first.
struct ReadFault {
  std::uint64_t firstBlock = 0;  ///< logical
  std::uint64_t blocks = 0;
  ReadError error = ReadError::None;
  bool hard = false;    ///< they never came back
  bool located = true;  ///< each of the blocks, else somewhere among them
  bool settled = true;  ///< else the search was ended before they had been read again as planned
};

/// Finds the blocks for which a read failed: by halves, down to the logical block, which gets more
/// chances then.
class SectorSearch {
 public:
  /// With so many reads, or so much time, in all searches together, extents are not halved any
  /// more: a dying drive would take days.
  struct Limits {
    std::uint64_t reads = 8192;
    double seconds = 60;
    unsigned retries = 3;  ///< of a block
  };

  /// `goesOn` is asked between the reads. All outlive the search.
  SectorSearch(const SingleRead& reader, std::uint32_t logicalBlock, const Limits& limits,
               std::function<bool()> goesOn)
      : m_reader(reader), m_block(logicalBlock), m_limits(limits), m_goesOn(std::move(goesOn)) {}

  /// The faults of an extent whose read has failed like this, in order. There is at least one:
  /// where each part comes back, a soft one somewhere in the extent. A drive that goes away ends
  /// the search, with `gone()` and what was found until then. What could not be read again before
  /// the search had to end is no settled fault.
  std::vector<ReadFault> search(const Extent& failed, ReadError error);
  /// The fault of an extent whose read has failed, and that nobody looks into.
  ReadFault unsettled(const Extent& failed, ReadError error) const;

  bool gone() const { return m_gone; }
  /// What was found before a read of the search threw.
  std::vector<ReadFault> found() { return std::move(m_faults); }

 private:
  void halve(const Extent& extent, ReadError error);
  void retryBlock(const Extent& block, ReadError error);
  void readWhole(const Extent& extent, ReadError error);
  ReadError read(const Extent& extent);
  bool hasMeans() const;
  void add(const ReadFault& fault);
  ReadFault faultOf(const Extent& extent, ReadError error, bool hard, bool located) const;

  const SingleRead& m_reader;
  const std::uint64_t m_block;
  const Limits m_limits;
  const std::function<bool()> m_goesOn;
  std::vector<ReadFault> m_faults;
  std::uint64_t m_reads = 0;
  double m_seconds = 0;
  bool m_gone = false;
};

}  // namespace providers::disk
