#include <string>

#include "engine/worker/counters/Reading.h"

namespace engine::counters {
namespace {

const char* const kControllerFiles[] = {"ce_count", "ue_count", "ce_noinfo_count",
                                        "ue_noinfo_count"};
const char* const kModuleFiles[] = {"dimm_ce_count", "dimm_ue_count"};

bool isModule(const std::string& name) { return begins(name, "dimm") || begins(name, "rank"); }

bool isChannelCount(const std::string& name) {
  constexpr std::size_t kLength = sizeof "_ce_count" - 1;
  return begins(name, "ch") && name.size() > kLength &&
         name.compare(name.size() - kLength, kLength, "_ce_count") == 0;
}

/// How older kernels have it: a row of chips, and a count for each channel of it.
void readRow(const SystemFolder& row, const std::string& part, Reading& reading) {
  take(row, "ue_count", Place::kMemory, part, reading);
  for (const std::string& name : row.names()) {
    if (isChannelCount(name)) take(row, name, Place::kMemory, part, reading);
  }
}

void readController(const SystemFolder& controller, const std::string& name, Reading& reading) {
  for (const char* const file : kControllerFiles) {
    take(controller, file, Place::kMemory, name, reading);
  }
  bool hasModules = false;
  const std::vector<std::string> names = controller.names();
  for (const std::string& module : names) {
    if (!isModule(module)) continue;
    hasModules = true;
    for (const char* const file : kModuleFiles) {
      take(controller / module, file, Place::kMemory, name + "/" + module, reading);
    }
  }
  if (hasModules) return;
  for (const std::string& row : names) {
    if (begins(row, "csrow")) readRow(controller / row, name + "/" + row, reading);
  }
}

}  // namespace

void readMemory(const SystemFolder& root, Reading& reading) {
  const SystemFolder all = root / "sys/devices/system/edac/mc";
  for (const std::string& name : all.names()) {
    if (begins(name, "mc")) readController(all / name, name, reading);
  }
}

}  // namespace engine::counters
