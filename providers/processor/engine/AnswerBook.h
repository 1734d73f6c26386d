#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "providers/processor/operations/Operation.h"

namespace providers {

/// The answers of an epoch: some blocks of each operation. Made by all threads together, each its
/// share, and then only read.
class AnswerBook {
 public:
  struct Block {
    std::uint64_t seed = 0;
    unsigned answeredBy = 0;
    Words answer;
  };

  /// The operations outlive the book.
  explicit AnswerBook(const Operations& operations);

  /// Chooses the seeds of the next epoch, whose answers will be made in so many shares. In the
  /// first one, an operation's first block is the one whose answer is known already.
  void beginEpoch(std::uint64_t seed, std::size_t shares);

  /// An answer that is not the one that was known before: the known digest, and that of the answer;
  /// or one that says of itself that it is wrong (1, and 0).
  struct Surprise {
    std::size_t operation = 0;
    std::uint64_t seed = 0;
    std::uint64_t known = 0;
    std::uint64_t found = 0;
  };

  /// Makes one of the shares, on the calling thread, which is bound to the CPU.
  std::vector<Surprise> answerShare(std::size_t share, unsigned cpu, const Executor& executor);

  const std::vector<Block>& blocks(std::size_t operation) const { return m_blocks[operation]; }

 private:
  const Operations& m_operations;
  std::size_t m_shares = 1;
  std::vector<std::vector<Block>> m_blocks;
  bool m_isFirst = true;
};

}  // namespace providers
