#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "bench/ListedMachine.h"
#include "bench/RatioReporter.h"
#include "diagsrunner/DiagsRunner.h"
#include "framework/ICIMClass.h"
#include "framework/TAddToVectorCallback.h"
#include "substitute/vorcore/system/Configuration.h"

namespace {

using NZELVOR20::ICIMInstance;
using Instances = std::vector<boost::shared_ptr<ICIMInstance>>;

/// An installation whose matrix hides every other service from this machine: the last of its 100
/// fragments is the one that hits.
std::string makeInstallation() {
  const std::filesystem::path root = std::filesystem::temp_directory_path() / "diags-bench-filter";
  std::filesystem::create_directories(root / "kfr" / "data");
  std::ofstream matrix(root / "kfr" / "data" / "excludetestmatrix.xml");
  matrix << "<exclusions><biosid name='bench'>";
  for (int i = 1; i < 100; ++i) {
    matrix << "<diagnostictest name='NoSuchService" << i << "'/>";
  }
  matrix << "<diagnostictest name='Service1-'/></biosid></exclusions>";
  return root.string();
}

void filter(benchmark::State& state, std::size_t count) {
  const auto ns = makeListedMachine(count);
  Instances all;
  ns->GetClass("CIM_AvailableDiagnosticService", {})
      ->EnumerateInstances(NZELVOR20::TAddToVectorCallback<ICIMInstance>(all), true, {});
  DiagsRunner runner(ns);
  for (auto iteration : state) {
    state.PauseTiming();
    Instances items = all;
    state.ResumeTiming();
    runner.filterDiagsItems(items);
    if (items.size() != count / 2) {
      state.SkipWithError("half of the items should be left");
      break;
    }
    state.PauseTiming();
    items.clear();
    state.ResumeTiming();
  }
}

}  // namespace

int main(int argc, char** argv) {
  vorcore::Configuration configuration;
  configuration.root = makeInstallation();
  configuration.biosId = "BENCH";
  configuration.overrideBiosId = true;
  vorcore::configure(configuration);
  benchmark::RegisterBenchmark("filter 10000 items", filter, 10000)
      ->Unit(benchmark::kMillisecond)
      ->Iterations(10);
  benchmark::RegisterBenchmark("filter 100000 items", filter, 100000)
      ->Unit(benchmark::kMillisecond)
      ->Iterations(1);
  const int status = runWithGoals(argc, argv,
                                  {{"time of an item in the filter, of 100000 / of 10000",
                                    "filter 100000 items", "filter 10000 items", 10, 1.2}});
  std::filesystem::remove_all(configuration.root);
  return status;
}
