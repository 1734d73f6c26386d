// The reads of the disk tests beside those of dd and fio: by turns, on one file, past the cache.

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "providers/common/RunSources.h"
#include "providers/common/SplitMix.h"
#include "providers/disk/reading/ReadPass.h"

namespace {

using namespace providers;
using namespace providers::disk;

constexpr std::uint64_t kMebi = std::uint64_t{1} << 20;
constexpr std::uint64_t kFileBytes = 1024 * kMebi;
constexpr double kRandomSeconds = 1;
constexpr int kRounds = 15;
constexpr double kGoal = 0.95;

class Nobody : public RunControl {
 public:
  void progress(double) override {}
  void status(const std::string&) override {}
  bool stopRequested() const override { return false; }
};

void writeFile(const std::string& path) {
  std::ofstream file(path, std::ios::binary);
  std::vector<std::uint64_t> words(kMebi / sizeof(std::uint64_t));
  for (std::uint64_t place = 0; place < kFileBytes; place += kMebi) {
    for (std::size_t i = 0; i < words.size(); ++i) words[i] = splitMix(place, i);
    file.write(reinterpret_cast<const char*>(words.data()), kMebi);
  }
  file.close();
  // What is still on its way to the disk would be measured, too.
  const int written = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (written < 0 || fsync(written) != 0) std::cerr << "the file may not be on the disk yet\n";
  if (written >= 0) close(written);
}

ReadReport read(const std::string& path, const SourceShape& shape, Extents& extents,
                double seconds) {
  const OpenedSource opened = openSource(path, shape);
  if (!opened.source) {
    std::cerr << opened.problem << "\n";
    std::exit(1);
  }
  ReadPlan plan;
  plan.seconds = seconds;
  Nobody nobody;
  const ReadPass::Clock clock = steadySeconds;
  return ReadPass(*opened.source, extents, plan, clock, nobody).run();
}

/// MiB/s.
double ourSequential(const std::string& path) {
  SequentialExtents extents({0, kFileBytes}, kFileBytes, {}, 1);
  const ReadReport report = read(path, {8, kMebi}, extents, 0);
  return static_cast<double>(report.readBytes) / static_cast<double>(kMebi) / report.seconds;
}

/// Reads a second.
double ourRandom(const std::string& path) {
  RandomExtents extents({0, kFileBytes}, 100000000, 4096, 7);
  const ReadReport report = read(path, {32, 4096}, extents, kRandomSeconds);
  return static_cast<double>(report.reads) / report.seconds;
}

/// What the command prints; nothing where it cannot be run.
std::optional<std::string> outputOf(const std::string& command) {
  FILE* pipe = popen(command.c_str(), "r");  // NOLINT: the command is ours
  if (!pipe) return std::nullopt;
  std::string text;
  std::array<char, 4096> part{};
  while (std::fgets(part.data(), part.size(), pipe)) text += part.data();
  if (pclose(pipe) != 0) return std::nullopt;
  return text;
}

/// MiB/s.
std::optional<double> ddSequential(const std::string& path) {
  const auto text = outputOf("LC_ALL=C dd if=" + path + " of=/dev/null bs=1M iflag=direct 2>&1");
  if (!text) return std::nullopt;
  const std::size_t place = text->find("copied, ");
  if (place == std::string::npos) return std::nullopt;
  return static_cast<double>(kFileBytes / kMebi) / std::atof(text->c_str() + place + 8);
}

/// Reads a second.
std::optional<double> fioRandom(const std::string& path) {
  const auto text =
      outputOf("fio --name=r --filename=" + path +
               " --readonly --direct=1 --rw=randread --bs=4k --iodepth=32 --ioengine=io_uring "
               "--time_based --runtime=1 --minimal 2>/dev/null");
  if (!text) return std::nullopt;
  constexpr int kReadRate = 7;
  std::istringstream fields(*text);
  std::string field;
  for (int i = 0; i <= kReadRate; ++i)
    if (!std::getline(fields, field, ';')) return std::nullopt;
  return std::atof(field.c_str());
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values.empty() ? 0 : values[values.size() / 2];
}

/// Whether the goal is reached. By turns, since the disk's speed differs from minute to minute, and
/// now one first, now the other, as a disk that is allowed so much a second is slower for who comes
/// second.
bool compare(const char* what, const char* unit, const std::string& path,
             double (*ours)(const std::string&),
             std::optional<double> (*theirs)(const std::string&)) {
  std::vector<double> own, others, ratios;
  for (int i = 0; i < kRounds; ++i) {
    const bool oursFirst = i % 2 == 0;
    if (oursFirst) own.push_back(ours(path));
    const auto other = theirs(path);
    if (!oursFirst) own.push_back(ours(path));
    if (!other || *other <= 0) continue;
    others.push_back(*other);
    ratios.push_back(own.back() / *other);
  }
  std::printf("%s: ours %.0f %s", what, median(own), unit);
  if (ratios.empty()) {
    std::printf(", the other program cannot be run\n");
    return true;
  }
  std::printf(", theirs %.0f %s, ratio %.2f (%.2f to %.2f)\n", median(others), unit, median(ratios),
              *std::min_element(ratios.begin(), ratios.end()),
              *std::max_element(ratios.begin(), ratios.end()));
  return median(ratios) >= kGoal;
}

}  // namespace

int main() {
  const char* const folder = std::getenv("DIAGS_BENCH_FOLDER");
  const std::string path = std::string(folder ? folder : "/var/tmp") + "/diags-disk-read-bench";
  writeFile(path);
  const bool sequential =
      compare("sequential reads of 1 MiB, beside dd", "MiB/s", path, ourSequential, ddSequential);
  const bool random =
      compare("random reads of 4 KiB, 32 in flight, beside fio", "1/s", path, ourRandom, fioRandom);
  std::remove(path.c_str());
  return sequential && random ? 0 : 1;
}
