#include "providers/processor/operations/Operation.h"

#include <algorithm>
#include <cstdio>

#include "providers/common/SplitMix.h"

namespace providers {

namespace {

constexpr std::uint64_t kNoResult = 0xBADC0FFEE0DDF00D;
constexpr std::size_t kShortItem = 8;   // words that can still be read in a line
constexpr std::size_t kMostLanes = 64;  // words of all of them

}  // namespace

void drawOperands(const Operation& operation, std::uint64_t seed, Words& operands) {
  operands.resize(operation.items * operation.operandWords);
  for (std::size_t i = 0; i < operands.size(); ++i) operands[i] = splitMix(seed, i);
  if (!operation.shape) return;
  for (std::size_t item = 0; item < operation.items; ++item)
    operation.shape(operands.data() + item * operation.operandWords);
}

void computeBlock(const Executor& executor, const Operation& operation, const Words& operands,
                  Words& results) {
  // What is left out is not taken for what was there before.
  results.assign(operation.items * operation.resultWords, kNoResult);
  executor.compute(operation, operands, results);
}

void answerBlock(const Executor& executor, const Operation& operation, const Words& operands,
                 Words& results) {
  if (!operation.answer) {
    computeBlock(executor, operation, operands, results);
    return;
  }
  results.resize(operation.items * operation.resultWords);
  for (std::size_t item = 0; item < operation.items; ++item)
    operation.answer(operands.data() + item * operation.operandWords,
                     results.data() + item * operation.resultWords);
}

std::optional<Mismatch> firstMismatch(const Operation& operation, const Words& expected,
                                      const Words& found) {
  const auto [right, wrong] = std::mismatch(expected.begin(), expected.end(), found.begin());
  if (right == expected.end()) return std::nullopt;
  const auto place = static_cast<std::size_t>(right - expected.begin());
  return Mismatch{place / operation.resultWords, place % operation.resultWords, *right, *wrong};
}

std::string operandText(const Operation& operation, std::uint64_t seed, const Mismatch& mismatch) {
  const std::size_t words = operation.operandWords;
  const bool isShort = words <= kShortItem;
  const bool hasLanes = !isShort && words <= kMostLanes && words % operation.resultWords == 0 &&
                        words / operation.resultWords <= kShortItem;
  if (!isShort && !hasLanes) return "drawn from seed " + hexText(seed);
  Words operands;
  drawOperands(operation, seed, operands);
  std::string text;
  for (std::size_t word = isShort ? 0 : mismatch.word; word < words;
       word += isShort ? 1 : operation.resultWords)
    text += (text.empty() ? "" : ", ") + hexText(operands[mismatch.item * words + word]);
  return text;
}

std::string hexText(std::uint64_t value) {
  char text[24];
  std::snprintf(text, sizeof text, "0x%016llx", static_cast<unsigned long long>(value));
  return text;
}

}  // namespace providers
