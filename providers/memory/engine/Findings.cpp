#include "providers/memory/engine/Findings.h"

#include <algorithm>

namespace providers::memory {

/// The page's place; null where there is no room for another page.
FaultyPage* Findings::pageOf(std::uint64_t offset) {
  const std::uint64_t page = offset - offset % kPageBytes;
  const auto place =
      std::lower_bound(m_pages.begin(), m_pages.end(), page,
                       [](const FaultyPage& one, std::uint64_t at) { return one.offset < at; });
  if (place != m_pages.end() && place->offset == page) return &*place;
  if (m_pages.size() == kKeptPages) return nullptr;
  FaultyPage added;
  added.offset = page;
  return &*m_pages.insert(place, added);
}

void Findings::add(const MemoryFault& fault) {
  const std::uint64_t bits = fault.expected ^ fault.actual;
  ++m_errors;
  m_bits |= bits;
  FaultyPage* const page = pageOf(fault.offset);
  if (!page) return;
  if (page->errors++ == 0) page->first = fault;
  page->bits |= bits;
}

void Findings::add(const Findings& others) {
  m_errors += others.m_errors;
  m_bits |= others.m_bits;
  for (const FaultyPage& other : others.m_pages) {
    FaultyPage* const page = pageOf(other.offset);
    if (!page) continue;  // of later ones this may be known
    if (page->errors == 0 || other.first.sweep < page->first.sweep) page->first = other.first;
    page->errors += other.errors;
    page->bits |= other.bits;
  }
}

void Findings::tell(MemoryReport& report) const {
  report.errors = m_errors;
  report.bits = m_bits;
  report.pages = m_pages;
}

}  // namespace providers::memory
