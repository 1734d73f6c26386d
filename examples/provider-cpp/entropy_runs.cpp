#include "entropy_runs.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <random>

namespace {

constexpr std::size_t kKeptRuns = 16;
constexpr unsigned kBlocks = 2000;
constexpr int kBitsInBlock = 20000;
// Seven standard deviations from the mean, and a chance of one in 10^10: good sources stay inside.
constexpr int kMostDeviation = 500;
constexpr int kLongestRun = 48;

struct Measurement {
  unsigned blocks = 0, errors = 0;
  int deviation = 0, longestRun = 0;
};

/// Reads one block and counts its ones and its longest run of equal bits.
void readBlock(std::random_device& source, Measurement& all) {
  int ones = 0, length = 0, longest = 0;
  unsigned previous = 2;
  for (int read = 0; read < kBitsInBlock; read += 32) {
    unsigned word = source();
    for (int bit = 0; bit < 32; ++bit, word >>= 1) {
      const unsigned value = word & 1U;
      ones += static_cast<int>(value);
      length = value == previous ? length + 1 : 1;
      longest = std::max(longest, length);
      previous = value;
    }
  }
  const int deviation = std::abs(ones - kBitsInBlock / 2);
  ++all.blocks;
  if (deviation > kMostDeviation || longest > kLongestRun) ++all.errors;
  all.deviation = std::max(all.deviation, deviation);
  all.longestRun = std::max(all.longestRun, longest);
}

CMPIUint64 currentTime(const CMPIBroker* broker) {
  const Owned<CMPIDateTime> now(CMNewDateTime(broker, nullptr));
  return now ? CMGetBinaryFormat(now.get(), nullptr) : 0;
}

std::string newId() {
  std::random_device random;
  char text[64];
  std::snprintf(text, sizeof text, "ACME:entropy-%08x%08x", random(), random());
  return text;
}

std::string count(unsigned number, const char* what) { return std::to_string(number) + what; }

}  // namespace

std::string EntropyRuns::start(const CMPIContext* context) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  if (!m_runs.empty() && !m_runs.back()->state.ended) return std::string();
  if (m_runs.size() == kKeptRuns) {
    m_runs.front()->thread.join();
    m_runs.erase(m_runs.begin());
  }
  auto run = std::make_unique<Run>();
  run->state.id = newId();
  CMPIContext* const own = CBPrepareAttachThread(m_broker, context);
  run->thread = std::thread([this, own, &started = *run] {
    const AttachedThread attached(m_broker, own);
    work(started);
  });
  m_runs.push_back(std::move(run));
  return m_runs.back()->state.id;
}

bool EntropyRuns::stop(const std::string& id) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  for (const auto& run : m_runs) {
    if (run->state.id != id || run->state.ended) continue;
    run->stopRequested = true;
    run->state.jobState = JobState::ShuttingDown;
    return true;
  }
  return false;
}

std::vector<RunState> EntropyRuns::states() const {
  const std::lock_guard<std::mutex> lock(m_mutex);
  std::vector<RunState> states;
  for (const auto& run : m_runs) states.push_back(run->state);
  return states;
}

void EntropyRuns::endAll() {
  std::vector<std::unique_ptr<Run>> ending;
  {
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (const auto& run : m_runs) run->stopRequested = true;
    ending.swap(m_runs);
  }
  // Without the lock, which the threads need to end.
  for (const auto& run : ending) run->thread.join();
}

/// Answers whether the run is to go on. 100 % is kept for the end.
bool EntropyRuns::showProgress(Run& run, unsigned blocksDone) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  run.state.percent = static_cast<CMPIUint16>(99 * blocksDone / kBlocks);
  return !run.stopRequested;
}

void EntropyRuns::work(Run& run) {
  Measurement all;
  std::string trouble;
  try {
    std::random_device source;
    while (all.blocks < kBlocks && showProgress(run, all.blocks)) readBlock(source, all);
  } catch (const std::exception& error) {
    trouble = std::string("\nThe source cannot be read: ") + error.what();
    ++all.errors;
  }
  const CMPIUint64 now = currentTime(m_broker);
  // Records and end state appear together: who sees the job at its end finds the records.
  const std::lock_guard<std::mutex> lock(m_mutex);
  RunState& state = run.state;
  const bool stopped = all.errors == 0 && all.blocks < kBlocks;
  state.verdict = all.errors > 0 ? Verdict::Failed : stopped ? Verdict::Aborted : Verdict::Ok;
  state.summary = count(all.blocks, " blocks of 20000 bits, ") + count(all.errors, " errors");
  state.summary += trouble;
  state.results = "|" + std::to_string(all.deviation) + "|bits|" + std::to_string(kMostDeviation) +
                  "|" + std::to_string(all.longestRun) + "|bits|" + std::to_string(kLongestRun) +
                  "|" + std::to_string(all.errors) + "|0";
  state.percent = 100;
  state.jobState = stopped ? JobState::Terminated : JobState::Completed;
  state.ended = true;
  state.endedAt = now;
}
