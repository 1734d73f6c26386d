#pragma once

#include <cstddef>
#include <cstdint>

namespace providers::disk {

constexpr std::size_t kScratchBlock = 4096;

/// Which block of which run this is, and the how manieth time it is written. Every block carries
/// it.
struct BlockName {
  std::uint64_t offset = 0;
  std::uint64_t seed = 0;
  std::uint64_t generation = 0;
};

/// Writes the block's name, a checksum of it, and numbers that belong to it.
void fillBlock(std::uint8_t* block, const BlockName& name);

enum class BlockState {
  Right,
  Empty,        ///< nothing but zeros: it was never written
  Stale,        ///< what was there before: the write was lost
  Misdirected,  ///< another block of the run: written or read at the wrong place
  Foreign,      ///< a block of another run
  Corrupt,      ///< no block at all, or one with wrong bytes
};

/// What was found in place of a block.
struct BlockVerdict {
  BlockState state = BlockState::Right;
  BlockName found;             ///< for `Stale`, `Misdirected` and `Foreign`
  std::size_t firstWrong = 0;  ///< byte; for `Corrupt`
  std::size_t wrongBytes = 0;
  std::uint8_t expectedByte = 0;
  std::uint8_t foundByte = 0;
};

BlockVerdict judgeBlock(const std::uint8_t* block, const BlockName& expected);

}  // namespace providers::disk
