#include <array>
#include <cstring>

#include "providers/common/SplitMix.h"
#include "providers/processor/Operations.h"

#if (defined(__GNUC__) || defined(__clang__)) && defined(__x86_64__)
#include <immintrin.h>
#define DIAGS_WIDE_VECTORS 1
#else
#define DIAGS_WIDE_VECTORS 0
#endif

namespace providers {

namespace {

constexpr std::size_t kLanes = 1024;
constexpr std::uint64_t kRuns = 40;

using Numbers = std::array<std::uint32_t, kLanes>;

Numbers makeNumbers(std::uint64_t seed) {
  Numbers numbers{};
  for (std::size_t i = 0; i < kLanes; ++i)
    numbers[i] = static_cast<std::uint32_t>(splitMix(seed, i) >> 32);
  return numbers;
}

/// The result for one lane, which no compiler turns into a vector operation: the steps go through
/// a volatile variable.
std::uint32_t oneByOne(std::uint32_t a, std::uint32_t b) {
  volatile std::uint32_t value = a;
  value = value * b;
  value = value + (b << 7);
  value = value ^ (a >> 3);
  return value;
}

/// The same for all lanes, in the form that compilers make vector operations of.
void allAtOnce(const Numbers& a, const Numbers& b, Numbers& result) {
  for (std::size_t i = 0; i < kLanes; ++i) result[i] = (a[i] * b[i] + (b[i] << 7)) ^ (a[i] >> 3);
}

std::optional<Mismatch> check(const Numbers& a, const Numbers& b, const Numbers& result,
                              ResultTap& tap) {
  for (std::size_t i = 0; i < kLanes; ++i) {
    if (const auto wrong = compare(oneByOne(a[i], b[i]), tap.pass(result[i]))) return wrong;
  }
  return std::nullopt;
}

template <class Calculation>
std::optional<Mismatch> calculate(std::uint64_t seed, ResultTap& tap, Calculation calculation) {
  Numbers result{};
  for (std::uint64_t run = 0; run < kRuns; ++run) {
    const Numbers a = makeNumbers(splitMix(seed, 2 * run));
    const Numbers b = makeNumbers(splitMix(seed, 2 * run + 1));
    calculation(a, b, result);
    if (const auto wrong = check(a, b, result, tap)) return wrong;
  }
  return std::nullopt;
}

#if DIAGS_WIDE_VECTORS

__attribute__((target("avx2"))) void allAtOnceWide(const Numbers& a, const Numbers& b,
                                                   Numbers& result) {
  constexpr std::size_t kWidth = 8;
  for (std::size_t i = 0; i < kLanes; i += kWidth) {
    const __m256i x = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(a.data() + i));
    const __m256i y = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(b.data() + i));
    const __m256i sum = _mm256_add_epi32(_mm256_mullo_epi32(x, y), _mm256_slli_epi32(y, 7));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(result.data() + i),
                        _mm256_xor_si256(sum, _mm256_srli_epi32(x, 3)));
  }
}

/// The rounding errors of four products.
__attribute__((target("avx2,fma"))) void fusedErrors(const double* x, const double* y,
                                                     double* errors) {
  const __m256d left = _mm256_loadu_pd(x), right = _mm256_loadu_pd(y);
  const __m256d product = _mm256_mul_pd(left, right);
  _mm256_storeu_pd(errors, _mm256_fmsub_pd(left, right, product));
}

#endif

}  // namespace

std::optional<Mismatch> calculateVectors(std::uint64_t seed, ResultTap& tap) {
  return calculate(seed, tap, allAtOnce);
}

#if DIAGS_WIDE_VECTORS

bool hasWideVectors() { return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma"); }

std::optional<Mismatch> calculateWideVectors(std::uint64_t seed, ResultTap& tap) {
  return calculate(seed, tap, allAtOnceWide);
}

std::optional<Mismatch> fuseMultiplyAdd(std::uint64_t seed, ResultTap& tap) {
  constexpr std::size_t kWidth = 4;
  constexpr std::uint64_t kFusedRuns = 10000;
  // Factors of 31 bits: their product fits 64 bits but not a double, whose error is then known.
  constexpr unsigned kDropped = 33;
  for (std::uint64_t run = 0; run < kFusedRuns; ++run) {
    std::uint64_t a[kWidth], b[kWidth];
    double x[kWidth], y[kWidth], errors[kWidth];
    for (std::size_t i = 0; i < kWidth; ++i) {
      a[i] = splitMix(seed, (run * kWidth + i) * 2) >> kDropped;
      b[i] = splitMix(seed, (run * kWidth + i) * 2 + 1) >> kDropped;
      x[i] = static_cast<double>(a[i]);
      y[i] = static_cast<double>(b[i]);
    }
    fusedErrors(x, y, errors);
    for (std::size_t i = 0; i < kWidth; ++i) {
      const std::uint64_t product = a[i] * b[i];
      const auto rounded = static_cast<std::uint64_t>(static_cast<double>(product));
      const auto error = static_cast<std::uint64_t>(static_cast<std::int64_t>(errors[i]));
      if (const auto wrong = compare(product - rounded, tap.pass(error))) return wrong;
    }
  }
  return std::nullopt;
}

#else

bool hasWideVectors() { return false; }

std::optional<Mismatch> calculateWideVectors(std::uint64_t seed, ResultTap& tap) {
  return calculateVectors(seed, tap);
}

std::optional<Mismatch> fuseMultiplyAdd(std::uint64_t seed, ResultTap& tap) {
  return roundProducts(seed, tap);
}

#endif

}  // namespace providers
