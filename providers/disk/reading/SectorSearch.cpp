#include "providers/disk/reading/SectorSearch.h"

namespace providers::disk {

std::vector<ReadFault> SectorSearch::search(const Extent& failed, ReadError error) {
  m_faults.clear();
  if (hasMeans())
    halve(failed, error);
  else
    readWhole(failed, error);
  if (m_faults.empty() && !m_gone) add(faultOf(failed, error, false, failed.bytes == m_block));
  return std::move(m_faults);
}

/// The extent has failed; its halves are read. Once the means are used up, it counts as a whole.
void SectorSearch::halve(const Extent& extent, ReadError error) {
  if (extent.bytes <= m_block) return retryBlock(extent, error);
  if (!hasMeans()) return add(faultOf(extent, error, true, false));
  const std::uint64_t blocks = extent.bytes / m_block;
  const auto first = static_cast<std::uint32_t>(blocks / 2 * m_block);
  for (const Extent& half :
       {Extent{extent.offset, first}, Extent{extent.offset + first, extent.bytes - first}}) {
    if (m_gone) return;
    if (!m_goesOn()) {
      add(unsettled(half, error));
      continue;
    }
    const ReadError found = read(half);
    if (found != ReadError::None && !m_gone) halve(half, found);
  }
}

void SectorSearch::retryBlock(const Extent& block, ReadError error) {
  for (unsigned i = 0; i < m_limits.retries; ++i) {
    if (!m_goesOn()) return add(unsettled(block, error));
    const ReadError found = read(block);
    if (m_gone) return;
    if (found == ReadError::None) return add(faultOf(block, error, false, true));
  }
  add(faultOf(block, error, true, true));
}

/// All that is done for what fails when too much has failed before.
void SectorSearch::readWhole(const Extent& extent, ReadError error) {
  if (!m_goesOn()) return add(unsettled(extent, error));
  const bool hard = read(extent) != ReadError::None;
  if (hard && !m_gone) add(faultOf(extent, error, true, extent.bytes == m_block));
}

ReadError SectorSearch::read(const Extent& extent) {
  ++m_reads;
  const SingleRead::Result result = m_reader.read(extent);
  m_seconds += result.seconds;
  m_gone = m_gone || result.error == ReadError::Gone;
  return result.error;
}

bool SectorSearch::hasMeans() const {
  return m_reads < m_limits.reads && m_seconds < m_limits.seconds;
}

ReadFault SectorSearch::faultOf(const Extent& extent, ReadError error, bool hard,
                                bool located) const {
  return {extent.offset / m_block, extent.bytes / m_block, error, hard, located, true};
}

ReadFault SectorSearch::unsettled(const Extent& failed, ReadError error) const {
  ReadFault fault = faultOf(failed, error, false, failed.bytes == m_block);
  fault.settled = false;
  return fault;
}

/// Neighbours with the same fault are one.
void SectorSearch::add(const ReadFault& fault) {
  if (!m_faults.empty()) {
    ReadFault& last = m_faults.back();
    const bool same = last.hard == fault.hard && last.located == fault.located &&
                      last.settled == fault.settled && last.error == fault.error &&
                      last.firstBlock + last.blocks == fault.firstBlock;
    if (same) {
      last.blocks += fault.blocks;
      return;
    }
  }
  m_faults.push_back(fault);
}

}  // namespace providers::disk
