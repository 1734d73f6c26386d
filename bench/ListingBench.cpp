#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "bench/ListedMachine.h"
#include "bench/RatioReporter.h"
#include "diagsrunner/DiagsRunner.h"
#include "framework/ICIMClass.h"
#include "framework/ICIMProperty.h"
#include "framework/TAddToVectorCallback.h"
#include "substitute/vorcore/system/Configuration.h"

namespace {

using NZELVOR20::ICIMInstance;
using NZELVOR20::ICIMNamespace;
using NZELVOR20::TCIMReference;
using NZELVOR20::TCIMValue;
using NZELVOR20::TOptionsMap;
using Instance = boost::shared_ptr<ICIMInstance>;

void list(benchmark::State& state, boost::shared_ptr<ICIMNamespace> ns) {
  for (auto iteration : state) {
    state.PauseTiming();
    auto runner = std::make_unique<DiagsRunner>(ns);
    state.ResumeTiming();
    benchmark::DoNotOptimize(runner->EnumerateDiagTests(""));
    state.PauseTiming();
    runner.reset();
    state.ResumeTiming();
  }
}

TCIMValue read(const Instance& instance, const char* name, const TOptionsMap& options) {
  return instance->GetProperty(name, options)->GetValue(options);
}

Instance fetch(const TCIMReference& reference, const TOptionsMap& options) {
  return reference.GetClass()->GetNamespace(options)->GetInstance(reference, options);
}

/// The framework calls for one association, in the runner's order.
void visit(const Instance& association, const TOptionsMap& options) {
  const auto serviceProperty = association->GetProperty("ServiceProvided", options);
  const TCIMReference serviceReference = serviceProperty->GetValue(options).ToReference();
  const auto elementProperty = association->GetProperty("UserOfService", options);
  const TCIMReference elementReference = elementProperty->GetValue(options).ToReference();
  benchmark::DoNotOptimize(serviceProperty->ToString());
  benchmark::DoNotOptimize(elementProperty->ToString());
  const Instance service = fetch(serviceReference, options);
  const Instance element = fetch(elementReference, options);
  for (const TCIMValue& value : read(service, "Characteristics", options).ToArray()) {
    benchmark::DoNotOptimize(value.ToUint16());
  }
  benchmark::DoNotOptimize(read(service, "Name", options).ToString(10));
  benchmark::DoNotOptimize(read(element, "DeviceID", options).ToString(10));
  benchmark::DoNotOptimize(read(element, "ElementName", options).ToString(10));
}

void callBare(benchmark::State& state, boost::shared_ptr<ICIMNamespace> ns) {
  for (auto iteration : state) {
    const TOptionsMap options{{"nspID", TCIMValue("cmpi")}};
    std::vector<Instance> associations;
    ns->GetClass("CIM_AvailableDiagnosticService", options)
        ->EnumerateInstances(NZELVOR20::TAddToVectorCallback<ICIMInstance>(associations), true,
                             options);
    for (const Instance& association : associations) {
      visit(association, options);
    }
  }
}

void addPair(std::size_t count) {
  const boost::shared_ptr<ICIMNamespace> ns = makeListedMachine(count);
  const auto iterations = static_cast<benchmark::IterationCount>(100000 / count);
  const std::string name = std::to_string(count) + " associations";
  benchmark::RegisterBenchmark(("list " + name).c_str(), list, ns)
      ->Unit(benchmark::kMicrosecond)
      ->Iterations(iterations);
  benchmark::RegisterBenchmark(("call " + name).c_str(), callBare, ns)
      ->Unit(benchmark::kMicrosecond)
      ->Iterations(iterations);
}

}  // namespace

int main(int argc, char** argv) {
  vorcore::configure({});
  std::vector<RatioGoal> goals;
  for (const std::size_t count : {1000, 10000, 100000}) {
    addPair(count);
    const std::string name = std::to_string(count) + " associations";
    goals.push_back({"listing " + name + " / the same framework calls alone", "list " + name,
                     "call " + name, 1, 1.15});
  }
  goals.push_back({"time of an association, of 100000 / of 1000", "list 100000 associations",
                   "list 1000 associations", 100, 1.2});
  return runWithGoals(argc, argv, goals);
}
