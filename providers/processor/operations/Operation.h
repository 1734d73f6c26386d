#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace providers {

/// The part of a processor that an operation is for.
enum class Unit { Integer, Cipher, Float, Width, Cache, Kernel };

/// Something that a processor has to be able to do. An item is one calculation: so many words of
/// operands, so many of results; a block has several of them. All functions do the same with the
/// same words, on every processor, and may run on many threads at once.
struct Operation {
  const char* name;
  Unit unit;
  std::size_t operandWords;  ///< of an item
  std::size_t resultWords;   ///< of an item
  std::size_t items;         ///< of a block
  /// Makes operands that make sense out of an item's random words; may be null.
  void (*shape)(std::uint64_t* operands);
  /// The unit under test.
  void (*compute)(const std::uint64_t* operands, std::uint64_t* results, std::size_t items);
  /// An item's results by other means; null where there are none but the unit itself.
  void (*answer)(const std::uint64_t* operands, std::uint64_t* results);
};

using Words = std::vector<std::uint64_t>;
using Operations = std::vector<Operation>;

/// What carries operations out on the calling thread: the place where a test can put a fault in.
/// Safe to use from any thread.
class Executor {
 public:
  virtual ~Executor() = default;
  virtual void compute(const Operation& operation, const Words& operands, Words& results) const {
    operation.compute(operands.data(), results.data(), operation.items);
  }
};

/// The operands of a block, drawn from a seed.
void drawOperands(const Operation& operation, std::uint64_t seed, Words& operands);

/// The results of the unit under test for a block.
void computeBlock(const Executor& executor, const Operation& operation, const Words& operands,
                  Words& results);

/// The right results of a block, by other means where there are any.
void answerBlock(const Executor& executor, const Operation& operation, const Words& operands,
                 Words& results);

/// A result that was not the right one.
struct Mismatch {
  std::size_t item = 0;
  std::size_t word = 0;  ///< of the item's results
  std::uint64_t expected = 0;
  std::uint64_t found = 0;
};

/// The first difference of two blocks of results of the same size.
std::optional<Mismatch> firstMismatch(const Operation& operation, const Words& expected,
                                      const Words& found);

/// The operands that a result depends on, in hexadecimal and comma separated: all of a short item;
/// those of its lane where operands and results come in lanes; else the seed that they were drawn
/// from.
std::string operandText(const Operation& operation, std::uint64_t seed, const Mismatch& mismatch);

/// "0x" and 16 digits.
std::string hexText(std::uint64_t value);

}  // namespace providers
