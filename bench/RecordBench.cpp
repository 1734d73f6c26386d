#include <string>
#include <vector>

#include "bench/ListedMachine.h"
#include "bench/RatioReporter.h"
#include "framework/ICIMClass.h"
#include "framework/ICIMProperty.h"
#include "framework/TAddToVectorCallback.h"
#include "substitute/vorcore/system/Configuration.h"
#include "tests/support/DiagsRunnerAccess.h"

namespace {

using NZELVOR20::ICIMInstance;
using NZELVOR20::ICIMNamespace;
using NZELVOR20::TCIMValue;
using Instance = boost::shared_ptr<ICIMInstance>;

constexpr std::size_t kRecords = 100000;

void pick(benchmark::State& state, boost::shared_ptr<ICIMNamespace> ns) {
  const std::string testID = std::string(kRecordService) + ",mem0,System Memory";
  DiagsRunner runner(ns);
  DiagsRunnerAccess::diagNS(runner)[testID] = TCIMValue("cmpi");
  DiagsRunnerAccess::finishedTests(runner)[testID] = "JOB:last";
  for (auto iteration : state) {
    if (runner.SimpleResults(testID, ns) != "(Pass)") {
      state.SkipWithError("the record was not found");
    }
  }
}

TCIMValue read(const Instance& record, const char* name) {
  return record->GetProperty(name, {})->GetValue({});
}

/// The property reads of the runner's search, and nothing else.
void readBare(benchmark::State& state, boost::shared_ptr<ICIMNamespace> ns) {
  for (auto iteration : state) {
    std::vector<Instance> records;
    ns->GetClass("CIM_DiagnosticCompletionRecord", {{"nspID", TCIMValue("cmpi")}})
        ->EnumerateInstances(NZELVOR20::TAddToVectorCallback<ICIMInstance>(records), true, {});
    for (const Instance& record : records) {
      benchmark::DoNotOptimize(read(record, "ManagedElementName").IsNull());
      benchmark::DoNotOptimize(read(record, "ServiceName").IsNull());
      benchmark::DoNotOptimize(read(record, "ServiceName").ToString(10));
      benchmark::DoNotOptimize(read(record, "InstanceID").ToString(10));
    }
    benchmark::DoNotOptimize(records.back()->GetProperty("CompletionState", {})->ToString());
  }
}

}  // namespace

int main(int argc, char** argv) {
  vorcore::configure({});
  const boost::shared_ptr<ICIMNamespace> ns = makeRecordStore(kRecords);
  benchmark::RegisterBenchmark("pick the record of 100000", pick, ns)
      ->Unit(benchmark::kMillisecond)
      ->Iterations(2);
  benchmark::RegisterBenchmark("read the properties of 100000", readBare, ns)
      ->Unit(benchmark::kMillisecond)
      ->Iterations(2);
  return runWithGoals(argc, argv,
                      {{"picking the record among 100000 / the same property reads alone",
                        "pick the record of 100000", "read the properties of 100000", 1, 1.1}});
}
