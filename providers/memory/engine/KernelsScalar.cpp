#include <atomic>

#include "providers/memory/engine/KernelLoops.h"

namespace providers::memory {

namespace {

/// For any processor.
struct PlainWord {
  using Value = std::uint64_t;
  static constexpr std::size_t kWords = 1;

  static Value load(const std::uint64_t* words) {
    return *static_cast<const volatile std::uint64_t*>(words);
  }
  static Value loadAnywhere(const std::uint64_t* words) { return *words; }
  static Value all(std::uint64_t word) { return word; }
  static void stream(std::uint64_t* words, Value value) { store(words, value); }
  static void store(std::uint64_t* words, Value value) {
    *static_cast<volatile std::uint64_t*>(words) = value;
  }
  static Value add(Value a, Value b) { return a + b; }
  static Value exclusive(Value a, Value b) { return a ^ b; }
  static Value either(Value a, Value b) { return a | b; }
  static Value multiplyLow(Value a, Value b) { return (a & 0xFFFFFFFFU) * (b & 0xFFFFFFFFU); }
  static Value swapHalves(Value a) { return a << 32U | a >> 32U; }
  static Value upperHalves(Value a) { return a >> 32U; }
  static bool isZero(Value a) { return a == 0; }
  static void drain() { std::atomic_thread_fence(std::memory_order_seq_cst); }
};

}  // namespace

const Kernels* scalarKernels() {
  static constexpr Kernels kKernels = kernelsOf<PlainWord>("plain");
  return &kKernels;
}

}  // namespace providers::memory
