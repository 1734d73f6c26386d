#include "providers/processor/operations/VectorChain.h"

namespace providers {

namespace {

using Lane32 = std::uint32_t;

/// The `index`-th part of `bits` bits of a vector, where several of them have 128 bits at least.
std::uint64_t part(const std::uint64_t* words, unsigned bits, std::size_t index) {
  const std::size_t inWord = 64 / bits;
  const std::uint64_t value = words[index / inWord] >> (index % inWord * bits);
  return bits == 64 ? value : value & ((std::uint64_t{1} << bits) - 1);
}

/// Each part of x of that width becomes what the function makes of it and its index.
template <class Function>
void eachPart(std::uint64_t* x, std::size_t words, unsigned bits, Function function) {
  const std::size_t inWord = 64 / bits;
  const std::uint64_t mask = ~std::uint64_t{0} >> (64 - bits);
  for (std::size_t word = 0; word < words; ++word) {
    std::uint64_t result = 0;
    for (std::size_t i = 0; i < inWord; ++i)
      result |= (function(part(x, bits, word * inWord + i), word * inWord + i) & mask)
                << (i * bits);
    x[word] = result;
  }
}

std::uint64_t integerLane(Lane32 x, Lane32 y, Lane32 z, Lane32 w) {
  for (unsigned step = 0; step < kIntegerSteps; ++step) {
    x = x * (y | 1) + z;
    x ^= x >> 15;
    x += w << 5;
    if (static_cast<std::int32_t>(x) > static_cast<std::int32_t>(w)) x += z;
  }
  return x;
}

std::int64_t signed16(std::uint64_t value) { return static_cast<std::int16_t>(value); }

/// Pairs of products of 16 bits with their signs, added to 32 bits.
std::uint64_t pairOfProducts(const std::uint64_t* x, const std::uint64_t* z, std::size_t index) {
  const auto product = [&](std::size_t i) {
    return signed16(part(x, 16, i)) * signed16(part(z, 16, i));
  };
  return static_cast<std::uint64_t>(product(2 * index) + product(2 * index + 1));
}

/// Two words, which is what the narrowest registers have.
void widthsStep(std::uint64_t* x, const std::uint64_t* y, const std::uint64_t* z,
                const std::uint64_t* w) {
  constexpr std::size_t kWords = 2;
  using Word = std::uint64_t;
  eachPart(x, kWords, 8, [&](Word a, std::size_t i) { return a + part(y, 8, i); });
  eachPart(x, kWords, 16, [&](Word a, std::size_t i) { return a - part(z, 16, i); });
  eachPart(x, kWords, 16, [&](Word a, std::size_t i) { return a * (part(w, 16, i) | 1); });
  eachPart(x, kWords, 32, [&](Word a, std::size_t i) { return a + (part(y, 32, i) << 7); });
  eachPart(x, kWords, 64, [&](Word a, std::size_t i) { return a + (part(z, 64, i) >> 9); });
  const Word before[kWords] = {x[0], x[1]};
  eachPart(x, kWords, 8, [&](Word, std::size_t i) { return part(before, 8, kByteOrder[i]); });
  const Word shuffled[kWords] = {x[0], x[1]};
  eachPart(x, kWords, 32,
           [&](Word a, std::size_t i) { return a + pairOfProducts(shuffled, z, i); });
  eachPart(x, kWords, 64, [&](Word a, std::size_t i) { return a ^ part(y, 64, i); });
}

std::uint64_t fusedLane(const SoftArithmetic& soft, std::uint64_t first, SoftFloat y, SoftFloat z,
                        SoftFloat w) {
  SoftFloat x = soft.unit(first);
  std::uint64_t all = 0;
  const auto next = [&](SoftFloat value) {
    x = soft.unit(soft.fraction(value));
    all ^= soft.fraction(x);
  };
  for (unsigned step = 0; step < kFusedSteps; ++step) {
    next(soft.multiplyAdd(x, y, z));
    next(soft.multiplySubtract(x, w, y));
  }
  return all;
}

std::uint64_t fusedLane(const SoftArithmetic& soft, const std::uint64_t* operands, std::size_t lane,
                        unsigned shift) {
  const auto number = [&](std::size_t which) {
    return soft.unit(operands[which * kVectorWords + lane] >> shift);
  };
  return fusedLane(soft, operands[lane] >> shift, number(1), number(2), number(3));
}

Operation vector(const char* name, Unit unit, void (*shape)(std::uint64_t*), Compute compute,
                 void (*answer)(const std::uint64_t*, std::uint64_t*)) {
  return {name, unit, kVectorOperands, kVectorWords, kVectorItems, shape, compute, answer};
}

}  // namespace

void integerAnswer(const std::uint64_t* operands, std::uint64_t* results) {
  for (std::size_t i = 0; i < kVectorWords; ++i) results[i] = operands[i];
  eachPart(results, kVectorWords, 32, [&](std::uint64_t x, std::size_t i) {
    const auto lane = [&](std::size_t which) {
      return static_cast<Lane32>(part(operands + which * kVectorWords, 32, i));
    };
    return integerLane(static_cast<Lane32>(x), lane(1), lane(2), lane(3));
  });
}

void widthsAnswer(const std::uint64_t* operands, std::uint64_t* results) {
  for (std::size_t i = 0; i < kVectorWords; i += 2) {
    const std::uint64_t* const y = operands + kVectorWords + i;
    results[i] = operands[i];
    results[i + 1] = operands[i + 1];
    for (unsigned step = 0; step < kWidthSteps; ++step)
      widthsStep(results + i, y, y + kVectorWords, y + 2 * kVectorWords);
  }
}

void fusedAnswer64(const std::uint64_t* operands, std::uint64_t* results) {
  const SoftArithmetic soft(53);
  for (std::size_t i = 0; i < kVectorWords; ++i) results[i] = fusedLane(soft, operands, i, 0);
}

void fusedAnswer32(const std::uint64_t* operands, std::uint64_t* results) {
  const SoftArithmetic soft(24);
  for (std::size_t i = 0; i < kVectorWords; ++i)
    results[i] = fusedLane(soft, operands, i, 32) << 32 | fusedLane(soft, operands, i, 0);
}

Operation vectorInteger(const char* name, Compute compute) {
  return vector(name, Unit::Integer, nullptr, compute, integerAnswer);
}

Operation vectorWidths(const char* name, Compute compute) {
  return vector(name, Unit::Width, nullptr, compute, widthsAnswer);
}

Operation vectorFloat64(const char* name, Compute compute) {
  return vector(name, Unit::Float, shapeFloat64<kVectorWords>, compute,
                float64Answer<kVectorWords>);
}

Operation vectorFloat32(const char* name, Compute compute) {
  return vector(name, Unit::Float, shapeFloat32<kVectorWords>, compute,
                float32Answer<kVectorWords>);
}

Operation vectorFused64(const char* name, Compute compute) {
  return vector(name, Unit::Float, shapeFloat64<kVectorWords>, compute, fusedAnswer64);
}

Operation vectorFused32(const char* name, Compute compute) {
  return vector(name, Unit::Float, shapeFloat32<kVectorWords>, compute, fusedAnswer32);
}

}  // namespace providers
