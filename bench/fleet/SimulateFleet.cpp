#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>

#include "bench/fleet/Simulation.h"
#include "text/JsonText.h"

namespace {

std::string jsonOf(const bench::FleetTruth& truth) {
  text::JsonText json;
  json.object().add("badBatch", truth.badBatch).add("measurements", truth.measurements);
  json.add("bytes", truth.bytes).list("failing");
  for (const std::string& machine : truth.failing) json.add({}, machine);
  json.endList().list("cut");
  for (const std::string& machine : truth.cut) json.add({}, machine);
  json.endList().list("slow");
  for (const bench::TrueSlow& slow : truth.slow) {
    json.object().add("machine", slow.machine).add("test", slow.test).endObject();
  }
  return json.endList().endObject().text();
}

std::uint32_t number(int count, char** arguments, int place, std::uint32_t otherwise) {
  if (place >= count) return otherwise;
  return static_cast<std::uint32_t>(std::strtoul(arguments[place], nullptr, 10));
}

}  // namespace

/// simulate_fleet FOLDER [MACHINES [TESTS [MEASUREMENTS [SEED]]]]: the streams of a fleet, and in
/// FOLDER/truth.txt what is wrong with it.
int main(int count, char** arguments) try {
  if (count < 2) {
    std::fputs("simulate_fleet FOLDER [MACHINES [TESTS [MEASUREMENTS [SEED]]]]\n", stderr);
    return 2;
  }
  bench::FleetShape shape;
  shape.machines = number(count, arguments, 2, shape.machines);
  shape.tests = number(count, arguments, 3, shape.tests);
  shape.measurements = number(count, arguments, 4, shape.measurements);
  shape.seed = number(count, arguments, 5, 1);
  const std::filesystem::path folder = std::filesystem::u8path(arguments[1]);
  std::filesystem::create_directories(folder);
  const bench::FleetTruth truth = bench::simulateFleet(shape, folder);
  std::ofstream(folder / "truth.txt") << jsonOf(truth) << '\n';
  return 0;
} catch (const std::exception& failure) {
  std::fprintf(stderr, "simulate_fleet: %s\n", failure.what());
  return 1;
}
