#include "providers/memory/engine/Kernels.h"

#if defined(__AVX512F__)

#include <immintrin.h>

#include "providers/memory/engine/KernelLoops.h"

namespace providers::memory {

namespace {

struct Avx512Words {
  using Value = __m512i;
  static constexpr std::size_t kWords = 8;

  static Value load(const std::uint64_t* words) { return _mm512_load_si512(words); }
  static Value loadAnywhere(const std::uint64_t* words) { return _mm512_loadu_si512(words); }
  static Value all(std::uint64_t word) { return _mm512_set1_epi64(static_cast<long long>(word)); }
  static void store(std::uint64_t* words, Value value) { _mm512_store_si512(words, value); }
  static void stream(std::uint64_t* words, Value value) {
    _mm512_stream_si512(reinterpret_cast<Value*>(words), value);
  }
  static Value add(Value a, Value b) { return _mm512_add_epi64(a, b); }
  static Value exclusive(Value a, Value b) { return _mm512_xor_si512(a, b); }
  static Value either(Value a, Value b) { return _mm512_or_si512(a, b); }
  static Value multiplyLow(Value a, Value b) { return _mm512_mul_epu32(a, b); }
  static Value swapHalves(Value a) { return _mm512_shuffle_epi32(a, _MM_PERM_CDAB); }
  static Value upperHalves(Value a) { return _mm512_srli_epi64(a, 32); }
  static bool isZero(Value a) { return _mm512_test_epi64_mask(a, a) == 0; }
  static void drain() { _mm_sfence(); }
};

}  // namespace

const Kernels* avx512Kernels() {
  static constexpr Kernels kKernels = kernelsOf<Avx512Words>("AVX-512");
  return &kKernels;
}

}  // namespace providers::memory

#else

namespace providers::memory {

const Kernels* avx512Kernels() { return nullptr; }

}  // namespace providers::memory

#endif
