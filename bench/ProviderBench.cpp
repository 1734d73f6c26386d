#include <algorithm>
#include <boost/shared_ptr.hpp>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "bench/ProcessFigures.h"
#include "framework/ICIMClass.h"
#include "framework/ICIMInstance.h"
#include "framework/ICIMNamespace.h"
#include "framework/ICIMProperty.h"
#include "framework/TCIMValue.h"
#include "substitute/cmpi.nsp/Bootstrap.h"

/// What a host sees of a CMPI provider with instances of 11 properties each: through the object
/// model's surface, in the caller's thread, broker and provider library included.
namespace {

using namespace NZELVOR20;

constexpr std::size_t kRounds = 7;
constexpr std::size_t kMany = 100 * 1000;
constexpr std::size_t kLookups = 20 * 1000;

class SyntheticMachine {
 public:
  SyntheticMachine() : m_framework(installation()), m_namespace(m_framework.objectManager()) {
    m_class = m_namespace->GetClass("BENCH_Record", {});
  }

  void setInstances(std::size_t count) {
    setenv("DIAGS_BENCH_INSTANCES", std::to_string(count).c_str(), 1);
  }

  /// Reads every property of every instance; how many there were.
  std::size_t readAll() const {
    std::size_t values = 0;
    m_class->EnumerateInstances(
        [&](const boost::shared_ptr<ICIMInstance>& instance) {
          instance->EnumerateProperties(
              [&](const boost::shared_ptr<ICIMProperty>& property) {
                if (!property->GetValue({}).IsNull()) ++values;
                return true;
              },
              {});
          return true;
        },
        false, {});
    return values;
  }

  std::size_t nameAll() const {
    std::size_t names = 0;
    m_class->EnumerateInstanceNames([&](const TCIMReference&) { return ++names != 0; }, false, {});
    return names;
  }

  std::vector<boost::shared_ptr<ICIMInstance>> holdAll() const {
    std::vector<boost::shared_ptr<ICIMInstance>> held;
    held.reserve(kMany);
    m_class->EnumerateInstances(
        [&](const boost::shared_ptr<ICIMInstance>& instance) {
          held.push_back(instance);
          return true;
        },
        false, {});
    return held;
  }

  /// The first instance's own path.
  TCIMReference anyName() const {
    boost::shared_ptr<ICIMInstance> any;
    m_class->EnumerateInstances(
        [&](const boost::shared_ptr<ICIMInstance>& instance) {
          any = instance;
          return false;
        },
        false, {});
    return any->GetObjectPath({});
  }

  std::size_t getOften(const TCIMReference& name) const {
    std::size_t found = 0;
    for (std::size_t i = 0; i < kLookups; ++i) {
      if (m_namespace->GetInstance(name, {})) ++found;
    }
    return found;
  }

 private:
  static substitute::Installation installation() {
    substitute::Installation installation;
    installation.root = BENCH_INSTALLATION;
    return installation;
  }

  substitute::Framework m_framework;
  boost::shared_ptr<ICIMNamespace> m_namespace;
  boost::shared_ptr<ICIMClass> m_class;
};

/// The median of the seconds of processor time that `operation` takes in this thread, which does
/// all of the work. It has to answer `expected`.
template <typename Operation>
double secondsOf(std::size_t rounds, std::size_t expected, Operation operation) {
  std::vector<double> seconds;
  for (std::size_t round = 0; round < rounds; ++round) {
    const double start = bench::threadSeconds();
    const std::size_t answer = operation();
    const double taken = bench::threadSeconds() - start;
    if (answer != expected) {
      std::fprintf(stderr, "provider_bench: %zu answers in place of %zu\n", answer, expected);
      std::exit(2);
    }
    seconds.push_back(taken);
  }
  std::nth_element(seconds.begin(), seconds.begin() + static_cast<long>(rounds / 2), seconds.end());
  return seconds[rounds / 2];
}

constexpr std::size_t kProperties = 11;

double secondsPerInstance(SyntheticMachine& machine, std::size_t count, std::size_t rounds) {
  machine.setInstances(count);
  const double seconds = secondsOf(rounds, count * kProperties, [&] { return machine.readAll(); });
  return seconds / static_cast<double>(count);
}

/// Prints a figure beside its goal; whether it is met.
bool show(const char* what, double figure, const char* unit, double goal, bool atLeast) {
  const bool met = atLeast ? figure >= goal : figure <= goal;
  std::printf("%-58s %8.3f %-10s (goal: %s %.3g)%s\n", what, figure, unit,
              atLeast ? "at least" : "at most", goal, met ? "" : "  MISSED");
  return met;
}

bool showMemory(const SyntheticMachine& machine) {
  const double before = bench::peakMemory();
  const std::vector<boost::shared_ptr<ICIMInstance>> held = machine.holdAll();
  const double each = (bench::peakMemory() - before) / static_cast<double>(held.size());
  return show("peak memory for each of 100,000 instances held", each / 1000, "kB", 1.5, false);
}

}  // namespace

int main() {
  SyntheticMachine machine;
  machine.setInstances(1000);
  machine.readAll();
  machine.setInstances(kMany);
  bool met = showMemory(machine);

  const double names = secondsOf(kRounds, kMany, [&] { return machine.nameAll(); });
  const double single = secondsPerInstance(machine, kMany, kRounds);
  met &= show("enumerate 100,000 instances, all properties read", 1e-6 / single, "million/s", 0.5,
              true);
  met &= show("enumerate 100,000 names", static_cast<double>(kMany) / names / 1e6, "million/s", 1.5,
              true);

  const TCIMReference name = machine.anyName();
  const double lookup = secondsOf(kRounds, kLookups, [&] { return machine.getOften(name); });
  met &= show("get one instance", lookup / static_cast<double>(kLookups) * 1e6, "us", 5, false);

  const double few = secondsPerInstance(machine, 1000, 101);
  const double most = secondsPerInstance(machine, 1000 * 1000, 3);
  met &=
      show("an instance among 1,000,000 beside one among 1,000", most / few, "times", 1.2, false);
  return met ? 0 : 1;
}
