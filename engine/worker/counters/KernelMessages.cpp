#include "engine/worker/counters/KernelMessages.h"

#include <map>
#include <optional>
#include <utility>

#include "engine/worker/counters/MachineCheckText.h"

namespace engine::counters {
namespace {

constexpr std::size_t kMostOfAKind = 16;

bool has(const std::string& text, const char* part) { return text.find(part) != std::string::npos; }

std::string times(std::uint64_t count) {
  return count == 1 ? std::string() : " (" + std::to_string(count) + " times)";
}

/// An error of a disk: "critical medium error, dev nvme0n1, sector 2048 op 0x0:(READ) flags".
struct DiskError {
  std::string disk;
  std::string kind;
  std::string sector;
};

/// Made of files or memory, or with media that come and go.
bool isOtherDisk(const std::string& disk) {
  for (const char* const kind : {"loop", "ram", "zram", "sr", "fd", "nbd"}) {
    const std::size_t length = std::char_traits<char>::length(kind);
    const bool isOne = disk.compare(0, length, kind) == 0 && disk.size() > length &&
                       disk[length] >= '0' && disk[length] <= '9';
    if (isOne) return true;
  }
  return false;
}

/// What a disk does not know, to forget blocks for instance, it declines by an error, too.
bool isOfData(const std::string& message) {
  return !has(message, " op 0x") || has(message, ":(READ)") || has(message, ":(WRITE)");
}

bool takeDiskError(const std::string& message, DiskError& error) {
  static const std::string kDisk = " error, dev ";
  static const std::string kSector = ", sector ";
  const std::size_t disk = message.find(kDisk);
  const std::size_t sector = disk == std::string::npos ? disk : message.find(kSector, disk);
  if (sector == std::string::npos || !isOfData(message)) return false;
  const std::size_t colon = message.rfind(": ", disk);
  const std::size_t kind = colon == std::string::npos ? 0 : colon + 2;
  const std::size_t begin = disk + kDisk.size();
  error.kind = message.substr(kind, disk - kind) + " error";
  error.disk = message.substr(begin, sector - begin);
  const std::size_t number = sector + kSector.size();
  error.sector = message.substr(number, message.find_first_of(" ,", number) - number);
  return !isOtherDisk(error.disk);
}

/// Lines about hardware that follow each other are about one error: where there is a machine check
/// among them, they are what was printed around it.
class Sorting {
 public:
  void take(const std::string& message) {
    if (has(message, "[Hardware Error]")) return takeLine(message);
    finish();
    DiskError error;
    if (takeDiskError(message, error)) takeDisk(error);
    if (message.rfind("Memory failure: ", 0) == 0) addOther(message);
  }

  std::vector<Finding> findings() {
    finish();
    std::vector<Finding> all;
    addChecks(all);
    addDisks(all);
    addOthers(all);
    return all;
  }

 private:
  void takeLine(const std::string& message) {
    if (const auto check = machineCheckIn(message)) {
      m_around.clear();
      finish();
      m_open = check;
    } else if (!m_open) {
      m_around.push_back(message);
    } else if (const auto address = addressIn(message)) {
      m_open->address = address;
    }
  }

  void finish() {
    if (m_open) ++m_checks[{"CPU " + m_open->processor, describe(*m_open)}];
    m_open.reset();
    for (const std::string& line : m_around) addOther(line);
    m_around.clear();
  }

  void addOther(const std::string& line) {
    if (m_others.size() < kMostOfAKind) m_others.push_back(line);
  }

  void takeDisk(const DiskError& error) {
    auto& [count, first] = m_disks[{error.disk, error.kind}];
    if (count++ == 0) first = error.sector;
  }

  void addChecks(std::vector<Finding>& all) const {
    std::size_t told = 0;
    for (const auto& [where, count] : m_checks) {
      if (told++ == kMostOfAKind) break;
      all.push_back({{Verdict::kWarning,
                      where.second + times(count),
                      where.first,
                      {"Note the bank and address. Replace what they name where it comes back."}},
                     true});
    }
  }

  void addDisks(std::vector<Finding>& all) const {
    std::size_t told = 0;
    for (const auto& [what, found] : m_disks) {
      if (told++ == kMostOfAKind) break;
      all.push_back({{Verdict::kWarning,
                      what.second + times(found.first) + ", the first at sector " + found.second,
                      what.first,
                      {"Check the health of " + what.first + "."}},
                     true});
    }
  }

  void addOthers(std::vector<Finding>& all) const {
    if (m_others.empty()) return;
    std::string text = "the kernel tells of a hardware error";
    for (const std::string& one : m_others) text += "\n" + one;
    all.push_back({{Verdict::kWarning, text, "", {}}, true});
  }

  std::optional<MachineCheck> m_open;
  std::vector<std::string> m_around;
  std::map<std::pair<std::string, std::string>, std::uint64_t> m_checks;
  std::map<std::pair<std::string, std::string>, std::pair<std::uint64_t, std::string>> m_disks;
  std::vector<std::string> m_others;
};

}  // namespace

std::vector<Finding> findingsIn(const std::vector<std::string>& messages) {
  Sorting sorting;
  for (const std::string& message : messages) sorting.take(message);
  return sorting.findings();
}

}  // namespace engine::counters
