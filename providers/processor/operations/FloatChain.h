#pragma once

#include <cstddef>
#include <cstdint>

#include "providers/processor/operations/SoftFloat.h"

// A chain of additions, multiplications, divisions and square roots, each result brought back
// between 1 and 2, and its answer by integers. An item has the numbers x, y, z and w, so many words
// of each.

namespace providers {

constexpr unsigned kFloatSteps = 6;
constexpr std::uint64_t kOne64 = 0x3FF0000000000000;
constexpr std::uint64_t kFraction64 = 0x000FFFFFFFFFFFFF;
constexpr std::uint32_t kOne32 = 0x3F800000;
constexpr std::uint32_t kFraction32 = 0x007FFFFF;

/// Numbers between 1 and 2 from any words.
void shapeFloats64(std::uint64_t* words, std::size_t count);
void shapeFloats32(std::uint64_t* words, std::size_t count);

// Word `lane` of `lanes`.
std::uint64_t chainAnswer64(const std::uint64_t* operands, std::size_t lane, std::size_t lanes);
std::uint64_t chainAnswer32(const std::uint64_t* operands, std::size_t lane, std::size_t lanes);

template <std::size_t kLanes>
void shapeFloat64(std::uint64_t* operands) {
  shapeFloats64(operands, 4 * kLanes);
}

template <std::size_t kLanes>
void shapeFloat32(std::uint64_t* operands) {
  shapeFloats32(operands, 4 * kLanes);
}

template <std::size_t kLanes>
void float64Answer(const std::uint64_t* operands, std::uint64_t* results) {
  for (std::size_t i = 0; i < kLanes; ++i) results[i] = chainAnswer64(operands, i, kLanes);
}

template <std::size_t kLanes>
void float32Answer(const std::uint64_t* operands, std::uint64_t* results) {
  for (std::size_t i = 0; i < kLanes; ++i) results[i] = chainAnswer32(operands, i, kLanes);
}

}  // namespace providers
