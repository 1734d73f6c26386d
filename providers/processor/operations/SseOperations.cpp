#include "providers/processor/operations/Features.h"
#include "providers/processor/operations/OperationTable.h"
#include "providers/processor/operations/VectorChain.h"

#if DIAGS_X86
#include <immintrin.h>
#endif

// Vectors in registers of 128 bits.

namespace providers {

#if DIAGS_X86

namespace sse {

namespace {

#define DIAGS_TARGET __attribute__((target("sse4.1")))
// Within the blocks: a vector never lies on the stack, which Windows does not align enough for the
// wide ones.
#define DIAGS_INLINE __attribute__((target("sse4.1"), always_inline)) inline

constexpr std::size_t kWords = 2;

DIAGS_INLINE __m128i load(const std::uint64_t* words) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(words));
}

DIAGS_INLINE __m128d load64(const std::uint64_t* words) { return _mm_castsi128_pd(load(words)); }

DIAGS_INLINE __m128 load32(const std::uint64_t* words) { return _mm_castsi128_ps(load(words)); }

DIAGS_INLINE void store(std::uint64_t* words, __m128i value) {
  _mm_storeu_si128(reinterpret_cast<__m128i*>(words), value);
}

/// The numbers of the same fractions between 1 and 2.
DIAGS_INLINE __m128d unit(__m128d value) {
  const __m128i fraction =
      _mm_and_si128(_mm_castpd_si128(value), _mm_set1_epi64x(static_cast<long long>(kFraction64)));
  return _mm_castsi128_pd(_mm_or_si128(fraction, _mm_set1_epi64x(static_cast<long long>(kOne64))));
}

DIAGS_INLINE __m128 unit(__m128 value) {
  const __m128i fraction =
      _mm_and_si128(_mm_castps_si128(value), _mm_set1_epi32(static_cast<int>(kFraction32)));
  return _mm_castsi128_ps(_mm_or_si128(fraction, _mm_set1_epi32(static_cast<int>(kOne32))));
}

DIAGS_INLINE void floatChain64(const std::uint64_t* operands, std::uint64_t* results) {
  __m128d all = _mm_setzero_pd();
  __m128d x = load64(operands);
  const __m128d y = load64(operands + kVectorWords), z = load64(operands + 2 * kVectorWords),
                w = load64(operands + 3 * kVectorWords);
  for (unsigned step = 0; step < kFloatSteps; ++step) {
    x = unit(_mm_add_pd(_mm_mul_pd(x, y), z));
    all = _mm_xor_pd(all, x);
    x = unit(_mm_div_pd(x, w));
    all = _mm_xor_pd(all, x);
    x = unit(_mm_add_pd(_mm_sqrt_pd(x), y));
    all = _mm_xor_pd(all, x);
    x = unit(_mm_sub_pd(_mm_add_pd(x, w), z));
    all = _mm_xor_pd(all, x);
  }
  store(results, _mm_castpd_si128(all));
}

DIAGS_INLINE void floatChain32(const std::uint64_t* operands, std::uint64_t* results) {
  __m128 all = _mm_setzero_ps();
  __m128 x = load32(operands);
  const __m128 y = load32(operands + kVectorWords), z = load32(operands + 2 * kVectorWords),
               w = load32(operands + 3 * kVectorWords);
  for (unsigned step = 0; step < kFloatSteps; ++step) {
    x = unit(_mm_add_ps(_mm_mul_ps(x, y), z));
    all = _mm_xor_ps(all, x);
    x = unit(_mm_div_ps(x, w));
    all = _mm_xor_ps(all, x);
    x = unit(_mm_add_ps(_mm_sqrt_ps(x), y));
    all = _mm_xor_ps(all, x);
    x = unit(_mm_sub_ps(_mm_add_ps(x, w), z));
    all = _mm_xor_ps(all, x);
  }
  store(results, _mm_castps_si128(all));
}

DIAGS_INLINE void integerChain(const std::uint64_t* operands, std::uint64_t* results) {
  __m128i x = load(operands);
  const __m128i y = _mm_or_si128(load(operands + kVectorWords), _mm_set1_epi32(1)),
                z = load(operands + 2 * kVectorWords), w = load(operands + 3 * kVectorWords);
  for (unsigned step = 0; step < kIntegerSteps; ++step) {
    x = _mm_add_epi32(_mm_mullo_epi32(x, y), z);
    x = _mm_xor_si128(x, _mm_srli_epi32(x, 15));
    x = _mm_add_epi32(x, _mm_slli_epi32(w, 5));
    const __m128i above = _mm_cmpgt_epi32(x, w);
    x = _mm_add_epi32(x, _mm_and_si128(above, z));
  }
  store(results, x);
}

DIAGS_INLINE void widthsChain(const std::uint64_t* operands, std::uint64_t* results) {
  __m128i x = load(operands);
  const __m128i y = load(operands + kVectorWords), z = load(operands + 2 * kVectorWords),
                w = _mm_or_si128(load(operands + 3 * kVectorWords), _mm_set1_epi16(1)),
                order = _mm_load_si128(reinterpret_cast<const __m128i*>(kByteOrder.data()));
  for (unsigned step = 0; step < kWidthSteps; ++step) {
    x = _mm_sub_epi16(_mm_add_epi8(x, y), z);
    x = _mm_mullo_epi16(x, w);
    x = _mm_add_epi32(x, _mm_slli_epi32(y, 7));
    x = _mm_add_epi64(x, _mm_srli_epi64(z, 9));
    x = _mm_shuffle_epi8(x, order);
    x = _mm_add_epi32(x, _mm_madd_epi16(x, z));
    // Widened with x, the bytes of y come back when the pairs are narrowed.
    const __m128i low = _mm_srli_epi16(_mm_unpacklo_epi8(x, y), 8),
                  high = _mm_srli_epi16(_mm_unpackhi_epi8(x, y), 8);
    x = _mm_xor_si128(x, _mm_packus_epi16(low, high));
  }
  store(results, x);
}

#define DIAGS_BLOCK(block, chain)                                                        \
  DIAGS_TARGET void block(const std::uint64_t* operands, std::uint64_t* results,         \
                          std::size_t items) {                                           \
    for (std::size_t item = 0; item < items; ++item)                                     \
      for (std::size_t i = 0; i < kVectorWords; i += kWords)                             \
        chain(operands + item * kVectorOperands + i, results + item * kVectorWords + i); \
  }

DIAGS_BLOCK(floatBlock64, floatChain64)
DIAGS_BLOCK(floatBlock32, floatChain32)
DIAGS_BLOCK(integerBlock, integerChain)
DIAGS_BLOCK(widthsBlock, widthsChain)

#undef DIAGS_BLOCK
#undef DIAGS_INLINE
#undef DIAGS_TARGET

}  // namespace

}  // namespace sse

void addSseOperations(Operations& operations) {
  using namespace sse;
  if (!features().sse41) return;
  operations.push_back(vectorInteger("Vector integers, 128 bits (SSE)", integerBlock));
  operations.push_back(
      vectorFloat64("Vectors of 64-bit floating point, 128 bits (SSE)", floatBlock64));
  operations.push_back(
      vectorFloat32("Vectors of 32-bit floating point, 128 bits (SSE)", floatBlock32));
  operations.push_back(vectorWidths("8 to 64 bits of a vector, 128 bits (SSE)", widthsBlock));
}

#else

void addSseOperations(Operations&) {}

#endif

}  // namespace providers
