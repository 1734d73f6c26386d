#include "providers/processor/operations/Features.h"
#include "providers/processor/operations/OperationTable.h"

#if DIAGS_X86
#include <immintrin.h>
#endif

// Sums of products of small numbers, what products of matrices are made of: of four bytes, signed
// and unsigned, and of two halves, in lanes of 32 bits.

namespace providers {

#if DIAGS_X86

namespace {

constexpr unsigned kSteps = 8;
constexpr std::size_t kSums = 8;  // words, of two lanes each
constexpr std::size_t kDotOperands = 3 * kSums;

__attribute__((target("avx2"), always_inline)) inline __m256i load(const std::uint64_t* words) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(words));
}

__attribute__((target("avxvnni,avx2"))) void dotBlock(const std::uint64_t* operands,
                                                      std::uint64_t* results, std::size_t items) {
  constexpr std::size_t kHalf = kSums / 2;
  for (std::size_t half = 0; half < 2 * items; ++half) {
    const std::uint64_t* const first = operands + half / 2 * kDotOperands + half % 2 * kHalf;
    __m256i sum = load(first), left = load(first + kSums);
    const __m256i right = load(first + 2 * kSums);
    for (unsigned step = 0; step < kSteps; ++step) {
      sum = _mm256_dpbusd_avx_epi32(sum, left, right);
      left = _mm256_xor_si256(left, sum);
      sum = _mm256_dpwssd_avx_epi32(sum, left, right);
    }
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(results + half * kHalf), sum);
  }
}

__attribute__((target("avx512f,avx512vnni"))) void wideDotBlock(const std::uint64_t* operands,
                                                                std::uint64_t* results,
                                                                std::size_t items) {
  for (std::size_t item = 0; item < items; ++item) {
    const std::uint64_t* const first = operands + item * kDotOperands;
    __m512i sum = _mm512_loadu_si512(first), left = _mm512_loadu_si512(first + kSums);
    const __m512i right = _mm512_loadu_si512(first + 2 * kSums);
    for (unsigned step = 0; step < kSteps; ++step) {
      sum = _mm512_dpbusd_epi32(sum, left, right);
      left = _mm512_xor_si512(left, sum);
      sum = _mm512_dpwssd_epi32(sum, left, right);
    }
    _mm512_storeu_si512(results + item * kSums, sum);
  }
}

std::uint32_t productOfBytes(std::uint32_t left, std::uint32_t right, unsigned shift) {
  const auto unsignedByte = static_cast<std::uint8_t>(left >> shift);
  const auto signedByte = static_cast<std::int8_t>(right >> shift);
  return static_cast<std::uint32_t>(unsignedByte * signedByte);
}

std::uint32_t productOfHalves(std::uint32_t left, std::uint32_t right, unsigned shift) {
  const std::int32_t one = static_cast<std::int16_t>(left >> shift);
  const std::int32_t other = static_cast<std::int16_t>(right >> shift);
  return static_cast<std::uint32_t>(one * other);
}

/// Sums go over their upper end like all numbers without a sign.
std::uint32_t laneAnswer(std::uint32_t sum, std::uint32_t left, std::uint32_t right) {
  for (unsigned step = 0; step < kSteps; ++step) {
    for (const unsigned shift : {0U, 8U, 16U, 24U}) sum += productOfBytes(left, right, shift);
    left ^= sum;
    for (const unsigned shift : {0U, 16U}) sum += productOfHalves(left, right, shift);
  }
  return sum;
}

void dotAnswer(const std::uint64_t* operands, std::uint64_t* results) {
  constexpr unsigned kLane = 32;
  for (std::size_t word = 0; word < kSums; ++word) {
    results[word] = 0;
    for (const unsigned shift : {0U, kLane}) {
      const auto lane = [&](std::size_t at) {
        return static_cast<std::uint32_t>(operands[at * kSums + word] >> shift);
      };
      results[word] |= std::uint64_t{laneAnswer(lane(0), lane(1), lane(2))} << shift;
    }
  }
}

}  // namespace

void addDotOperations(Operations& operations) {
  if (features().dot)
    operations.push_back({"Sums of products, 256 bits (AVX-VNNI)", Unit::Integer, kDotOperands,
                          kSums, 16, nullptr, dotBlock, dotAnswer});
  if (features().wideDot)
    operations.push_back({"Sums of products, 512 bits (AVX-512 VNNI)", Unit::Integer, kDotOperands,
                          kSums, 16, nullptr, wideDotBlock, dotAnswer});
}

#else

void addDotOperations(Operations&) {}

#endif

}  // namespace providers
