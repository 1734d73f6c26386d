#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <set>

#include "providers/processor/kernels/Kernels.h"
#include "providers/processor/operations/CacheOperations.h"
#include "providers/processor/operations/KnownAnswers.h"
#include "providers/processor/operations/OperationTable.h"

namespace providers {
namespace {

constexpr const char* kFirstCache = "Cache of 4 KiB";
constexpr const char* kSecondCache = "Cache of 100 lines";

Operations testedOperations() {
  Operations all = processorOperations();
  addMatrixKernels(all);
  all.push_back(cacheOperation(kFirstCache, 4096));
  all.push_back(cacheOperation(kSecondCache, 100 * 128));
  // Short blocks: it is the same for each of their items.
  for (Operation& operation : all)
    if (operation.unit != Unit::Cache) operation.items = std::min<std::size_t>(operation.items, 4);
  return all;
}

std::string plainName(const std::string& text) {
  std::string name;
  for (const char letter : text)
    if (std::isalnum(static_cast<unsigned char>(letter))) name += letter;
  return name;
}

class EachOperation : public ::testing::TestWithParam<Operation> {
 protected:
  Words compute(const Words& operands) {
    Words results;
    computeBlock(executor, GetParam(), operands, results);
    return results;
  }
  Words draw(std::uint64_t seed) {
    Words operands;
    drawOperands(GetParam(), seed, operands);
    return operands;
  }
  Executor executor;
};

TEST_P(EachOperation, GetsTheSameByOtherMeans) {
  for (const std::uint64_t seed : {std::uint64_t{1}, std::uint64_t{2}, ~std::uint64_t{0}}) {
    const Words operands = draw(seed);
    Words answers;
    answerBlock(executor, GetParam(), operands, answers);
    const auto mismatch = firstMismatch(GetParam(), answers, compute(operands));
    EXPECT_FALSE(mismatch) << "seed " << seed << ", item " << mismatch->item << ", word "
                           << mismatch->word << ", expected " << hexText(mismatch->expected)
                           << ", found " << hexText(mismatch->found) << ", operands "
                           << operandText(GetParam(), seed, *mismatch);
  }
}

TEST_P(EachOperation, DoesNotSayThatItIsWrong) {
  EXPECT_TRUE(mayBeRight(GetParam(), compute(draw(5))));
}

TEST_P(EachOperation, GetsOtherResultsFromOtherSeeds) {
  EXPECT_NE(compute(draw(1)), compute(draw(2)));
}

TEST_P(EachOperation, DependsOnEveryWordOfItsOperands) {
  const Words operands = draw(3);
  const Words right = compute(operands);
  const std::size_t step = std::max<std::size_t>(1, operands.size() / 64);
  for (std::size_t i = 0; i < operands.size(); i += step) {
    unsigned seen = 0;
    // A bit in the middle of the fraction, and a low one; some are masked out by intention.
    for (const unsigned bit : {2U, 5U, 9U, 19U, 37U, 44U}) {
      Words changed = operands;
      changed[i] ^= std::uint64_t{1} << bit;
      if (compute(changed) != right) ++seen;
    }
    EXPECT_GE(seen, 3U) << "word " << i;
  }
}

TEST_P(EachOperation, WritesEveryResult) {
  // One that was left out would be what stands there before.
  const Words results = compute(draw(4));
  EXPECT_EQ(std::count(results.begin(), results.end(), 0xBADC0FFEE0DDF00D), 0);
}

INSTANTIATE_TEST_SUITE_P(OfThisProcessor, EachOperation, ::testing::ValuesIn(testedOperations()),
                         [](const auto& row) { return plainName(row.param.name); });

TEST(OperationTable, NoTwoOperationsHaveTheSameName) {
  std::set<std::string> names;
  for (const Operation& operation : testedOperations())
    EXPECT_TRUE(names.insert(operation.name).second) << operation.name;
}

TEST(OperationTable, EveryUnitOfAProcessorHasOperations) {
  for (const Unit unit : {Unit::Integer, Unit::Float, Unit::Width})
    EXPECT_TRUE(std::any_of(processorOperations().begin(), processorOperations().end(),
                            [unit](const Operation& operation) { return operation.unit == unit; }));
}

TEST(KnownAnswers, AreThoseOfEveryInstructionGroup) {
  Executor executor;
  for (const Operation& operation : processorOperations()) {
    const auto known = knownDigest(operation);
    ASSERT_TRUE(known) << operation.name;
    Words operands, results;
    drawOperands(operation, kKnownSeed, operands);
    computeBlock(executor, operation, operands, results);
    EXPECT_EQ(digestOf(results), *known) << operation.name;
  }
}

TEST(KnownAnswers, AreThoseOfTilesOnAProcessorWithoutThem) {
  Executor executor;
  const Operation operation = tileOperation();
  Words operands, results;
  drawOperands(operation, kKnownSeed, operands);
  answerBlock(executor, operation, operands, results);
  EXPECT_EQ(digestOf(results), knownDigest(operation));
}

TEST(KnownAnswers, ALibrarysResultsSayWhetherTheyAreRight) {
  Operation library{"Library", Unit::Kernel, 1, 2, 2, nullptr, nullptr, nullptr};
  EXPECT_TRUE(mayBeRight(library, {7, 1, 8, 1}));
  EXPECT_FALSE(mayBeRight(library, {7, 0, 8, 1}));
  EXPECT_FALSE(mayBeRight(library, {7, 1, 8, 0}));
  library.unit = Unit::Integer;
  EXPECT_TRUE(mayBeRight(library, {7, 1, 8, 0})) << "others say nothing";
}

TEST(KnownAnswers, ADigestDependsOnEveryWordAndTheirNumber) {
  const Words words{1, 2, 3};
  std::set<std::uint64_t> digests{digestOf(words),     digestOf({1, 2}),    digestOf({2, 1, 3}),
                                  digestOf({1, 2, 4}), digestOf({0, 2, 3}), digestOf({})};
  EXPECT_EQ(digests.size(), 6U);
}

// Catches a wrong order of rows, lanes or bytes: tiles are answered on processors that have none,
// too.
TEST(TileOperation, IsAnsweredByTheSumsOfProductsOfSignedAndUnsignedBytes) {
  const Operation operation = tileOperation();
  Words operands(operation.operandWords), results(operation.resultWords);
  operands[0] = 0xFF;                   // row 0, lane 0: -1, or 255
  operands[128] = 2;                    // row 0, lane 0
  operands[8 * 3 + 2] = 0x01ULL << 40;  // row 3, lane 5, byte 1
  operands[128 + 8 * 5 + 4] = 0x0700;   // row 5, lane 8, byte 1
  operation.answer(operands.data(), results.data());
  Words expected(operation.resultWords);
  // -2 + 510, then the same with what came: 252 or -4, 236 or -20, 156 or -100.
  expected[0] = 508 + 496 + 432 + 112;
  // 7 + 7 at first. Then it stands in lane 8, and the right one's row 8 is empty.
  expected[8 * 3 + 4] = 14;
  EXPECT_EQ(results, expected);
}

#if defined(__x86_64__) && defined(__GNUC__)

// Catches an operation that relies on what the thread's x87 unit was set to.
TEST(FloatOperations, RoundToAllBitsWhateverTheThreadBeganWith) {
  const std::uint16_t fewerBits = 0x027F;
  std::uint16_t before = 0, after = 0;
  asm volatile("fnstcw %0" : "=m"(before));
  asm volatile("fldcw %0" : : "m"(fewerBits));
  Executor executor;
  bool isRight = false;
  for (const Operation& operation : processorOperations()) {
    if (std::string(operation.name).find("x87") == std::string::npos) continue;
    Words operands, results;
    drawOperands(operation, kKnownSeed, operands);
    computeBlock(executor, operation, operands, results);
    isRight = digestOf(results) == knownDigest(operation);
  }
  asm volatile("fnstcw %0" : "=m"(after));
  asm volatile("fldcw %0" : : "m"(before));
  EXPECT_TRUE(isRight);
  EXPECT_EQ(after, fewerBits);
}

#endif

// The table of a made-up operation.
void doubled(const std::uint64_t* operands, std::uint64_t* results, std::size_t items) {
  for (std::size_t i = 0; i < items; ++i) results[i] = 2 * operands[i];
}

Operation operationOf(std::size_t operandWords, std::size_t resultWords) {
  return {"Made up", Unit::Integer, operandWords, resultWords, 4, nullptr, doubled, nullptr};
}

TEST(Mismatch, NamesItemAndWord) {
  const Operation operation = operationOf(2, 3);
  const Words expected{1, 2, 3, 4, 5, 6};
  EXPECT_FALSE(firstMismatch(operation, expected, expected));
  const auto mismatch = firstMismatch(operation, expected, {1, 2, 3, 4, 9, 8});
  ASSERT_TRUE(mismatch);
  EXPECT_EQ(mismatch->item, 1U);
  EXPECT_EQ(mismatch->word, 1U);
  EXPECT_EQ(mismatch->expected, 5U);
  EXPECT_EQ(mismatch->found, 9U);
}

TEST(OperandText, OfAShortItemIsAllOfIt) {
  const Operation operation = operationOf(2, 1);
  Words operands;
  drawOperands(operation, 7, operands);
  EXPECT_EQ(operandText(operation, 7, {1, 0, 0, 0}),
            hexText(operands[2]) + ", " + hexText(operands[3]));
}

TEST(OperandText, OfLanesIsThatOfTheLane) {
  const Operation operation = operationOf(12, 4);
  Words operands;
  drawOperands(operation, 7, operands);
  EXPECT_EQ(operandText(operation, 7, {1, 2, 0, 0}),
            hexText(operands[14]) + ", " + hexText(operands[18]) + ", " + hexText(operands[22]));
}

TEST(OperandText, OfALargeItemIsItsSeed) {
  EXPECT_EQ(operandText(operationOf(2000, 1000), 7, {}), "drawn from seed 0x0000000000000007");
  EXPECT_EQ(operandText(operationOf(10, 3), 7, {}), "drawn from seed 0x0000000000000007");
}

TEST(AnswerBlock, ComesFromTheUnitWhereThereIsNoOtherWay) {
  Words results;
  answerBlock(Executor(), operationOf(1, 1), {1, 2, 3, 4}, results);
  EXPECT_EQ(results, (Words{2, 4, 6, 8}));
}

}  // namespace
}  // namespace providers
