#include "providers/processor/operations/Features.h"
#include "providers/processor/operations/OperationTable.h"
#include "providers/processor/operations/VectorChain.h"

#if DIAGS_X86
#include <immintrin.h>
#endif

// Vectors in registers of 512 bits.

namespace providers {

#if DIAGS_X86

namespace avx512 {

namespace {

#define DIAGS_TARGET __attribute__((target("avx512f,avx512bw,avx512dq")))
// Within the blocks: a vector never lies on the stack, which Windows does not align enough for the
// wide ones.
#define DIAGS_INLINE __attribute__((target("avx512f,avx512bw,avx512dq"), always_inline)) inline

constexpr std::size_t kWords = 8;

DIAGS_INLINE __m512i load(const std::uint64_t* words) {
  return _mm512_loadu_si512(reinterpret_cast<const __m512i*>(words));
}

DIAGS_INLINE __m512d load64(const std::uint64_t* words) { return _mm512_castsi512_pd(load(words)); }

DIAGS_INLINE __m512 load32(const std::uint64_t* words) { return _mm512_castsi512_ps(load(words)); }

DIAGS_INLINE void store(std::uint64_t* words, __m512i value) {
  _mm512_storeu_si512(reinterpret_cast<__m512i*>(words), value);
}

/// The numbers of the same fractions between 1 and 2.
DIAGS_INLINE __m512d unit(__m512d value) {
  const __m512i fraction = _mm512_and_si512(_mm512_castpd_si512(value),
                                            _mm512_set1_epi64(static_cast<long long>(kFraction64)));
  return _mm512_castsi512_pd(
      _mm512_or_si512(fraction, _mm512_set1_epi64(static_cast<long long>(kOne64))));
}

DIAGS_INLINE __m512 unit(__m512 value) {
  const __m512i fraction = _mm512_and_si512(_mm512_castps_si512(value),
                                            _mm512_set1_epi32(static_cast<int>(kFraction32)));
  return _mm512_castsi512_ps(
      _mm512_or_si512(fraction, _mm512_set1_epi32(static_cast<int>(kOne32))));
}

DIAGS_INLINE void floatChain64(const std::uint64_t* operands, std::uint64_t* results) {
  __m512d all = _mm512_setzero_pd();
  __m512d x = load64(operands);
  const __m512d y = load64(operands + kVectorWords), z = load64(operands + 2 * kVectorWords),
                w = load64(operands + 3 * kVectorWords);
  for (unsigned step = 0; step < kFloatSteps; ++step) {
    x = unit(_mm512_add_pd(_mm512_mul_pd(x, y), z));
    all = _mm512_xor_pd(all, x);
    x = unit(_mm512_div_pd(x, w));
    all = _mm512_xor_pd(all, x);
    x = unit(_mm512_add_pd(_mm512_sqrt_pd(x), y));
    all = _mm512_xor_pd(all, x);
    x = unit(_mm512_sub_pd(_mm512_add_pd(x, w), z));
    all = _mm512_xor_pd(all, x);
  }
  store(results, _mm512_castpd_si512(all));
}

DIAGS_INLINE void floatChain32(const std::uint64_t* operands, std::uint64_t* results) {
  __m512 all = _mm512_setzero_ps();
  __m512 x = load32(operands);
  const __m512 y = load32(operands + kVectorWords), z = load32(operands + 2 * kVectorWords),
               w = load32(operands + 3 * kVectorWords);
  for (unsigned step = 0; step < kFloatSteps; ++step) {
    x = unit(_mm512_add_ps(_mm512_mul_ps(x, y), z));
    all = _mm512_xor_ps(all, x);
    x = unit(_mm512_div_ps(x, w));
    all = _mm512_xor_ps(all, x);
    x = unit(_mm512_add_ps(_mm512_sqrt_ps(x), y));
    all = _mm512_xor_ps(all, x);
    x = unit(_mm512_sub_ps(_mm512_add_ps(x, w), z));
    all = _mm512_xor_ps(all, x);
  }
  store(results, _mm512_castps_si512(all));
}

DIAGS_INLINE void integerChain(const std::uint64_t* operands, std::uint64_t* results) {
  __m512i x = load(operands);
  const __m512i y = _mm512_or_si512(load(operands + kVectorWords), _mm512_set1_epi32(1)),
                z = load(operands + 2 * kVectorWords), w = load(operands + 3 * kVectorWords);
  for (unsigned step = 0; step < kIntegerSteps; ++step) {
    x = _mm512_add_epi32(_mm512_mullo_epi32(x, y), z);
    x = _mm512_xor_si512(x, _mm512_srli_epi32(x, 15));
    x = _mm512_add_epi32(x, _mm512_slli_epi32(w, 5));
    x = _mm512_mask_add_epi32(x, _mm512_cmpgt_epi32_mask(x, w), x, z);
  }
  store(results, x);
}

DIAGS_INLINE void widthsChain(const std::uint64_t* operands, std::uint64_t* results) {
  __m512i x = load(operands);
  const __m512i y = load(operands + kVectorWords), z = load(operands + 2 * kVectorWords),
                w = _mm512_or_si512(load(operands + 3 * kVectorWords), _mm512_set1_epi16(1)),
                order = _mm512_broadcast_i32x4(
                    _mm_load_si128(reinterpret_cast<const __m128i*>(kByteOrder.data())));
  for (unsigned step = 0; step < kWidthSteps; ++step) {
    x = _mm512_sub_epi16(_mm512_add_epi8(x, y), z);
    x = _mm512_mullo_epi16(x, w);
    x = _mm512_add_epi32(x, _mm512_slli_epi32(y, 7));
    x = _mm512_add_epi64(x, _mm512_srli_epi64(z, 9));
    x = _mm512_shuffle_epi8(x, order);
    x = _mm512_add_epi32(x, _mm512_madd_epi16(x, z));
    // Widened with x, the bytes of y come back when the pairs are narrowed.
    const __m512i low = _mm512_srli_epi16(_mm512_unpacklo_epi8(x, y), 8),
                  high = _mm512_srli_epi16(_mm512_unpackhi_epi8(x, y), 8);
    x = _mm512_xor_si512(x, _mm512_packus_epi16(low, high));
  }
  store(results, x);
}

DIAGS_INLINE void fusedChain64(const std::uint64_t* operands, std::uint64_t* results) {
  __m512d all = _mm512_setzero_pd();
  __m512d x = load64(operands);
  const __m512d y = load64(operands + kVectorWords), z = load64(operands + 2 * kVectorWords),
                w = load64(operands + 3 * kVectorWords);
  for (unsigned step = 0; step < kFusedSteps; ++step) {
    x = unit(_mm512_fmadd_pd(x, y, z));
    all = _mm512_xor_pd(all, x);
    x = unit(_mm512_fmsub_pd(x, w, y));
    all = _mm512_xor_pd(all, x);
  }
  store(results, _mm512_castpd_si512(all));
}

DIAGS_INLINE void fusedChain32(const std::uint64_t* operands, std::uint64_t* results) {
  __m512 all = _mm512_setzero_ps();
  __m512 x = load32(operands);
  const __m512 y = load32(operands + kVectorWords), z = load32(operands + 2 * kVectorWords),
               w = load32(operands + 3 * kVectorWords);
  for (unsigned step = 0; step < kFusedSteps; ++step) {
    x = unit(_mm512_fmadd_ps(x, y, z));
    all = _mm512_xor_ps(all, x);
    x = unit(_mm512_fmsub_ps(x, w, y));
    all = _mm512_xor_ps(all, x);
  }
  store(results, _mm512_castps_si512(all));
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

}  // namespace avx512

void addAvx512Operations(Operations& operations) {
  using namespace avx512;
  if (!features().avx512) return;
  operations.push_back(vectorInteger("Vector integers, 512 bits (AVX-512)", integerBlock));
  operations.push_back(
      vectorFloat64("Vectors of 64-bit floating point, 512 bits (AVX-512)", floatBlock64));
  operations.push_back(
      vectorFloat32("Vectors of 32-bit floating point, 512 bits (AVX-512)", floatBlock32));
  operations.push_back(vectorWidths("8 to 64 bits of a vector, 512 bits (AVX-512)", widthsBlock));
  operations.push_back(
      vectorFused64("Fused multiply-add of 64 bits, 512 bits (AVX-512)", fusedBlock64));
  operations.push_back(
      vectorFused32("Fused multiply-add of 32 bits, 512 bits (AVX-512)", fusedBlock32));
}

#else

void addAvx512Operations(Operations&) {}

#endif

}  // namespace providers
