// Each memory test beside a plain copy of as much memory, on as many threads, in turns.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "providers/common/RunSources.h"
#include "providers/memory/engine/MemoryEngine.h"

#ifdef __linux__
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace {

using namespace providers;
using namespace providers::memory;

constexpr double kGoal = 0.85;
constexpr const char* kNames[] = {
    "Data Bus Walking 1s",  "Address Bus Walking 1s",   "Power-of-Two Addressing",
    "Self Addressing",      "Increment and Decrement",  "Moving Inversions 0s",
    "Moving Inversions 1s", "Moving Inversions Random", "Bit Fade"};

struct Silent : RunControl {
  void progress(double) override {}
  void status(const std::string&) override {}
  bool stopRequested() const override { return false; }
};

struct NoRest : Resting {
  void rest(double) override {}
};

std::uint64_t* allocate(std::size_t bytes) {
  constexpr std::size_t kHugePage = std::size_t{2} << 20;
  void* const words = std::aligned_alloc(kHugePage, bytes);
#ifdef __linux__
  madvise(words, bytes, MADV_HUGEPAGE);
#endif
  std::memset(words, 1, bytes);
  return static_cast<std::uint64_t*>(words);
}

std::size_t cacheBytes() {
#ifdef __linux__
  return static_cast<std::size_t>(std::max(0L, sysconf(_SC_LEVEL3_CACHE_SIZE)));
#else
  return std::size_t{64} << 20;
#endif
}

/// Options are for other benchmarks.
unsigned long numberOr(const char* text, unsigned long fallback) {
  const unsigned long number = std::strtoul(text, nullptr, 10);
  return number ? number : fallback;
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

class Bench {
 public:
  explicit Bench(std::size_t mebibytes)
      : m_bytes(mebibytes << 20),
        m_team(std::max(1U, std::thread::hardware_concurrency()), [](unsigned) {}),
        m_words(allocate(m_bytes)),
        m_copy(allocate(m_bytes)) {}

  /// Bytes a second, over all of the memory.
  double copy() {
    const std::size_t part = m_bytes / m_team.size() / kLineBytes * kLineBytes;
    const double begin = steadySeconds();
    m_team.run(
        [&](unsigned thread) {
          std::memcpy(reinterpret_cast<char*>(m_copy) + part * thread,
                      reinterpret_cast<const char*>(m_words) + part * thread, part);
        },
        [] {});
    return static_cast<double>(part * m_team.size()) / (steadySeconds() - begin);
  }

  /// Bytes a second that were written and then checked.
  double test(TestType type) {
    const std::size_t count = m_bytes / sizeof(std::uint64_t);
    EngineSetup setup;
    setup.regions = evenRegions(count, m_team.size());
    setup.kernels = &bestKernels();
    setup.cacheBytes = cacheBytes();
    setup.clock = steadySeconds;
    NoRest rest;
    Silent control;
    MemoryEngine engine(m_words, count, m_team, rest, setup);
    const MemoryReport report = engine.run(makeSequence(type, {m_words, count, 1, 0}), control);
    if (report.errors) std::printf("%llu errors\n", static_cast<unsigned long long>(report.errors));
    return static_cast<double>(report.bytesChecked) / report.seconds;
  }

 private:
  std::size_t m_bytes;
  ThreadTeam m_team;
  std::uint64_t* m_words;
  std::uint64_t* m_copy;
};

}  // namespace

/// The arguments: how many MiB (512), how many rounds (5).
int main(int argc, char** argv) {
  const std::size_t mebibytes = numberOr(argc > 1 ? argv[1] : "", 512);
  const unsigned long rounds = numberOr(argc > 2 ? argv[2] : "", 5);
  Bench bench(mebibytes);
  std::printf("%zu MiB, %s\n%-26s %10s %10s %6s\n", mebibytes, bestKernels().name, "test", "GB/s",
              "copy GB/s", "ratio");
  bool met = true;
  for (const TestType type : kAllTestTypes) {
    std::vector<double> tests, copies, ratios;
    for (unsigned long i = 0; i < rounds; ++i) {
      // Before and after, so that a machine that changes its speed does so on both sides.
      const double before = bench.copy();
      tests.push_back(bench.test(type));
      copies.push_back((before + bench.copy()) / 2);
      ratios.push_back(tests.back() / copies.back());
    }
    met = met && median(ratios) >= kGoal;
    std::printf("%-26s %10.2f %10.2f %6.2f\n", kNames[static_cast<int>(type)], median(tests) / 1e9,
                median(copies) / 1e9, median(ratios));
  }
  std::printf("goal %.2f: %s\n", kGoal, met ? "met" : "not met");
  return met ? EXIT_SUCCESS : EXIT_FAILURE;
}
