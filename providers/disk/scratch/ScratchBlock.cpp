#include "providers/disk/scratch/ScratchBlock.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "providers/common/SplitMix.h"

namespace providers::disk {

namespace {

constexpr std::uint64_t kMark = 0x6B636F6C62676964;  // that it is one of ours
constexpr std::size_t kHeaderWords = 5;
constexpr std::size_t kWords = kScratchBlock / sizeof(std::uint64_t);

using Header = std::array<std::uint64_t, kHeaderWords>;

std::uint64_t checksumOf(const BlockName& name) {
  return splitMix(splitMix(splitMix(kMark, name.offset), name.seed), name.generation);
}

Header headerOf(const BlockName& name) {
  return {kMark, name.offset, name.seed, name.generation, checksumOf(name)};
}

bool isWhole(const std::uint8_t* block, const BlockName& name) {
  std::array<std::uint8_t, kScratchBlock> expected;
  fillBlock(expected.data(), name);
  return std::memcmp(block, expected.data(), kScratchBlock) == 0;
}

BlockVerdict corrupt(const std::uint8_t* block, const std::uint8_t* expected) {
  BlockVerdict verdict;
  verdict.state = BlockState::Corrupt;
  for (std::size_t i = 0; i < kScratchBlock; ++i) {
    if (block[i] == expected[i]) continue;
    if (verdict.wrongBytes++ > 0) continue;
    verdict.firstWrong = i;
    verdict.expectedByte = expected[i];
    verdict.foundByte = block[i];
  }
  return verdict;
}

}  // namespace

void fillBlock(std::uint8_t* block, const BlockName& name) {
  std::array<std::uint64_t, kWords> words;
  const Header header = headerOf(name);
  std::copy(header.begin(), header.end(), words.begin());
  for (std::size_t i = kHeaderWords; i < kWords; ++i) words[i] = splitMix(header[4], i);
  std::memcpy(block, words.data(), kScratchBlock);
}

BlockVerdict judgeBlock(const std::uint8_t* block, const BlockName& expected) {
  std::array<std::uint8_t, kScratchBlock> right;
  fillBlock(right.data(), expected);
  if (std::memcmp(block, right.data(), kScratchBlock) == 0) return {};
  BlockVerdict verdict;
  if (std::all_of(block, block + kScratchBlock, [](std::uint8_t byte) { return byte == 0; })) {
    verdict.state = BlockState::Empty;
    return verdict;
  }
  Header header;
  std::memcpy(header.data(), block, sizeof header);
  verdict.found = {header[1], header[2], header[3]};
  // What does not fit to its own name is no block, whatever its name says.
  if (header != headerOf(verdict.found) || !isWhole(block, verdict.found))
    return corrupt(block, right.data());
  verdict.state = verdict.found.seed != expected.seed       ? BlockState::Foreign
                  : verdict.found.offset != expected.offset ? BlockState::Misdirected
                                                            : BlockState::Stale;
  return verdict;
}

}  // namespace providers::disk
