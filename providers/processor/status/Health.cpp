#include "providers/processor/status/Health.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include "providers/processor/topology/CpuTopology.h"

namespace providers {

namespace {

const std::string kCpuFolder = "/sys/devices/system/cpu";

std::string lineOf(const std::string& path) {
  std::ifstream file(path);
  std::string line;
  std::getline(file, line);
  return line;
}

std::optional<std::uint64_t> numberOf(const std::string& path) {
  const std::string text = lineOf(path);
  char* end = nullptr;
  const std::uint64_t number = std::strtoull(text.c_str(), &end, 10);
  if (end == text.c_str()) return std::nullopt;
  return number;
}

/// What can be shown of a text, and no more of it than makes sense.
std::string plain(const std::string& text) {
  constexpr std::size_t kLongest = 32;
  std::string kept = text.substr(0, kLongest);
  for (char& letter : kept)
    if (letter < ' ' || letter > '~') letter = '?';
  return kept;
}

/// "name : value" of each processor of /proc/cpuinfo.
std::map<unsigned, std::string> microcodes(const std::string& root) {
  std::map<unsigned, std::string> known;
  std::ifstream file(root + "/proc/cpuinfo");
  std::string line;
  unsigned cpu = 0;
  while (std::getline(file, line)) {
    const std::size_t colon = line.find(": ");
    if (colon == std::string::npos) continue;
    const std::string value = line.substr(colon + 2);
    if (line.rfind("processor", 0) == 0)
      cpu = static_cast<unsigned>(std::strtoul(value.c_str(), nullptr, 10));
    if (line.rfind("microcode", 0) == 0) known[cpu] = plain(value);
  }
  return known;
}

/// The line of /proc/interrupts that counts machine check exceptions. Its columns are the
/// processors of the first line.
std::map<unsigned, std::uint64_t> machineChecks(const std::string& root) {
  std::map<unsigned, std::uint64_t> counts;
  std::ifstream file(root + "/proc/interrupts");
  std::string line, word;
  std::getline(file, line);
  std::vector<unsigned> cpus;
  for (std::istringstream words(line); words >> word;)
    if (word.rfind("CPU", 0) == 0)
      cpus.push_back(static_cast<unsigned>(std::strtoul(word.c_str() + 3, nullptr, 10)));
  while (std::getline(file, line)) {
    std::istringstream words(line);
    if (!(words >> word) || word != "MCE:") continue;
    std::uint64_t count = 0;
    for (const unsigned cpu : cpus)
      if (words >> count) counts[cpu] = count;
  }
  return counts;
}

template <class Map>
auto valueOf(const Map& map, unsigned cpu) {
  const auto found = map.find(cpu);
  return found == map.end() ? std::optional<typename Map::mapped_type>() : found->second;
}

std::vector<unsigned> threadsOff(const std::string& root) {
  const std::vector<unsigned> present = parseCpuList(lineOf(root + kCpuFolder + "/present"));
  const std::vector<unsigned> online = parseCpuList(lineOf(root + kCpuFolder + "/online"));
  std::vector<unsigned> off;
  if (online.empty()) return off;
  std::set_difference(present.begin(), present.end(), online.begin(), online.end(),
                      std::back_inserter(off));
  return off;
}

std::string optionalText(const std::optional<std::uint64_t>& number) {
  return number ? std::to_string(*number) : "unknown";
}

}  // namespace

Health readHealth(const std::string& root, const std::vector<unsigned>& cpus) {
  constexpr unsigned kKilohertz = 1000;
  constexpr std::uint64_t kMachineCheckTaint = 16;
  Health health;
  const auto codes = microcodes(root);
  const auto checks = machineChecks(root);
  for (const unsigned cpu : cpus) {
    const std::string folder = root + kCpuFolder + "/cpu" + std::to_string(cpu);
    ThreadHealth thread;
    thread.cpu = cpu;
    thread.microcode = valueOf(codes, cpu).value_or("");
    if (const auto kilohertz = numberOf(folder + "/cpufreq/scaling_cur_freq"))
      thread.megahertz = static_cast<unsigned>(*kilohertz / kKilohertz);
    thread.coreThrottles = numberOf(folder + "/thermal_throttle/core_throttle_count");
    thread.packageThrottles = numberOf(folder + "/thermal_throttle/package_throttle_count");
    thread.machineChecks = valueOf(checks, cpu);
    health.threads.push_back(thread);
  }
  health.off = threadsOff(root);
  const std::string threading = lineOf(root + kCpuFolder + "/smt/control");
  health.isThreadingOff = threading == "off" || threading == "forceoff";
  const auto taint = numberOf(root + "/proc/sys/kernel/tainted");
  health.hadMachineCheck = taint && (*taint & kMachineCheckTaint) != 0;
  return health;
}

bool isKnown(const Health& health) {
  return health.hadMachineCheck || !health.off.empty() ||
         std::any_of(health.threads.begin(), health.threads.end(), [](const ThreadHealth& thread) {
           return !thread.microcode.empty() || thread.megahertz || thread.machineChecks ||
                  thread.coreThrottles || thread.packageThrottles;
         });
}

std::vector<Concern> concerns(const Health& health) {
  std::vector<Concern> list;
  std::set<std::string> codes;
  bool isCounted = false;
  for (const ThreadHealth& thread : health.threads) {
    if (!thread.microcode.empty()) codes.insert(thread.microcode);
    if (thread.machineChecks.value_or(0) == 0) continue;
    isCounted = true;
    list.push_back({"CPU " + std::to_string(thread.cpu) + " has had " +
                        std::to_string(*thread.machineChecks) + " machine checks",
                    "look for them in the system's log, and replace what they name"});
  }
  if (health.hadMachineCheck && !isCounted)
    list.push_back({"The system has had a machine check since it was started",
                    "look for it in the system's log"});
  if (codes.size() > 1) list.push_back({"Threads have different microcode", "update the firmware"});
  if (!health.off.empty() && !health.isThreadingOff)
    list.push_back({"CPUs " + cpuListText(health.off) + " are there, but switched off",
                    "find out who did that, and why"});
  return list;
}

std::string healthText(const Health& health) {
  std::string text;
  for (const ThreadHealth& thread : health.threads) {
    text += "CPU " + std::to_string(thread.cpu) + ": microcode " +
            (thread.microcode.empty() ? "unknown" : thread.microcode) + ", " +
            (thread.megahertz ? std::to_string(*thread.megahertz) + " MHz" : "clock rate unknown") +
            ", throttled " + optionalText(thread.coreThrottles) + " times by its core and " +
            optionalText(thread.packageThrottles) + " by its package, machine checks " +
            optionalText(thread.machineChecks) + "\n";
  }
  if (!health.off.empty())
    text += "Switched off: CPUs " + cpuListText(health.off) +
            (health.isThreadingOff ? ", with the second threads of all cores" : "") + "\n";
  return text;
}

}  // namespace providers
