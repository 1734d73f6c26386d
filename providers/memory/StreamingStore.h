#pragma once

#include <atomic>
#include <cstdint>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define DIAGS_STREAMING_STORES 1
#else
#define DIAGS_STREAMING_STORES 0
#endif

namespace providers {

/// Writes a word to memory past the caches, where the processor can do so: what is read afterwards
/// comes from memory then, not from a cache.
inline void storePastCaches(std::uint64_t* word, std::uint64_t value) {
#if DIAGS_STREAMING_STORES
  // `long long` is the type that the intrinsic is declared with.
  _mm_stream_si64(reinterpret_cast<long long*>(word), static_cast<long long>(value));
#else
  *static_cast<volatile std::uint64_t*>(word) = value;
#endif
}

/// Waits until all words are written.
inline void drainStores() {
#if DIAGS_STREAMING_STORES
  _mm_sfence();
#else
  static std::atomic<unsigned> order{0};
  order.fetch_add(1, std::memory_order_seq_cst);
#endif
}

}  // namespace providers
