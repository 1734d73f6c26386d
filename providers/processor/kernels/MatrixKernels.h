#pragma once

#include "providers/processor/operations/Operation.h"

namespace providers {

/// Numbers that are integers, so that sums of their products are exact in any order.
void shapeMatrices64(std::uint64_t* operands);
void shapeMatrices32(std::uint64_t* operands);
/// Numbers between -1 and 1.
void shapeVectors(std::uint64_t* operands);

// The products by integers.
void productAnswer64(const std::uint64_t* operands, std::uint64_t* results);
void productAnswer32(const std::uint64_t* operands, std::uint64_t* results);

constexpr std::size_t kMatrixSize = 48;
constexpr std::size_t kMatrixWords = kMatrixSize * kMatrixSize;
constexpr std::size_t kSvdSize = 12;
constexpr std::size_t kSvdOperands = 4 * kSvdSize;
constexpr std::size_t kSvdResults = kSvdSize + 3;

}  // namespace providers
