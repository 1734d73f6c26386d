#include "providers/sensors/load/ProcessorLoad.h"

#include <sched.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <system_error>
#include <utility>
#include <vector>

namespace providers::sensors {

namespace {

/// Multiplications and additions that do not wait for each other: what makes a core warm.
double calculate(double start) {
  constexpr int kRounds = 100000;
  constexpr double kFactor = 0.999999, kSummand = 1e-6;
  std::array<double, 16> numbers{};
  for (std::size_t i = 0; i < numbers.size(); ++i) numbers[i] = start + static_cast<double>(i);
  for (int round = 0; round < kRounds; ++round)
    for (double& number : numbers) number = number * kFactor + kSummand;
  double sum = 0;
  for (const double number : numbers) sum += number;
  return sum;
}

class BusyThreads : public Load {
 public:
  explicit BusyThreads(const StartThread& start) {
    const unsigned count = processorLoadThreads();
    m_threads.reserve(count);
    try {
      while (m_threads.size() < count) m_threads.push_back(start([this] { work(); }));
    } catch (const std::system_error& error) {
      end();
      throw std::system_error(error.code(), "the system starts too few threads for the load");
    }
  }
  BusyThreads(const BusyThreads&) = delete;
  BusyThreads& operator=(const BusyThreads&) = delete;
  ~BusyThreads() override { end(); }

 private:
  void end() {
    m_end = true;
    for (std::thread& thread : m_threads) thread.join();
  }

  void work() {
    double sum = 1;
    while (!m_end) m_sink = sum = calculate(sum);
  }

  std::atomic<bool> m_end{false};
  std::atomic<double> m_sink{0};  ///< without it, the compiler leaves the calculation out
  std::vector<std::thread> m_threads;
};

}  // namespace

std::unique_ptr<Load> startProcessorLoad() {
  return startProcessorLoad(
      [](std::function<void()> work) { return std::thread(std::move(work)); });
}

std::unique_ptr<Load> startProcessorLoad(const StartThread& start) {
  return std::make_unique<BusyThreads>(start);
}

unsigned processorLoadThreads() {
  cpu_set_t allowed;
  CPU_ZERO(&allowed);
  const bool known = sched_getaffinity(0, sizeof allowed, &allowed) == 0;
  // There may be more processors than the set has room for.
  const unsigned count =
      known ? static_cast<unsigned>(CPU_COUNT(&allowed)) : std::thread::hardware_concurrency();
  return std::max(count, 1U);
}

}  // namespace providers::sensors
