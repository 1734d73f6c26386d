#include <algorithm>
#include <array>
#include <boost/shared_ptr.hpp>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "framework/ICIMClass.h"
#include "framework/ICIMInstance.h"
#include "framework/ICIMNamespace.h"
#include "framework/ICIMProperty.h"
#include "framework/TCIMValue.h"
#include "framework/TCMPIInstance.h"
#include "substitute/cmpi.nsp/Bootstrap.h"

/// What a run takes besides the test: from the call of RunDiagnosticService to the last record and
/// association read, through the object model's surface, the broker and the library of a family
/// whose test does nothing.
namespace {

using namespace NZELVOR20;

constexpr int kRounds = 1001;
constexpr double kGoal = 1000;  // microseconds

/// Microseconds since the call, at the end of each step.
struct Times {
  double called = 0;
  double ended = 0;
  double recorded = 0;
  double linked = 0;
};

class Machine {
 public:
  Machine() : m_framework(installation()), m_namespace(m_framework.objectManager()) {
    visit("DIAGS_NothingTest", [this](const boost::shared_ptr<ICIMInstance>& one) {
      m_service = boost::dynamic_pointer_cast<TCMPIInstance>(one);
    });
    visit("DIAGS_Nothing", [this](const boost::shared_ptr<ICIMInstance>& one) {
      m_element.emplace("ManagedElement", TCIMValue(one->GetObjectPath({})));
    });
  }

  Times run() {
    const auto begin = std::chrono::steady_clock::now();
    const auto since = [begin] {
      return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - begin)
          .count();
    };
    Times times;
    TParameterMap parameters = m_element;
    m_service->InvokeMethod("RunDiagnosticService", parameters, {});
    const TCIMReference job = parameters.at("Job").ToReference();
    times.called = since();
    while (!isOver(job)) std::this_thread::yield();
    times.ended = since();
    expectOne(readAll("DIAGS_NothingDiagnosticCompletionRecord"), "completion record");
    expectOne(readAll("DIAGS_NothingTestRecord"), "record of results");
    times.recorded = since();
    expectOne(readAll("DIAGS_NothingTestOwningJobElement"), "owner of the job");
    expectOne(readAll("DIAGS_NothingTestAffectedJobElement"), "element of the job");
    readAll("DIAGS_NothingTestRecordAppliesToElement");
    times.linked = since();
    forget();
    return times;
  }

 private:
  static substitute::Installation installation() {
    substitute::Installation installation;
    installation.root = BENCH_INSTALLATION;
    return installation;
  }

  static void expectOne(std::size_t found, const char* what) {
    if (found == 1) return;
    std::fprintf(stderr, "run_overhead_bench: %zu instances: %s\n", found, what);
    std::exit(2);
  }

  template <class Visitor>
  void visit(const char* className, Visitor visitor) const {
    m_namespace->GetClass(className, {})
        ->EnumerateInstances(
            [&](const boost::shared_ptr<ICIMInstance>& instance) {
              visitor(instance);
              return true;
            },
            false, {});
  }

  bool isOver(const TCIMReference& job) const {
    constexpr unsigned kCompleted = 7;
    const TCIMValue state =
        m_namespace->GetInstance(job, {})->GetProperty("JobState", {})->GetValue({});
    return state.ToString(10) == std::to_string(kCompleted);
  }

  /// Reads all properties of all instances; how many there are.
  std::size_t readAll(const char* className) const {
    std::size_t count = 0;
    visit(className, [&count](const boost::shared_ptr<ICIMInstance>& instance) {
      ++count;
      instance->EnumerateProperties(
          [](const boost::shared_ptr<ICIMProperty>& property) {
            property->GetValue({});
            return true;
          },
          {});
    });
    return count;
  }

  /// Removes what the run has left behind, so that the next one finds nothing but its own.
  void forget() {
    std::vector<TCIMReference> paths;
    for (const char* name : {"DIAGS_NothingDiagnosticCompletionRecord", "DIAGS_NothingTestRecord",
                             "DIAGS_NothingTestJob"})
      visit(name, [&paths](const boost::shared_ptr<ICIMInstance>& one) {
        paths.push_back(one->GetObjectPath({}));
      });
    for (const TCIMReference& path : paths) m_namespace->DeleteInstance(path, {});
  }

  substitute::Framework m_framework;
  boost::shared_ptr<ICIMNamespace> m_namespace;
  boost::shared_ptr<TCMPIInstance> m_service;
  TParameterMap m_element;
};

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<long>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

}  // namespace

int main() {
  struct Step {
    const char* name;
    double Times::*at;
  };
  constexpr std::array<Step, 4> kSteps{{{"the call has answered", &Times::called},
                                        {"the job is seen to be over", &Times::ended},
                                        {"its records are read", &Times::recorded},
                                        {"its associations are read", &Times::linked}}};
  Machine machine;
  machine.run();
  std::vector<Times> rounds;
  for (int i = 0; i < kRounds; ++i) rounds.push_back(machine.run());
  double all = 0;
  for (const Step& step : kSteps) {
    std::vector<double> values;
    for (const Times& times : rounds) values.push_back(times.*step.at);
    all = median(values);
    std::printf("%-30s %8.1f us (least %.1f)\n", step.name, all,
                *std::min_element(values.begin(), values.end()));
  }
  std::printf("a run's own overhead           %8.1f us (goal: at most %.0f)%s\n", all, kGoal,
              all <= kGoal ? "" : "  MISSED");
  return all <= kGoal ? 0 : 1;
}
