#include "providers/memory/placing/ErrorCounters.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace providers::memory {

namespace {

namespace fs = std::filesystem;

std::uint64_t numberIn(const fs::path& file) {
  std::ifstream stream(file);
  std::uint64_t number = 0;
  return stream >> number ? number : 0;
}

std::string lineIn(const fs::path& file) {
  constexpr std::size_t kLongest = 64;
  std::ifstream stream(file);
  std::string line;
  std::getline(stream, line);
  line.resize(std::min(line.size(), kLongest));
  for (char& letter : line)
    if (letter < ' ' || letter > '~') letter = '?';
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

bool beginsWith(const std::string& name, const char* with) { return name.rfind(with, 0) == 0; }

/// How a kind of driver names folder and files.
struct Naming {
  std::vector<const char*> folders;
  const char* label;
  const char* corrected;
  const char* uncorrected;
};

std::vector<ErrorCounter> countersOf(const fs::path& controller, const Naming& naming) {
  std::vector<ErrorCounter> list;
  std::error_code ignored;
  for (const auto& entry : fs::directory_iterator(controller, ignored)) {
    const std::string name = entry.path().filename().string();
    const bool fits = std::any_of(naming.folders.begin(), naming.folders.end(),
                                  [&](const char* folder) { return beginsWith(name, folder); });
    if (!fits || !entry.is_directory(ignored)) continue;
    list.push_back({controller.filename().string() + "/" + name,
                    lineIn(entry.path() / naming.label), numberIn(entry.path() / naming.corrected),
                    numberIn(entry.path() / naming.uncorrected)});
  }
  return list;
}

}  // namespace

std::vector<ErrorCounter> readErrorCounters(const std::string& root) {
  static const Naming kModules{{"dimm", "rank"}, "dimm_label", "dimm_ce_count", "dimm_ue_count"};
  static const Naming kRows{{"csrow"}, "ch0_dimm_label", "ce_count", "ue_count"};
  std::vector<ErrorCounter> all;
  std::error_code ignored;
  for (const auto& entry : fs::directory_iterator(root + "/sys/devices/system/edac/mc", ignored)) {
    if (!beginsWith(entry.path().filename().string(), "mc")) continue;
    std::vector<ErrorCounter> some = countersOf(entry.path(), kModules);
    if (some.empty()) some = countersOf(entry.path(), kRows);
    all.insert(all.end(), some.begin(), some.end());
  }
  std::sort(all.begin(), all.end(),
            [](const ErrorCounter& a, const ErrorCounter& b) { return a.place < b.place; });
  return all;
}

std::vector<ErrorCounter> risen(const std::vector<ErrorCounter>& before,
                                const std::vector<ErrorCounter>& after) {
  std::vector<ErrorCounter> list;
  for (ErrorCounter counter : after) {
    for (const ErrorCounter& old : before) {
      if (old.place != counter.place) continue;
      counter.corrected -= std::min(old.corrected, counter.corrected);
      counter.uncorrected -= std::min(old.uncorrected, counter.uncorrected);
    }
    if (counter.corrected || counter.uncorrected) list.push_back(counter);
  }
  return list;
}

}  // namespace providers::memory
