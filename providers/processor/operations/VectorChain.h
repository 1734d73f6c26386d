#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "providers/processor/operations/FloatChain.h"
#include "providers/processor/operations/Operation.h"

// What vectors of every width do with the same 512 bits, in registers of 128, 256 or 512 bits, and
// the answers lane by lane. An item has the vectors x, y, z and w; its result is the
// last x, of floating point the exclusive or of all x on the way.

namespace providers {

constexpr std::size_t kVectorWords = 8;
constexpr std::size_t kVectorOperands = 4 * kVectorWords;
constexpr std::size_t kVectorItems = 24;
constexpr unsigned kIntegerSteps = 8;
constexpr unsigned kWidthSteps = 6;
constexpr unsigned kFusedSteps = 6;

/// The order in which the bytes of 128 bits are put.
alignas(16) constexpr std::array<std::uint8_t, 16> kByteOrder = {7,  0, 13, 10, 3,  12, 1, 6,
                                                                 15, 8, 5,  2,  11, 4,  9, 14};

/// Lanes of 32 bits: products, sums, shifts, comparisons.
void integerAnswer(const std::uint64_t* operands, std::uint64_t* results);
/// Lanes of 8, 16, 32 and 64 bits of the same vector, widened, narrowed and put in another order.
void widthsAnswer(const std::uint64_t* operands, std::uint64_t* results);
/// Products and sums that are rounded once.
void fusedAnswer64(const std::uint64_t* operands, std::uint64_t* results);
void fusedAnswer32(const std::uint64_t* operands, std::uint64_t* results);

using Compute = void (*)(const std::uint64_t* operands, std::uint64_t* results, std::size_t items);

// Operations of that kind.
Operation vectorInteger(const char* name, Compute compute);
Operation vectorWidths(const char* name, Compute compute);
Operation vectorFloat64(const char* name, Compute compute);
Operation vectorFloat32(const char* name, Compute compute);
Operation vectorFused64(const char* name, Compute compute);
Operation vectorFused32(const char* name, Compute compute);

}  // namespace providers
