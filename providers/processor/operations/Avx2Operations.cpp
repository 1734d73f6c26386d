#include "providers/processor/operations/Features.h"
#include "providers/processor/operations/OperationTable.h"
#include "providers/processor/operations/VectorChain.h"

#if DIAGS_X86
#include <immintrin.h>
#endif

// Vectors in registers of 256 bits.

namespace providers {

#if DIAGS_X86

namespace avx2 {

namespace {

#define DIAGS_TARGET __attribute__((target("avx2,fma")))
// Within the blocks: a vector never lies on the stack, which Windows does not align enough for the
// wide ones.
#define DIAGS_INLINE __attribute__((target("avx2,fma"), always_inline)) inline

constexpr std::size_t kWords = 4;

DIAGS_INLINE __m256i load(const std::uint64_t* words) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(words));
}

DIAGS_INLINE __m256d load64(const std::uint64_t* words) { return _mm256_castsi256_pd(load(words)); }

DIAGS_INLINE __m256 load32(const std::uint64_t* words) { return _mm256_castsi256_ps(load(words)); }

DIAGS_INLINE void store(std::uint64_t* words, __m256i value) {
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(words), value);
}

/// The numbers of the same fractions between 1 and 2.
DIAGS_INLINE __m256d unit(__m256d value) {
  const __m256i fraction = _mm256_and_si256(
      _mm256_castpd_si256(value), _mm256_set1_epi64x(static_cast<long long>(kFraction64)));
  return _mm256_castsi256_pd(
      _mm256_or_si256(fraction, _mm256_set1_epi64x(static_cast<long long>(kOne64))));
}

DIAGS_INLINE __m256 unit(__m256 value) {
  const __m256i fraction = _mm256_and_si256(_mm256_castps_si256(value),
                                            _mm256_set1_epi32(static_cast<int>(kFraction32)));
  return _mm256_castsi256_ps(
      _mm256_or_si256(fraction, _mm256_set1_epi32(static_cast<int>(kOne32))));
}

DIAGS_INLINE void floatChain64(const std::uint64_t* operands, std::uint64_t* results) {
  __m256d all = _mm256_setzero_pd();
  __m256d x = load64(operands);
  const __m256d y = load64(operands + kVectorWords), z = load64(operands + 2 * kVectorWords),
                w = load64(operands + 3 * kVectorWords);
  for (unsigned step = 0; step < kFloatSteps; ++step) {
    x = unit(_mm256_add_pd(_mm256_mul_pd(x, y), z));
    all = _mm256_xor_pd(all, x);
    x = unit(_mm256_div_pd(x, w));
    all = _mm256_xor_pd(all, x);
    x = unit(_mm256_add_pd(_mm256_sqrt_pd(x), y));
    all = _mm256_xor_pd(all, x);
    x = unit(_mm256_sub_pd(_mm256_add_pd(x, w), z));
    all = _mm256_xor_pd(all, x);
  }
  store(results, _mm256_castpd_si256(all));
}

DIAGS_INLINE void floatChain32(const std::uint64_t* operands, std::uint64_t* results) {
  __m256 all = _mm256_setzero_ps();
  __m256 x = load32(operands);
  const __m256 y = load32(operands + kVectorWords), z = load32(operands + 2 * kVectorWords),
               w = load32(operands + 3 * kVectorWords);
  for (unsigned step = 0; step < kFloatSteps; ++step) {
    x = unit(_mm256_add_ps(_mm256_mul_ps(x, y), z));
    all = _mm256_xor_ps(all, x);
    x = unit(_mm256_div_ps(x, w));
    all = _mm256_xor_ps(all, x);
    x = unit(_mm256_add_ps(_mm256_sqrt_ps(x), y));
    all = _mm256_xor_ps(all, x);
    x = unit(_mm256_sub_ps(_mm256_add_ps(x, w), z));
    all = _mm256_xor_ps(all, x);
  }
  store(results, _mm256_castps_si256(all));
}

DIAGS_INLINE void integerChain(const std::uint64_t* operands, std::uint64_t* results) {
  __m256i x = load(operands);
  const __m256i y = _mm256_or_si256(load(operands + kVectorWords), _mm256_set1_epi32(1)),
                z = load(operands + 2 * kVectorWords), w = load(operands + 3 * kVectorWords);
  for (unsigned step = 0; step < kIntegerSteps; ++step) {
    x = _mm256_add_epi32(_mm256_mullo_epi32(x, y), z);
    x = _mm256_xor_si256(x, _mm256_srli_epi32(x, 15));
    x = _mm256_add_epi32(x, _mm256_slli_epi32(w, 5));
    const __m256i above = _mm256_cmpgt_epi32(x, w);
    x = _mm256_add_epi32(x, _mm256_and_si256(above, z));
  }
  store(results, x);
}

DIAGS_INLINE void widthsChain(const std::uint64_t* operands, std::uint64_t* results) {
  __m256i x = load(operands);
  const __m256i y = load(operands + kVectorWords), z = load(operands + 2 * kVectorWords),
                w = _mm256_or_si256(load(operands + 3 * kVectorWords), _mm256_set1_epi16(1)),
                order = _mm256_broadcastsi128_si256(
                    _mm_load_si128(reinterpret_cast<const __m128i*>(kByteOrder.data())));
  for (unsigned step = 0; step < kWidthSteps; ++step) {
    x = _mm256_sub_epi16(_mm256_add_epi8(x, y), z);
    x = _mm256_mullo_epi16(x, w);
    x = _mm256_add_epi32(x, _mm256_slli_epi32(y, 7));
    x = _mm256_add_epi64(x, _mm256_srli_epi64(z, 9));
    x = _mm256_shuffle_epi8(x, order);
    x = _mm256_add_epi32(x, _mm256_madd_epi16(x, z));
    // Widened with x, the bytes of y come back when the pairs are narrowed.
    const __m256i low = _mm256_srli_epi16(_mm256_unpacklo_epi8(x, y), 8),
                  high = _mm256_srli_epi16(_mm256_unpackhi_epi8(x, y), 8);
    x = _mm256_xor_si256(x, _mm256_packus_epi16(low, high));
  }
  store(results, x);
}

DIAGS_INLINE void fusedChain64(const std::uint64_t* operands, std::uint64_t* results) {
  __m256d all = _mm256_setzero_pd();
  __m256d x = load64(operands);
  const __m256d y = load64(operands + kVectorWords), z = load64(operands + 2 * kVectorWords),
                w = load64(operands + 3 * kVectorWords);
  for (unsigned step = 0; step < kFusedSteps; ++step) {
    x = unit(_mm256_fmadd_pd(x, y, z));
    all = _mm256_xor_pd(all, x);
    x = unit(_mm256_fmsub_pd(x, w, y));
    all = _mm256_xor_pd(all, x);
  }
  store(results, _mm256_castpd_si256(all));
}

DIAGS_INLINE void fusedChain32(const std::uint64_t* operands, std::uint64_t* results) {
  __m256 all = _mm256_setzero_ps();
  __m256 x = load32(operands);
  const __m256 y = load32(operands + kVectorWords), z = load32(operands + 2 * kVectorWords),
               w = load32(operands + 3 * kVectorWords);
  for (unsigned step = 0; step < kFusedSteps; ++step) {
    x = unit(_mm256_fmadd_ps(x, y, z));
    all = _mm256_xor_ps(all, x);
    x = unit(_mm256_fmsub_ps(x, w, y));
    all = _mm256_xor_ps(all, x);
  }
  store(results, _mm256_castps_si256(all));
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
DIAGS_BLOCK(fusedBlock64, fusedChain64)
DIAGS_BLOCK(fusedBlock32, fusedChain32)

#undef DIAGS_BLOCK
#undef DIAGS_INLINE
#undef DIAGS_TARGET

}  // namespace

}  // namespace avx2

void addAvx2Operations(Operations& operations) {
  using namespace avx2;
  if (!features().avx2) return;
  operations.push_back(vectorInteger("Vector integers, 256 bits (AVX2)", integerBlock));
  operations.push_back(
      vectorFloat64("Vectors of 64-bit floating point, 256 bits (AVX2)", floatBlock64));
  operations.push_back(
      vectorFloat32("Vectors of 32-bit floating point, 256 bits (AVX2)", floatBlock32));
  operations.push_back(vectorWidths("8 to 64 bits of a vector, 256 bits (AVX2)", widthsBlock));
  operations.push_back(
      vectorFused64("Fused multiply-add of 64 bits, 256 bits (AVX2)", fusedBlock64));
  operations.push_back(
      vectorFused32("Fused multiply-add of 32 bits, 256 bits (AVX2)", fusedBlock32));
}

#else

void addAvx2Operations(Operations&) {}

#endif

}  // namespace providers
