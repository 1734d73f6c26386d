#include "providers/processor/engine/ExchangeEngine.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <set>

#include "providers/processor/engine/Pairings.h"

namespace providers {

namespace {

constexpr unsigned kLeastLooks = 200;  // at the clock, before the time is over for a pair
constexpr double kQuestionSeconds = 0.05;
constexpr std::uint64_t kExchanges = 100000000;
constexpr std::uint64_t kExchangesAgain = 2000;
constexpr std::size_t kKeptFaults = 16;
constexpr double kAgainSeconds = 30;  // for all faults together: a test has a time limit

class ExchangeRun {
 public:
  ExchangeRun(const ExchangeSurroundings& surroundings, const ExchangePlan& plan,
              RunControl& control)
      : m_surroundings(surroundings), m_plan(plan), m_control(control) {}

  ExchangeReport execute() {
    const double begin = m_surroundings.clock();
    const std::vector<Pairing> rounds = pairings(m_plan.cpus);
    for (std::size_t i = 0; i < rounds.size() && !isOver(); ++i) {
      const double share = static_cast<double>(i + 1) / static_cast<double>(rounds.size());
      meet(rounds[i], begin + m_plan.targetSeconds * share);
      m_control.progress(share);
    }
    m_againEnd = m_surroundings.clock() + kAgainSeconds;
    for (ExchangeFault& fault : m_report.faults) tryAgain(fault);
    for (const unsigned cpu : m_plan.cpus)
      (m_unusable.count(cpu) ? m_report.unusable : m_report.tested).push_back(cpu);
    m_report.seconds = m_surroundings.clock() - begin;
    return m_report;
  }

 private:
  bool isOver() {
    if (m_control.stopRequested()) m_report.stopped = true;
    return m_report.stopped || (m_plan.haltOnError && m_report.errors > 0);
  }

  bool bind(unsigned cpu) {
    if (m_surroundings.bind(cpu)) return true;
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_unusable.insert(cpu);
    return false;
  }

  ExchangeResult exchange(unsigned cpu1, unsigned cpu2, std::uint64_t exchanges, double end) {
    std::atomic<unsigned> looks{0};
    std::atomic<double> nextQuestion{0};
    const auto goesOn = [&] {
      const double now = m_surroundings.clock();
      // Asked for each message, hundreds of threads would wait for each other there.
      if (now >= nextQuestion) {
        nextQuestion = now + kQuestionSeconds;
        if (m_control.stopRequested()) return false;
      }
      return ++looks < kLeastLooks || now < end;
    };
    return exchangeMessages(
        cpu1, cpu2, exchanges, [this](unsigned cpu) { return bind(cpu); }, goesOn,
        *m_surroundings.tap, m_surroundings.start);
  }

  void meet(const Pairing& pairs, double end) {
    JoinedThreads threads(m_surroundings.start);
    for (const auto& [cpu1, cpu2] : pairs) {
      const bool isStarted = threads.add([this, end, one = cpu1, other = cpu2] {
        note(one, other, exchange(one, other, kExchanges, end));
      });
      if (isStarted) continue;
      const std::lock_guard<std::mutex> lock(m_mutex);
      ++m_report.unstarted;
    }
  }

  void note(unsigned cpu1, unsigned cpu2, const ExchangeResult& result) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_report.unstarted += !result.started;
    m_report.pairs += result.bound;
    m_report.messages += result.messages;
    if (!result.wrong) return;
    ++m_report.errors;
    if (m_report.faults.size() >= kKeptFaults) return;
    ExchangeFault fault;
    fault.cpu1 = cpu1;
    fault.cpu2 = cpu2;
    fault.wrong = *result.wrong;
    m_report.faults.push_back(fault);
  }

  /// Empty while something may be tried again.
  std::string whyNotOn() const {
    if (m_control.stopRequested()) return "the run was stopped";
    return m_surroundings.clock() < m_againEnd ? "" : "it would take too long";
  }

  /// Whether it is wrong again; nothing where it cannot be tried.
  std::optional<bool> failsAgain(unsigned cpu1, unsigned cpu2) {
    ExchangeResult result;
    JoinedThreads thread(m_surroundings.start);
    const bool isStarted = thread.add([&] {
      result = exchangeMessages(
          cpu1, cpu2, kExchangesAgain, m_surroundings.bind,
          [this] { return !m_control.stopRequested(); }, *m_surroundings.tap, m_surroundings.start);
    });
    thread.join();
    if (!isStarted || !result.started) return std::nullopt;
    return result.wrong.has_value();
  }

  /// Finds out how it is between the two; the reason why that cannot be tried, if so.
  std::string tryPair(unsigned cpu1, unsigned cpu2, bool& fails) {
    std::string why = whyNotOn();
    if (!why.empty()) return why;
    const std::optional<bool> failed = failsAgain(cpu1, cpu2);
    if (!failed) return "the system started no more threads";
    fails = *failed;
    return fails || !m_control.stopRequested() ? "" : "the run was stopped";
  }

  /// Both or neither: one of them alone would be to blame for what was not tried with the other.
  void tryWith(unsigned third, ExchangeFault& fault) {
    bool first = false, second = false;
    if (fault.whyLeftOut.empty()) fault.whyLeftOut = tryPair(fault.cpu1, third, first);
    if (fault.whyLeftOut.empty()) fault.whyLeftOut = tryPair(third, fault.cpu2, second);
    if (!fault.whyLeftOut.empty()) {
      ++fault.leftOut;
      return;
    }
    fault.hadOthers = true;
    fault.firstWithOthers = fault.firstWithOthers || first;
    fault.secondWithOthers = fault.secondWithOthers || second;
  }

  void tryAgain(ExchangeFault& fault) {
    fault.whyLeftOut = tryPair(fault.cpu1, fault.cpu2, fault.comesBack);
    fault.wasTried = fault.whyLeftOut.empty();
    if (!fault.wasTried) return;
    for (const unsigned third : m_plan.cpus) {
      if (third == fault.cpu1 || third == fault.cpu2) continue;
      tryWith(third, fault);
    }
  }

  const ExchangeSurroundings& m_surroundings;
  const ExchangePlan& m_plan;
  RunControl& m_control;
  std::mutex m_mutex;
  std::set<unsigned> m_unusable;
  double m_againEnd = 0;
  ExchangeReport m_report;
};

}  // namespace

ExchangeReport exchangeAll(const ExchangeSurroundings& surroundings, const ExchangePlan& plan,
                           RunControl& control) {
  control.status("Exchanging messages between " + std::to_string(plan.cpus.size()) + " threads");
  return ExchangeRun(surroundings, plan, control).execute();
}

}  // namespace providers
