#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "bench/ProcessFigures.h"
#include "bench/fleet/Simulation.h"
#include "fleet/Fleet.h"

namespace {

namespace fs = std::filesystem;

constexpr unsigned kThreads = 2;
constexpr double kMostSeconds = 60;
constexpr double kMostMegabytes = 300;
constexpr double kMostRatio = 1.5;

/// Reads everything, keeps nothing.
struct Nothing final : nlohmann::json_sax<nlohmann::json> {
  bool null() override { return true; }
  bool boolean(bool /*flag*/) override { return true; }
  bool number_integer(number_integer_t /*number*/) override { return true; }
  bool number_unsigned(number_unsigned_t /*number*/) override { return true; }
  bool number_float(number_float_t /*number*/, const string_t& /*digits*/) override { return true; }
  bool string(string_t& /*value*/) override { return true; }
  bool binary(binary_t& /*value*/) override { return true; }
  bool start_object(std::size_t /*size*/) override { return true; }
  bool end_object() override { return true; }
  bool start_array(std::size_t /*size*/) override { return true; }
  bool end_array() override { return true; }
  bool key(string_t& /*name*/) override { return true; }
  bool parse_error(std::size_t /*at*/, const std::string& /*token*/,
                   const nlohmann::json::exception& /*error*/) override {
    return false;
  }
};

/// The same bytes through the JSON library alone, a line at a time, in as many threads.
void readBare(const std::vector<fs::path>& files) {
  std::atomic<std::size_t> next{0};
  const auto work = [&] {
    std::string line;
    for (std::size_t i = next++; i < files.size(); i = next++) {
      std::ifstream in(files[i], std::ios::binary);
      while (std::getline(in, line)) {
        Nothing nothing;
        nlohmann::json::sax_parse(line.data(), line.data() + line.size(), &nothing);
      }
    }
  };
  std::vector<std::thread> threads;
  for (unsigned i = 1; i < kThreads; ++i) threads.emplace_back(work);
  work();
  for (std::thread& thread : threads) thread.join();
}

struct Cost {
  double seconds = 0;
  double processor = 0;
  double peak = 0;  ///< in bytes
};

double processorSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// In a process of its own, so that its memory is its own.
template <typename Work>
Cost costOf(const Work& work) {
  int ends[2];
  if (pipe(ends) != 0) std::exit(3);
  const pid_t child = fork();
  if (child == 0) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    const Cost cost{taken.count(), processorSeconds(), bench::peakMemory()};
    const bool isWritten = write(ends[1], &cost, sizeof(cost)) == sizeof(cost);
    _exit(isWritten ? 0 : 1);
  }
  close(ends[1]);
  Cost cost;
  const bool isRead = read(ends[0], &cost, sizeof(cost)) == sizeof(cost);
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  if (!isRead || status != 0) std::exit(3);
  return cost;
}

fleet::Answer ask(const fs::path& folder) {
  fleet::Question question;
  question.names = {folder.u8string()};
  question.threads = kThreads;
  question.now =
      std::chrono::time_point_cast<std::chrono::microseconds>(std::chrono::system_clock::now());
  return fleet::askFleet(question);
}

/// What was found of what was done.
struct Found {
  std::size_t slow = 0;
  std::size_t trueSlow = 0;
  std::size_t falseAlarms = 0;
  std::size_t failing = 0;
  std::size_t trueFailing = 0;
  bool hasBatch = false;
  std::size_t otherGroups = 0;
};

Found compare(const fleet::Answer& answer, const bench::FleetTruth& truth) {
  std::set<std::pair<std::string, std::string>> slow;
  for (const bench::TrueSlow& one : truth.slow) slow.emplace(one.machine, one.test);
  for (const std::string& machine : truth.cut) {  // what was cut off is not compared
    while (true) {
      const auto first = slow.lower_bound({machine, ""});
      if (first == slow.end() || first->first != machine) break;
      slow.erase(first);
    }
  }
  Found found;
  found.trueSlow = slow.size();
  found.trueFailing = truth.failing.size();
  std::set<std::pair<std::string, std::string>> told;
  for (const fleet::Slow& one : answer.slow) {
    const std::pair key(answer.machines[one.machine].name, answer.tests[one.test].name);
    if (slow.count(key) != 0) {
      told.insert(key);
    } else if (std::find(truth.cut.begin(), truth.cut.end(), key.first) == truth.cut.end()) {
      ++found.falseAlarms;
    }
  }
  found.slow = told.size();
  for (const fleet::Machine& machine : answer.machines) {
    if (machine.verdict == fleet::Verdict::kFailed) ++found.failing;
  }
  for (const fleet::Group& group : answer.groups) {
    if (group.kind == fleet::GroupKind::kTest) continue;
    const bool isBatch = group.kind == fleet::GroupKind::kBatch &&
                         group.key.compare(0, truth.badBatch.size(), truth.badBatch) == 0;
    found.hasBatch = found.hasBatch || isBatch;
    if (!isBatch) ++found.otherGroups;
  }
  return found;
}

bool tell(std::uint32_t machines, const Cost& whole, const Cost& bare, const Found& found,
          const bench::FleetTruth& truth, std::uint64_t compared) {
  const double ratio = whole.processor / bare.processor;
  const double alarms = static_cast<double>(found.falseAlarms) / static_cast<double>(compared);
  std::printf("%6u machines  %8.1f MB  %9llu measurements\n", machines,
              static_cast<double>(truth.bytes) / 1e6,
              static_cast<unsigned long long>(truth.measurements));
  std::printf(
      "  fleet %7.2f s (%6.2f s of processor)  bare %7.2f s (%6.2f s)  ratio %.2f  %.0f MB\n",
      whole.seconds, whole.processor, bare.seconds, bare.processor, ratio, whole.peak / 1e6);
  std::printf(
      "  slow %zu of %zu, false alarms %zu (%.1e), failing %zu of %zu, batch %s, %zu groups "
      "more\n",
      found.slow, found.trueSlow, found.falseAlarms, alarms, found.failing, found.trueFailing,
      found.hasBatch ? "found" : "missed", found.otherGroups);
  return ratio <= kMostRatio && whole.seconds <= kMostSeconds &&
         whole.peak <= kMostMegabytes * 1e6 &&
         static_cast<double>(found.slow) >= 0.99 * static_cast<double>(found.trueSlow) &&
         alarms < 1e-4 && found.failing == found.trueFailing;
}

bool measure(std::uint32_t machines, const fs::path& folder) {
  fs::remove_all(folder);
  bench::FleetShape shape;
  shape.machines = machines;
  const bench::FleetTruth truth = bench::simulateFleet(shape, folder);
  std::vector<fs::path> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
  costOf([&] { readBare(files); });  // so that both find the files in memory
  const Cost whole = costOf([&] { ask(folder); });
  const Cost bare = costOf([&] { readBare(files); });
  const fleet::Answer answer = ask(folder);
  const bool met = tell(machines, whole, bare, compare(answer, truth), truth, answer.totals.series);
  fs::remove_all(folder);
  return met;
}

}  // namespace

/// fleet_bench [MACHINES [FOLDER]]: how long the streams of fleets up to so many machines take, in
/// how much memory, beside the JSON library alone; and what is found of what was done to them.
int main(int count, char** arguments) {
  const std::uint32_t most =
      count > 1 ? static_cast<std::uint32_t>(std::strtoul(arguments[1], nullptr, 10)) : 1000;
  const fs::path folder =
      count > 2 ? fs::u8path(arguments[2]) : fs::temp_directory_path() / "diags-fleet-bench";
  bool met = true;
  for (std::uint32_t machines = 100; machines <= most; machines *= 10) {
    met = measure(machines, folder) && met;
  }
  std::puts(met ? "goals met" : "goals MISSED");
  return met ? 0 : 1;
}
