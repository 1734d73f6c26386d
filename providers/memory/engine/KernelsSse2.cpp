#include "providers/memory/engine/Kernels.h"

#if defined(__SSE2__)

#include <immintrin.h>

#include "providers/memory/engine/KernelLoops.h"

namespace providers::memory {

namespace {

struct Sse2Words {
  using Value = __m128i;
  static constexpr std::size_t kWords = 2;

  static Value load(const std::uint64_t* words) {
    return _mm_load_si128(reinterpret_cast<const Value*>(words));
  }
  static Value loadAnywhere(const std::uint64_t* words) {
    return _mm_loadu_si128(reinterpret_cast<const Value*>(words));
  }
  static Value all(std::uint64_t word) { return _mm_set1_epi64x(static_cast<long long>(word)); }
  static void store(std::uint64_t* words, Value value) {
    _mm_store_si128(reinterpret_cast<Value*>(words), value);
  }
  static void stream(std::uint64_t* words, Value value) {
    _mm_stream_si128(reinterpret_cast<Value*>(words), value);
  }
  static Value add(Value a, Value b) { return _mm_add_epi64(a, b); }
  static Value exclusive(Value a, Value b) { return _mm_xor_si128(a, b); }
  static Value either(Value a, Value b) { return _mm_or_si128(a, b); }
  static Value multiplyLow(Value a, Value b) { return _mm_mul_epu32(a, b); }
  static Value swapHalves(Value a) { return _mm_shuffle_epi32(a, _MM_SHUFFLE(2, 3, 0, 1)); }
  static Value upperHalves(Value a) { return _mm_srli_epi64(a, 32); }
  static bool isZero(Value a) {
    return _mm_movemask_epi8(_mm_cmpeq_epi32(a, _mm_setzero_si128())) == 0xFFFF;
  }
  static void drain() { _mm_sfence(); }
};

}  // namespace

const Kernels* sse2Kernels() {
  static constexpr Kernels kKernels = kernelsOf<Sse2Words>("SSE2");
  return &kKernels;
}

}  // namespace providers::memory

#else

namespace providers::memory {

const Kernels* sse2Kernels() { return nullptr; }

}  // namespace providers::memory

#endif
