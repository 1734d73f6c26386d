#include <algorithm>
#include <cstdlib>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "engine/identity/LinuxParts.h"
#include "engine/identity/Words.h"

namespace engine {
namespace {

constexpr std::size_t kMostSockets = 64;

/// What the system says of the first processor; all of a machine are alike. Only the beginning is
/// read: each further processor takes time.
std::map<std::string, std::string> factsUnder(const SystemFolder& root) {
  constexpr std::size_t kBeginning = 4096;
  std::map<std::string, std::string> facts;
  const std::string all = (root / "proc").bytes("cpuinfo", kBeginning);
  for (std::string_view text = all; !text.empty();) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos) {
      if (line.empty()) break;
      continue;
    }
    facts.emplace(telling(line.substr(0, colon)), telling(line.substr(colon + 1)));
  }
  return facts;
}

unsigned long numberIn(const std::string& text) { return std::strtoul(text.c_str(), nullptr, 10); }

/// The numbers that "0-15,32-47" stands for.
std::vector<std::size_t> numbersIn(const std::string& list) {
  constexpr std::size_t kMost = 16384;
  std::vector<std::size_t> numbers;
  const char* text = list.c_str();
  while (*text >= '0' && *text <= '9') {
    char* end = nullptr;
    const std::size_t first = std::strtoul(text, &end, 10);
    const std::size_t last = *end == '-' ? std::strtoul(end + 1, &end, 10) : first;
    if (last >= kMost || numbers.size() > kMost) break;
    for (std::size_t number = first; number <= last; ++number) numbers.push_back(number);
    text = *end == ',' ? end + 1 : end;
  }
  return numbers;
}

/// How many threads each socket runs.
std::vector<std::size_t> socketsUnder(const SystemFolder& processors) {
  std::vector<std::size_t> sockets;
  std::set<std::size_t> seen;
  for (const std::size_t number : numbersIn(processors.text("online"))) {
    if (seen.count(number) != 0) continue;
    const SystemFolder topology = processors / ("cpu" + std::to_string(number)) / "topology";
    std::string list = topology.text("package_cpus_list");
    if (list.empty()) list = topology.text("core_siblings_list");
    const std::vector<std::size_t> threads = numbersIn(list);
    if (threads.empty() || sockets.size() == kMostSockets) break;
    seen.insert(threads.begin(), threads.end());
    sockets.push_back(threads.size());
  }
  return sockets;
}

}  // namespace

std::vector<Part> processorsUnder(const SystemFolder& root) {
  std::map<std::string, std::string> facts = factsUnder(root);
  std::vector<Part> parts;
  for (const std::size_t threads : socketsUnder(root / "sys/devices/system/cpu")) {
    Part part;
    part.kind = "processor";
    part.location = "CPU " + std::to_string(parts.size());
    part.name = joined({part.location, facts["model name"]}, ": ");
    part.manufacturer = facts["vendor_id"];
    part.version =
        joined({counted(numberIn(facts["cpu cores"]), "core"), counted(threads, "thread")}, ", ");
    parts.push_back(std::move(part));
  }
  return parts;
}

}  // namespace engine
