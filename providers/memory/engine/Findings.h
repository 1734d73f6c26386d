#pragma once

#include <cstdint>
#include <vector>

#include "providers/memory/engine/MemoryReport.h"

namespace providers::memory {

/// The errors that were found, page by page; of the first pages of each thread all is kept.
class Findings {
 public:
  static constexpr std::size_t kKeptPages = 16;

  void add(const MemoryFault& fault);
  void add(const Findings& others);
  void tell(MemoryReport& report) const;
  std::uint64_t errors() const { return m_errors; }

 private:
  FaultyPage* pageOf(std::uint64_t offset);

  std::vector<FaultyPage> m_pages;  ///< ordered by their place
  std::uint64_t m_errors = 0;
  std::uint64_t m_bits = 0;
};

}  // namespace providers::memory
