#include "engine/worker/counters/Rises.h"

#include <algorithm>
#include <utility>

#include "engine/worker/counters/Counts.h"

namespace engine::counters {
namespace {

std::vector<Rise> risesOf(const Key& key, const std::string& before, const std::string& after) {
  std::vector<Rise> rises;
  const Counts former = countsIn(key, before);
  for (const auto& [name, to] : countsIn(key, after)) {
    const auto from = former.find(name);
    if (from == former.end() || from->second >= to) continue;
    rises.push_back({std::get<2>(key), name, from->second, to});
  }
  return rises;
}

void add(std::vector<RisenPart>& parts, const Key& key, std::vector<Rise> rises) {
  const auto& [place, part, file] = key;
  if (parts.empty() || parts.back().place != place || parts.back().part != part) {
    parts.push_back({place, part, {}});
  }
  auto& all = parts.back().rises;
  all.insert(all.end(), std::make_move_iterator(rises.begin()),
             std::make_move_iterator(rises.end()));
}

bool isUncorrected(const Rise& rise) { return rise.file.find("ue_") != std::string::npos; }

/// By how much the parts of the controller rose, of that kind.
std::uint64_t riseBelow(const std::vector<RisenPart>& parts, const RisenPart& controller,
                        bool uncorrected) {
  std::uint64_t sum = 0;
  for (const RisenPart& one : parts) {
    const bool isBelow =
        one.place == controller.place && one.part.rfind(controller.part + "/", 0) == 0;
    if (!isBelow) continue;
    for (const Rise& rise : one.rises) {
      if (isUncorrected(rise) == uncorrected) sum += rise.to - rise.from;
    }
  }
  return sum;
}

bool isTotal(const Rise& rise) { return rise.file == "ce_count" || rise.file == "ue_count"; }

void dropWhatModulesTell(std::vector<RisenPart>& parts) {
  for (RisenPart& one : parts) {
    const bool isController =
        one.place == Place::kMemory && one.part.find('/') == std::string::npos;
    if (!isController) continue;
    const auto isTold = [&](const Rise& rise) {
      return isTotal(rise) && riseBelow(parts, one, isUncorrected(rise)) >= rise.to - rise.from;
    };
    one.rises.erase(std::remove_if(one.rises.begin(), one.rises.end(), isTold), one.rises.end());
  }
  parts.erase(std::remove_if(parts.begin(), parts.end(),
                             [](const RisenPart& one) { return one.rises.empty(); }),
              parts.end());
}

}  // namespace

std::vector<RisenPart> risesBetween(const Reading& before, const Reading& after) {
  std::vector<RisenPart> parts;
  for (const auto& [key, content] : after) {
    const auto former = before.find(key);
    if (former == before.end() || former->second == content) continue;
    std::vector<Rise> rises = risesOf(key, former->second, content);
    if (!rises.empty()) add(parts, key, std::move(rises));
  }
  dropWhatModulesTell(parts);
  return parts;
}

}  // namespace engine::counters
