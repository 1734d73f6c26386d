#include <algorithm>
#include <atomic>

#include "providers/memory/engine/MemoryEngine.h"
#include "providers/memory/size/MemoryBuffer.h"

namespace providers::memory {

namespace {

constexpr std::size_t kStepLines = (std::size_t{16} << 20) / kLineBytes;  // between two questions
constexpr std::size_t kPageLines = kPageBytes / kLineBytes;

void touch(std::uint64_t* words, LineRange lines) {
  const std::size_t end = lines.first + lines.count;
  // The first line of the range, and of each page that begins in it.
  for (std::size_t line = lines.first; line < end; line += kPageLines - line % kPageLines)
    *static_cast<volatile std::uint64_t*>(words + line * kLineWords) = 0;
}

}  // namespace

std::vector<LineRange> touchAll(std::uint64_t* words, std::size_t count, ThreadTeam& team,
                                const std::function<bool()>& mayGoOn) {
  std::vector<LineRange> regions = evenRegions(count, team.size());
  std::atomic<bool> enough{false};
  const auto work = [&](unsigned thread) {
    LineRange& region = regions[thread];
    std::size_t done = 0;
    while (done < region.count) {
      if (enough || !mayGoOn()) {
        enough = true;
        break;
      }
      const std::size_t step = std::min(kStepLines, region.count - done);
      touch(words, {region.first + done, step});
      done += step;
    }
    region.count = done;
  };
  team.run(work, [] {});
  return regions;
}

}  // namespace providers::memory
