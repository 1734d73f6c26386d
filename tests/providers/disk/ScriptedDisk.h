#pragma once

#include <algorithm>
#include <cstdint>
#include <deque>
#include <limits>
#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <utility>
#include <vector>

#include "providers/disk/reading/BlockSource.h"

namespace providers::disk {

/// A disk that fails as scripted, with a clock of its own that goes on while it reads. Places are
/// logical blocks.
class ScriptedDisk {
 private:
  static std::uint64_t end(const Extent& extent) { return (extent.offset + extent.bytes) / kBlock; }

  template <class Places>
  static auto hit(Places& places, const Extent& extent) {
    const auto first = places.lower_bound(extent.offset / kBlock);
    return first != places.end() && keyOf(*first) < end(extent) ? first : places.end();
  }
  static std::uint64_t keyOf(std::uint64_t block) { return block; }
  template <class Value>
  static std::uint64_t keyOf(const std::pair<const std::uint64_t, Value>& entry) {
    return entry.first;
  }

 public:
  static constexpr std::uint32_t kBlock = 512;
  static constexpr unsigned kAlways = std::numeric_limits<unsigned>::max();

  explicit ScriptedDisk(std::uint64_t blocks = 65536) : m_blocks(blocks) {}

  std::uint64_t bytes() const { return m_blocks * kBlock; }
  /// Reads of these blocks fail so often.
  ScriptedDisk& bad(std::uint64_t first, std::uint64_t count = 1, unsigned times = kAlways,
                    ReadError error = ReadError::Medium) {
    for (std::uint64_t block = first; block < first + count; ++block) m_bad[block] = {times, error};
    return *this;
  }
  /// The first read that has the block ends before it.
  ScriptedDisk& cutOnce(std::uint64_t block) {
    m_cut.insert(block);
    return *this;
  }
  /// Reads that have the block take so long, so often.
  ScriptedDisk& slow(std::uint64_t block, double seconds, unsigned times = kAlways) {
    m_slow[block] = {times, seconds};
    return *this;
  }
  /// Nothing comes back after so many reads, but this error; once a read of the block never
  /// returns.
  ScriptedDisk& goneAfter(std::uint64_t reads, ReadError error = ReadError::Gone) {
    m_goneAfter = reads;
    m_goneError = error;
    return *this;
  }
  ScriptedDisk& stuckAt(std::uint64_t block) {
    m_stuck.insert(block);
    return *this;
  }

  /// After so many reads it has no block from that one on.
  ScriptedDisk& shrinksAfter(std::uint64_t reads, std::uint64_t block) {
    m_shrinksAfter = reads;
    m_shrunkBlocks = block;
    return *this;
  }

  /// No read that begins after so many returns.
  ScriptedDisk& stuckAfter(std::uint64_t reads) {
    m_stuckAfter = reads;
    return *this;
  }

  double now() const { return m_now; }
  void pass(double seconds) { m_now += seconds; }
  std::uint64_t reads() const { return m_reads; }
  std::size_t mostInFlight() const { return m_mostInFlight; }
  void noteInFlight(std::size_t count) { m_mostInFlight = std::max(m_mostInFlight, count); }

  bool neverEnds(const Extent& extent) const {
    return m_reads >= m_stuckAfter || hit(m_stuck, extent) != m_stuck.end();
  }

  ReadAnswer read(const Extent& extent) {
    constexpr double kUsual = 0.0001;
    m_now += kUsual;
    if (++m_reads > m_goneAfter) return {0, 0, m_goneError};
    const auto slow = hit(m_slow, extent);
    if (slow != m_slow.end() && slow->second.first > 0) {
      if (slow->second.first != kAlways) --slow->second.first;
      m_now += slow->second.second;
    }
    if (extent.offset + extent.bytes > bytes()) return {0, 0, ReadError::None};
    if (m_reads > m_shrinksAfter && end(extent) > m_shrunkBlocks) {
      const std::uint64_t left = std::max(m_shrunkBlocks * kBlock, extent.offset) - extent.offset;
      return {0, static_cast<std::uint32_t>(left), ReadError::None};
    }
    if (const auto cut = hit(m_cut, extent); cut != m_cut.end()) {
      const auto came = static_cast<std::uint32_t>(*cut * kBlock - extent.offset);
      m_cut.erase(cut);
      return {0, came, ReadError::None};
    }
    for (auto bad = hit(m_bad, extent); bad != m_bad.end() && bad->first < end(extent); ++bad) {
      if (bad->second.first == 0) continue;
      if (bad->second.first != kAlways) --bad->second.first;
      return {0, 0, bad->second.second};
    }
    return {0, extent.bytes, ReadError::None};
  }

 private:
  const std::uint64_t m_blocks;
  std::map<std::uint64_t, std::pair<unsigned, ReadError>> m_bad;
  std::map<std::uint64_t, std::pair<unsigned, double>> m_slow;
  std::set<std::uint64_t> m_cut;
  std::set<std::uint64_t> m_stuck;
  std::uint64_t m_stuckAfter = std::numeric_limits<std::uint64_t>::max();
  std::uint64_t m_shrinksAfter = std::numeric_limits<std::uint64_t>::max();
  std::uint64_t m_shrunkBlocks = 0;
  std::uint64_t m_goneAfter = std::numeric_limits<std::uint64_t>::max();
  ReadError m_goneError = ReadError::Gone;
  std::uint64_t m_reads = 0;
  std::size_t m_mostInFlight = 0;
  double m_now = 0;
};

/// Reads of that disk, one end at a time, in the order in which they began.
class ScriptedSource : public BlockSource {
 public:
  ScriptedSource(ScriptedDisk& disk, const SourceShape& shape) : m_disk(disk), m_shape(shape) {}

  unsigned slots() const override { return m_shape.slots; }
  std::uint32_t slotBytes() const override { return m_shape.slotBytes; }
  const std::uint8_t* data(unsigned) const override { return nullptr; }
  const char* means() const override { return "script"; }
  void start(unsigned slot, const Extent& extent) override {
    if (extent.bytes > m_shape.slotBytes) throw std::length_error("a read is larger than its slot");
    m_inFlight.push_back({slot, extent});
    m_disk.noteInFlight(m_inFlight.size());
  }
  void collect(std::vector<ReadAnswer>& ended, double seconds) override {
    const auto next = std::find_if(m_inFlight.begin(), m_inFlight.end(), [this](const auto& read) {
      return !m_disk.neverEnds(read.second);
    });
    if (next == m_inFlight.end()) return m_disk.pass(seconds);
    ReadAnswer answer = m_disk.read(next->second);
    answer.slot = next->first;
    m_inFlight.erase(next);
    ended.push_back(answer);
  }

 private:
  ScriptedDisk& m_disk;
  const SourceShape m_shape;
  std::deque<std::pair<unsigned, Extent>> m_inFlight;
};

}  // namespace providers::disk
