#include "providers/pcie/services/LoadText.h"

#include <algorithm>

#include "providers/common/Findings.h"

namespace providers::pcie {

namespace {

constexpr double kMebi = 1U << 20;

std::string textOf(const LinkedDisk& disk, const DiskRead& read, double seconds) {
  const double mebibytes = static_cast<double>(read.bytes) / kMebi;
  if (read.bytes == 0)
    return "; not loaded: " + (read.problem.empty() ? disk.name + " gave nothing in that time"
                               : read.failed > 0
                                   ? "nothing can be read from " + disk.name + ": " + read.problem
                                   : read.problem);
  return formatted("; %.0f MiB read from ", mebibytes) + disk.name +
         formatted(", %.0f MiB/s", seconds > 0 ? mebibytes / seconds : 0);
}

bool isLoaded(const Link& link, const LoadReport& load) {
  for (std::size_t i = 0; i < load.disksRead.size(); ++i)
    if (load.disksRead[i].bytes > 0 && comesOver(link, load.disks[i])) return true;
  return false;
}

}  // namespace

std::string loadText(const Link& link, const LoadReport& load) {
  std::string text;
  for (std::size_t i = 0; i < load.disksRead.size(); ++i)
    if (comesOver(link, load.disks[i]))
      text += textOf(load.disks[i], load.disksRead[i], load.seconds);
  return text;
}

std::string loadText(const LinkWatch& watch, double seconds) {
  const auto loaded = static_cast<std::size_t>(
      std::count_if(watch.atRest.begin(), watch.atRest.end(),
                    [&watch](const Link& link) { return isLoaded(link, watch.load); }));
  const std::size_t others = watch.atRest.size() - loaded;
  std::string text =
      formatted("Watched for %.0f s at rest and %.0f s under load: ", seconds, seconds) +
      std::to_string(watch.load.reads) + " readings of the devices' configurations";
  if (loaded > 0) text += ", and the disks behind " + countText(loaded, "link");
  if (others > 0)
    text += "; for " + countText(others, "link") +
            " no more than the configurations was read, which is little data: what such a device "
            "carries in use is not made here";
  return text + "\n";
}

double mebibytesRead(const LoadReport& load) {
  std::uint64_t bytes = 0;
  for (const DiskRead& read : load.disksRead) bytes += read.bytes;
  const std::uint64_t mebibytes = bytes / (std::uint64_t{1} << 20);
  return static_cast<double>(mebibytes);
}

}  // namespace providers::pcie
