#include <algorithm>
#include <atomic>

#include "providers/memory/engine/MemoryEngine.h"
#include "providers/memory/size/MemoryBuffer.h"

namespace providers::memory {

namespace {

constexpr std::size_t kPageLines = kPageBytes / kLineBytes;

/// How far a thread goes between two questions: no further than all of them together may, since
/// each may have asked before the others went on.
std::size_t stepLines(std::uint64_t slack, unsigned threads) {
  constexpr std::uint64_t kMost = std::uint64_t{16} << 20;
  const std::uint64_t bytes = std::clamp(slack / threads, kPageBytes, kMost);
  return static_cast<std::size_t>(bytes / kPageBytes) * kPageLines;
}

void touch(std::uint64_t* words, LineRange lines) {
  const std::size_t end = lines.first + lines.count;
  // The first line of the range, and of each page that begins in it.
  for (std::size_t line = lines.first; line < end; line += kPageLines - line % kPageLines)
    *static_cast<volatile std::uint64_t*>(words + line * kLineWords) = 0;
}

}  // namespace

std::vector<LineRange> touchAll(std::uint64_t* words, std::size_t count, ThreadTeam& team,
                                std::uint64_t slack, const std::function<bool()>& mayGoOn,
                                const std::function<void(LineRange)>& touched) {
  const std::size_t most = stepLines(slack, team.size());
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
      const std::size_t step = std::min(most, region.count - done);
      touch(words, {region.first + done, step});
      touched({region.first + done, step});
      done += step;
    }
    region.count = done;
  };
  team.run(work, [] {});
  return regions;
}

}  // namespace providers::memory
