#include "providers/processor/engine/AnswerBook.h"

#include "providers/common/SplitMix.h"
#include "providers/processor/operations/KnownAnswers.h"

namespace providers {

namespace {

constexpr std::size_t kBlocks = 4;
constexpr std::size_t kLargeBlock = 65536;  // words; of such there is one

std::size_t blocksOf(const Operation& operation) {
  return operation.items * operation.resultWords >= kLargeBlock ? 1 : kBlocks;
}

}  // namespace

AnswerBook::AnswerBook(const Operations& operations) : m_operations(operations) {
  for (const Operation& operation : operations) m_blocks.emplace_back(blocksOf(operation));
}

void AnswerBook::beginEpoch(std::uint64_t seed, std::size_t shares) {
  m_shares = shares;
  for (std::size_t i = 0; i < m_operations.size(); ++i) {
    const std::uint64_t own = splitMix(seed, i);
    for (std::size_t block = 0; block < m_blocks[i].size(); ++block)
      m_blocks[i][block].seed = splitMix(own, block);
    if (m_isFirst && knownDigest(m_operations[i])) m_blocks[i].front().seed = kKnownSeed;
  }
  m_isFirst = false;
}

std::vector<AnswerBook::Surprise> AnswerBook::answerShare(std::size_t share, unsigned cpu,
                                                          const Executor& executor) {
  std::vector<Surprise> surprises;
  Words operands;
  std::size_t number = 0;
  for (std::size_t i = 0; i < m_operations.size(); ++i)
    for (Block& block : m_blocks[i]) {
      if (number++ % m_shares != share) continue;
      drawOperands(m_operations[i], block.seed, operands);
      answerBlock(executor, m_operations[i], operands, block.answer);
      block.answeredBy = cpu;
      const auto known = block.seed == kKnownSeed ? knownDigest(m_operations[i]) : std::nullopt;
      const std::uint64_t digest = known ? digestOf(block.answer) : 0;
      if (known && digest != *known) surprises.push_back({i, block.seed, *known, digest});
      if (!mayBeRight(m_operations[i], block.answer)) surprises.push_back({i, block.seed, 1, 0});
    }
  return surprises;
}

}  // namespace providers
