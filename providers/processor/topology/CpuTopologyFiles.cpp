#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>

#include "providers/processor/topology/CpuTopology.h"

namespace providers {

namespace {

constexpr unsigned kMostCpus = 65536;  // against a list that makes no sense

std::string firstLine(const std::string& path) {
  std::ifstream file(path);
  std::string line;
  std::getline(file, line);
  return line;
}

/// A number that may be negative where the system does not know it.
unsigned numberInFile(const std::string& path) {
  const long number = std::strtol(firstLine(path).c_str(), nullptr, 10);
  return number < 0 ? 0U : static_cast<unsigned>(number);
}

std::string trim(const std::string& text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

/// What /proc/cpuinfo says of each CPU, by name.
std::map<unsigned, std::map<std::string, std::string>> readCpuInfo(const std::string& root) {
  std::map<unsigned, std::map<std::string, std::string>> cpus;
  std::ifstream file(root + "/proc/cpuinfo");
  std::string line;
  unsigned cpu = 0;
  while (std::getline(file, line)) {
    const std::size_t colon = line.find(':');
    if (colon == std::string::npos) continue;
    const std::string name = trim(line.substr(0, colon));
    const std::string value = trim(line.substr(colon + 1));
    if (name == "processor") cpu = static_cast<unsigned>(std::strtoul(value.c_str(), nullptr, 10));
    cpus[cpu][name] = value;
  }
  return cpus;
}

std::vector<unsigned> onlineCpus(const std::string& root) {
  std::vector<unsigned> cpus = parseCpuList(firstLine(root + "/sys/devices/system/cpu/online"));
  if (!cpus.empty()) return cpus;
  for (const auto& [cpu, info] : readCpuInfo(root)) cpus.push_back(cpu);
  return cpus;
}

unsigned megahertz(const std::string& folder, const std::map<std::string, std::string>& info) {
  constexpr unsigned kKilohertz = 1000;
  const unsigned fromDriver = numberInFile(folder + "/cpufreq/cpuinfo_max_freq") / kKilohertz;
  const auto said = info.find("cpu MHz");
  if (fromDriver || said == info.end()) return fromDriver;
  return static_cast<unsigned>(std::strtod(said->second.c_str(), nullptr));
}

/// "48K", "2M"; 0 for what is none.
std::uint64_t sizeOf(const std::string& text) {
  char* end = nullptr;
  const std::uint64_t number = std::strtoull(text.c_str(), &end, 10);
  const unsigned shift = *end == 'K' ? 10 : *end == 'M' ? 20 : *end == 'G' ? 30 : 0;
  return number << shift;
}

}  // namespace

std::vector<unsigned> parseCpuList(const std::string& text) {
  std::vector<unsigned> cpus;
  std::istringstream list(text);
  std::string range;
  while (std::getline(list, range, ',')) {
    char* end = nullptr;
    const unsigned long first = std::strtoul(range.c_str(), &end, 10);
    if (end == range.c_str()) continue;
    const unsigned long last = *end == '-' ? std::strtoul(end + 1, nullptr, 10) : first;
    for (unsigned long cpu = first; cpu <= last && cpu < kMostCpus; ++cpu)
      cpus.push_back(static_cast<unsigned>(cpu));
  }
  return cpus;
}

std::string cpuListText(const std::vector<unsigned>& cpus) {
  std::string text;
  for (std::size_t i = 0; i < cpus.size();) {
    std::size_t last = i;
    while (last + 1 < cpus.size() && cpus[last + 1] == cpus[last] + 1) ++last;
    if (!text.empty()) text += ",";
    text += std::to_string(cpus[i]);
    if (last > i) text += "-" + std::to_string(cpus[last]);
    i = last + 1;
  }
  return text;
}

std::vector<CpuPackage> readCpuPackages(const std::string& root,
                                        const std::set<unsigned>& allowed) {
  auto infos = readCpuInfo(root);
  std::map<unsigned, CpuPackage> packages;
  std::map<unsigned, std::set<unsigned>> cores;
  for (const unsigned cpu : onlineCpus(root)) {
    const std::string folder = root + "/sys/devices/system/cpu/cpu" + std::to_string(cpu);
    const unsigned number = numberInFile(folder + "/topology/physical_package_id");
    auto& info = infos[cpu];
    CpuPackage& package = packages[number];
    package.number = number;
    if (package.model.empty()) package.model = info["model name"];
    package.megahertz = std::max(package.megahertz, megahertz(folder, info));
    package.online.push_back(cpu);
    if (allowed.count(cpu)) package.cpus.push_back(cpu);
    const std::string known = firstLine(folder + "/topology/core_id");
    const unsigned core = known.empty() ? cpu : numberInFile(folder + "/topology/core_id");
    package.coreIds.push_back(core);
    cores[number].insert(core);
    package.cores = static_cast<unsigned>(cores[number].size());
  }
  std::vector<CpuPackage> result;
  std::transform(packages.begin(), packages.end(), std::back_inserter(result),
                 [](auto& entry) { return std::move(entry.second); });
  return result;
}

std::vector<CpuPlace> usablePlaces(const std::vector<CpuPackage>& packages) {
  std::vector<CpuPlace> places;
  for (const CpuPackage& package : packages)
    for (std::size_t i = 0; i < package.online.size(); ++i) {
      const unsigned cpu = package.online[i];
      if (std::find(package.cpus.begin(), package.cpus.end(), cpu) == package.cpus.end()) continue;
      const unsigned core = i < package.coreIds.size() ? package.coreIds[i] : cpu;
      places.push_back({cpu, core, package.number});
    }
  return places;
}

std::vector<CpuCache> readCpuCaches(const std::string& root, unsigned cpu) {
  const std::string folder =
      root + "/sys/devices/system/cpu/cpu" + std::to_string(cpu) + "/cache/index";
  std::vector<CpuCache> caches;
  for (unsigned index = 0;; ++index) {
    const std::string cache = folder + std::to_string(index);
    const std::string type = firstLine(cache + "/type");
    if (type.empty()) break;
    const std::uint64_t bytes = sizeOf(firstLine(cache + "/size"));
    if (type == "Instruction" || bytes == 0) continue;
    const std::size_t threads = parseCpuList(firstLine(cache + "/shared_cpu_list")).size();
    caches.push_back({numberInFile(cache + "/level"), bytes,
                      static_cast<unsigned>(std::max<std::size_t>(threads, 1))});
  }
  std::sort(caches.begin(), caches.end(),
            [](const CpuCache& left, const CpuCache& right) { return left.level < right.level; });
  return caches;
}

}  // namespace providers
