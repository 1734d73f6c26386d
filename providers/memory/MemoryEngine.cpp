#include "providers/memory/MemoryEngine.h"

#include <algorithm>
#include <array>
#include <utility>

#include "providers/common/SplitMix.h"
#include "providers/memory/StreamingStore.h"

namespace providers {

namespace {

/// Words are written a cache line at a time: a line that is half written past the caches would have
/// to be read again for its other half.
constexpr std::size_t kLineWords = 8;
constexpr std::size_t kBlockWords = std::size_t{512} * 1024;  // between two looks at the clock
constexpr std::size_t kSmallestCount = std::size_t{2} * 1024 * 1024;
constexpr std::size_t kKeptFaults = 16;
constexpr unsigned kSweepsPerPattern = 4;
constexpr unsigned kMostRounds = 1000;
constexpr std::array<const char*, 5> kPatternNames{"Walking ones and zeros", "Self addressing",
                                                   "Moving inversions", "Checkerboard", "Random"};

struct WalkingBit {
  unsigned shift;
  std::uint64_t operator()(const std::uint64_t*, std::size_t index) const {
    constexpr std::uint64_t kBits = 64;
    return std::uint64_t{1} << ((index + shift) % kBits);
  }
};

struct OwnAddress {
  std::uint64_t operator()(const std::uint64_t* words, std::size_t index) const {
    return static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(words + index));
  }
};

struct Constant {
  std::uint64_t value;
  std::uint64_t operator()(const std::uint64_t*, std::size_t) const { return value; }
};

struct Alternating {
  std::uint64_t value;
  std::uint64_t operator()(const std::uint64_t*, std::size_t index) const {
    return index % 2 ? ~value : value;
  }
};

/// A random number for each index, so that none has to be kept.
struct Random {
  std::uint64_t seed;
  std::uint64_t operator()(const std::uint64_t*, std::size_t index) const {
    return splitMix(seed, index);
  }
};

template <class Generator>
struct Inverted {
  const Generator& generator;
  std::uint64_t operator()(const std::uint64_t* words, std::size_t index) const {
    return ~generator(words, index);
  }
};

template <class Generator>
void writeLine(std::uint64_t* words, std::size_t first, const Generator& generator) {
  for (std::size_t i = first; i < first + kLineWords; ++i)
    storePastCaches(words + i, generator(words, i));
}

}  // namespace

void WriteBufferSettler::settle(std::uint64_t*, std::size_t) { drainStores(); }

MemoryEngine::MemoryEngine(std::uint64_t* words, std::size_t count, MemorySettler& settler,
                           Clock clock)
    : m_words(words),
      m_count(count - count % kLineWords),
      m_settler(settler),
      m_clock(std::move(clock)) {}

MemoryReport MemoryEngine::run(const MemoryPlan& plan, RunControl& control) {
  m_plan = plan;
  m_control = &control;
  m_report = {};
  for (const char* name : kPatternNames) m_report.patterns.push_back({name, 0, 0, 0});
  for (unsigned round = 0; round < m_rounds && runRound(round); ++round) ++m_report.rounds;
  m_report.testedBytes = std::uint64_t{m_count} * sizeof(std::uint64_t);
  return m_report;
}

bool MemoryEngine::runRound(unsigned round) {
  constexpr unsigned kWalkPerRound = 7;  // odd: after 64 rounds a word has seen every bit
  constexpr std::uint64_t kHalf = 0x5555555555555555ULL;
  const std::uint64_t inTurn = round % 2 ? kHalf : 0;
  return runPattern(0, WalkingBit{round * kWalkPerRound}) && runPattern(1, OwnAddress{}) &&
         runPattern(2, Constant{inTurn}) && runPattern(3, Alternating{kHalf}) &&
         runPattern(4, Random{m_plan.seed + round});
}

template <class Generator>
bool MemoryEngine::runPattern(std::size_t index, const Generator& generator) {
  const Inverted<Generator> inverse{generator};
  const double begin = m_clock();
  m_control->status(m_report.patterns[index].name);
  const bool whole = sweep(index, false,
                           [&](std::size_t line) {
                             writeLine(m_words, line, generator);
                             return true;
                           }) &&
                     sweep(index, false,
                           [&](std::size_t line) {
                             const bool good = checkLine(index, m_words, line, generator);
                             writeLine(m_words, line, inverse);
                             return good;
                           }) &&
                     sweep(index, true,
                           [&](std::size_t line) {
                             const bool good = checkLine(index, m_words, line, inverse);
                             writeLine(m_words, line, generator);
                             return good;
                           }) &&
                     sweep(index, false, [&](std::size_t line) {
                       return checkLine(index, m_words, line, generator);
                     });
  const double seconds = m_clock() - begin;
  m_report.patterns[index].seconds += seconds;
  if (whole && index == 0 && m_report.rounds == 0) planRounds(seconds);
  return whole;
}

/// Goes over all lines. False when the run is to end: on request, or at an error where that is
/// wanted.
template <class Work>
bool MemoryEngine::sweep(std::size_t index, bool downward, const Work& work) {
  bool good = true;
  const std::size_t lines = m_count / kLineWords;
  for (std::size_t i = 0; i < lines; ++i) {
    const std::size_t line = downward ? lines - 1 - i : i;
    good = work(line * kLineWords) && good;
    ++m_linesDone;
    const bool blockEnds = (i + 1) % (kBlockWords / kLineWords) == 0;
    if ((blockEnds && !goesOn()) || (!good && m_plan.haltOnError)) return false;
  }
  m_report.patterns[index].bytes += std::uint64_t{m_count} * sizeof(std::uint64_t);
  m_settler.settle(m_words, m_count);
  return goesOn();
}

template <class Generator>
bool MemoryEngine::checkLine(std::size_t index, std::uint64_t* words, std::size_t first,
                             const Generator& generator) {
  std::uint64_t difference = 0;
  for (std::size_t i = first; i < first + kLineWords; ++i)
    difference |= words[i] ^ generator(words, i);
  if (difference == 0) return true;
  for (std::size_t i = first; i < first + kLineWords; ++i) {
    const std::uint64_t expected = generator(words, i);
    const std::uint64_t actual = words[i];
    if (actual != expected) addFault(index, i, expected, actual);
  }
  return false;
}

void MemoryEngine::addFault(std::size_t index, std::size_t word, std::uint64_t expected,
                            std::uint64_t actual) {
  PatternResult& pattern = m_report.patterns[index];
  ++pattern.errors;
  ++m_report.errors;
  if (m_report.faults.size() < kKeptFaults)
    m_report.faults.push_back(
        {pattern.name, std::uint64_t{word} * sizeof(std::uint64_t), expected, actual});
}

/// How many rounds fit into the time, by the time that the first pattern took. Where not even one
/// does, the rest of the run goes over less memory.
void MemoryEngine::planRounds(double patternSeconds) {
  const double roundSeconds = patternSeconds * static_cast<double>(kPatternNames.size());
  m_planned = true;
  if (roundSeconds <= 0) {
    m_rounds = 1;
  } else if (roundSeconds > m_plan.targetSeconds) {
    const double share = m_plan.targetSeconds / roundSeconds;
    const auto count = static_cast<std::size_t>(static_cast<double>(m_count) * share);
    m_count = std::min(m_count, std::max(kSmallestCount, count - count % kLineWords));
  } else {
    const double rounds = m_plan.targetSeconds / roundSeconds + 0.5;
    m_rounds = static_cast<unsigned>(std::clamp(rounds, 1.0, static_cast<double>(kMostRounds)));
  }
}

bool MemoryEngine::goesOn() {
  const std::uint64_t sweeps = std::uint64_t{m_rounds} * kPatternNames.size() * kSweepsPerPattern;
  const std::uint64_t lines = m_count / kLineWords;
  const double planned = static_cast<double>(sweeps * lines);
  const double fraction = static_cast<double>(m_linesDone) / planned;
  // Before the first pattern has told the speed, the rounds are not known: begin carefully.
  const double careful = m_planned ? fraction : fraction / 2;
  m_progress = std::clamp(careful, m_progress, 1.0);
  m_control->progress(m_progress);
  if (m_control->stopRequested()) m_report.stopped = true;
  return !m_report.stopped;
}

}  // namespace providers
