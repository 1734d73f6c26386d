#include "providers/processor/ProcessorEngine.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "providers/common/SplitMix.h"
#include "providers/processor/CoherencyCheck.h"

namespace providers {

namespace {

constexpr double kCalculationShare = 0.9;  // of the time and the progress; the rest is for messages
constexpr std::size_t kKeptFaults = 16;
constexpr std::uint64_t kExchanges = 20000;
constexpr auto kLookInterval = std::chrono::milliseconds(50);

/// One run: what its threads share.
class Run {
 public:
  Run(const ProcessorSurroundings& surroundings, const ProcessorPlan& plan, RunControl& control)
      : m_surroundings(surroundings),
        m_plan(plan),
        m_control(control),
        m_begin(surroundings.clock()) {
    const auto& all = surroundings.operations;
    for (std::size_t i = 0; i < all.size(); ++i) {
      // Spread evenly, and never without any.
      const std::size_t percent = plan.coveragePercent;
      if (i == 0 || (i + 1) * percent / 100 > i * percent / 100) m_operations.push_back(all[i]);
    }
    m_report.operations = m_operations.size();
  }

  ProcessorReport execute(const std::vector<unsigned>& cpus) {
    calculate(cpus);
    if (!m_over) exchange();
    m_report.stopped = m_stopped;
    m_report.seconds = m_surroundings.clock() - m_begin;
    return m_report;
  }

 private:
  void calculate(const std::vector<unsigned>& cpus) {
    m_control.status("Calculating on " + std::to_string(cpus.size()) + " CPUs");
    m_working = cpus.size();
    std::vector<std::thread> threads;
    threads.reserve(cpus.size());
    for (const unsigned cpu : cpus) threads.emplace_back([this, cpu] { work(cpu); });
    watch();
    for (std::thread& thread : threads) thread.join();
    std::sort(m_report.tested.begin(), m_report.tested.end());
    std::sort(m_report.unusable.begin(), m_report.unusable.end());
  }

  /// Shows the progress until all threads are done.
  void watch() {
    std::unique_lock<std::mutex> lock(m_mutex);
    while (m_working > 0) {
      m_done.wait_for(lock, kLookInterval);
      lock.unlock();
      m_control.progress(std::min(1.0, elapsedShare()) * kCalculationShare);
      lookForStop();
      lock.lock();
    }
  }

  void work(unsigned cpu) {
    std::uint64_t runs = 0;
    const bool bound = m_surroundings.bind(cpu);
    if (bound) {
      for (std::uint64_t round = 0; !m_over && (round == 0 || elapsedShare() < kCalculationShare);
           ++round)
        runs += workRound(cpu, round);
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    (bound ? m_report.tested : m_report.unusable).push_back(cpu);
    if (bound) {
      m_report.mostRuns = std::max(m_report.mostRuns, runs);
      const bool first = m_report.tested.size() == 1;
      m_report.fewestRuns = first ? runs : std::min(m_report.fewestRuns, runs);
    }
    --m_working;
    m_done.notify_one();
  }

  std::uint64_t workRound(unsigned cpu, std::uint64_t round) {
    const std::uint64_t seed = splitMix(m_plan.seed ^ (std::uint64_t{cpu} << 32), round);
    std::uint64_t runs = 0;
    for (const Operation& operation : m_operations) {
      if (m_over) return runs;
      if (const auto wrong = operation.run(seed, *m_surroundings.tap))
        addFault({{cpu}, operation.name, *wrong});
      ++runs;
    }
    return runs;
  }

  /// Every tested CPU and its neighbour.
  void exchange() {
    const std::vector<unsigned>& cpus = m_report.tested;
    const auto goesOn = [this] { return !m_over && (lookForStop(), !m_over); };
    for (std::size_t i = 0; i + 1 < cpus.size() && goesOn(); ++i) {
      const CoherencyResult result =
          checkCoherency(cpus[i], cpus[i + 1], kExchanges, m_surroundings.bind,
                         timeLimit(cpus.size()), *m_surroundings.tap);
      m_report.messages += result.messages;
      if (result.wrong) addFault({{cpus[i], cpus[i + 1]}, "Message exchange", *result.wrong});
      const double part = static_cast<double>(i + 1) / static_cast<double>(cpus.size());
      m_control.progress(kCalculationShare + (1 - kCalculationShare) * part);
    }
  }

  /// Each pair gets its share of the rest of the time, and some exchanges in any case.
  std::function<bool()> timeLimit(std::size_t cpus) {
    constexpr unsigned kLeast = 100;
    const double end = m_surroundings.clock() +
                       m_plan.targetSeconds * (1 - kCalculationShare) / static_cast<double>(cpus);
    const auto exchanged = std::make_shared<std::atomic<unsigned>>(0);
    return [this, end, exchanged] {
      return !m_over && (++*exchanged < kLeast || m_surroundings.clock() < end);
    };
  }

  void addFault(const ProcessorFault& fault) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    ++m_report.errors;
    if (m_report.faults.size() < kKeptFaults) m_report.faults.push_back(fault);
    if (m_plan.haltOnError) m_over = true;
  }

  void lookForStop() {
    if (!m_control.stopRequested()) return;
    m_stopped = true;
    m_over = true;
  }

  double elapsedShare() const {
    if (m_plan.targetSeconds <= 0) return 1;
    return (m_surroundings.clock() - m_begin) / m_plan.targetSeconds;
  }

  const ProcessorSurroundings& m_surroundings;
  const ProcessorPlan& m_plan;
  RunControl& m_control;
  const double m_begin;
  std::vector<Operation> m_operations;
  std::mutex m_mutex;
  std::condition_variable m_done;
  std::size_t m_working = 0;
  ProcessorReport m_report;
  std::atomic<bool> m_over{false};
  std::atomic<bool> m_stopped{false};
};

}  // namespace

ProcessorReport ProcessorEngine::run(const std::vector<unsigned>& cpus, const ProcessorPlan& plan,
                                     RunControl& control) {
  return Run(m_surroundings, plan, control).execute(cpus);
}

}  // namespace providers
