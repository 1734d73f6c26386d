#include "providers/processor/engine/ExchangeEngine.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <set>
#include <thread>

#include "providers/processor/engine/Pairings.h"

namespace providers {

namespace {

constexpr unsigned kLeastLooks = 200;  // at the clock, before the time is over for a pair
constexpr std::uint64_t kExchanges = 100000000;
constexpr std::uint64_t kExchangesAgain = 2000;
constexpr std::size_t kKeptFaults = 16;

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
    const auto goesOn = [&] {
      if (m_control.stopRequested()) return false;
      return ++looks < kLeastLooks || m_surroundings.clock() < end;
    };
    return exchangeMessages(
        cpu1, cpu2, exchanges, [this](unsigned cpu) { return bind(cpu); }, goesOn,
        *m_surroundings.tap);
  }

  void meet(const Pairing& pairs, double end) {
    std::vector<std::thread> threads;
    for (const auto& [cpu1, cpu2] : pairs)
      threads.emplace_back([this, end, one = cpu1, other = cpu2] {
        const ExchangeResult result = exchange(one, other, kExchanges, end);
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_report.pairs += result.bound;
        m_report.messages += result.messages;
        if (!result.wrong) return;
        ++m_report.errors;
        if (m_report.faults.size() >= kKeptFaults) return;
        ExchangeFault fault;
        fault.cpu1 = one;
        fault.cpu2 = other;
        fault.wrong = *result.wrong;
        m_report.faults.push_back(fault);
      });
    for (std::thread& thread : threads) thread.join();
  }

  bool failsAgain(unsigned cpu1, unsigned cpu2) {
    std::optional<WrongWord> wrong;
    std::thread([&] {
      wrong = exchangeMessages(
                  cpu1, cpu2, kExchangesAgain, m_surroundings.bind, [] { return true; },
                  *m_surroundings.tap)
                  .wrong;
    }).join();
    return wrong.has_value();
  }

  void tryAgain(ExchangeFault& fault) {
    fault.comesBack = failsAgain(fault.cpu1, fault.cpu2);
    for (const unsigned third : m_plan.cpus) {
      if (third == fault.cpu1 || third == fault.cpu2) continue;
      fault.hadOthers = true;
      fault.firstWithOthers = fault.firstWithOthers || failsAgain(fault.cpu1, third);
      fault.secondWithOthers = fault.secondWithOthers || failsAgain(third, fault.cpu2);
    }
  }

  const ExchangeSurroundings& m_surroundings;
  const ExchangePlan& m_plan;
  RunControl& m_control;
  std::mutex m_mutex;
  std::set<unsigned> m_unusable;
  ExchangeReport m_report;
};

}  // namespace

ExchangeReport exchangeAll(const ExchangeSurroundings& surroundings, const ExchangePlan& plan,
                           RunControl& control) {
  control.status("Exchanging messages between " + std::to_string(plan.cpus.size()) + " threads");
  return ExchangeRun(surroundings, plan, control).execute();
}

}  // namespace providers
