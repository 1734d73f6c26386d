#include "providers/memory/engine/Kernels.h"

#if defined(__AVX2__)

#include <immintrin.h>

#include "providers/memory/engine/KernelLoops.h"

namespace providers::memory {

namespace {

struct Avx2Words {
  using Value = __m256i;
  static constexpr std::size_t kWords = 4;

  static Value load(const std::uint64_t* words) {
    return _mm256_load_si256(reinterpret_cast<const Value*>(words));
  }
  static Value loadAnywhere(const std::uint64_t* words) {
    return _mm256_loadu_si256(reinterpret_cast<const Value*>(words));
  }
  static Value all(std::uint64_t word) { return _mm256_set1_epi64x(static_cast<long long>(word)); }
  static void store(std::uint64_t* words, Value value) {
    _mm256_store_si256(reinterpret_cast<Value*>(words), value);
  }
  static void stream(std::uint64_t* words, Value value) {
    _mm256_stream_si256(reinterpret_cast<Value*>(words), value);
  }
  static Value add(Value a, Value b) { return _mm256_add_epi64(a, b); }
  static Value exclusive(Value a, Value b) { return _mm256_xor_si256(a, b); }
  static Value either(Value a, Value b) { return _mm256_or_si256(a, b); }
  static Value multiplyLow(Value a, Value b) { return _mm256_mul_epu32(a, b); }
  static Value swapHalves(Value a) { return _mm256_shuffle_epi32(a, _MM_SHUFFLE(2, 3, 0, 1)); }
  static Value upperHalves(Value a) { return _mm256_srli_epi64(a, 32); }
  static bool isZero(Value a) { return _mm256_testz_si256(a, a) != 0; }
  static void drain() { _mm_sfence(); }
};

}  // namespace

const Kernels* avx2Kernels() {
  static constexpr Kernels kKernels = kernelsOf<Avx2Words>("AVX2");
  return &kKernels;
}

}  // namespace providers::memory

#else

namespace providers::memory {

const Kernels* avx2Kernels() { return nullptr; }

}  // namespace providers::memory

#endif
