#include "providers/pcie/services/LinkFindings.h"

#include <algorithm>
#include <set>
#include <tuple>

namespace providers::pcie {

namespace {

FaultyPart partOf(const Link& link) {
  return {"PCI Express device " + link.device.address,
          link.slot.empty() ? link.device.address : "slot " + link.slot,
          {}};
}

std::string placeOf(const Link& link) {
  return link.slot.empty() ? "the card" : "the card in slot " + link.slot;
}

std::string reseat(const Link& link) {
  return "reseat " + placeOf(link) + " and clean its contacts; if that does not help, try it in " +
         "another slot, then replace it";
}

/// "expected 8 lanes (device 8, port 0000:00:01.0 16), found 4 lanes"
std::string expectedText(const std::string& expected, const std::string& device, const Link& link,
                         const std::string& port, const std::string& found) {
  return "expected " + expected + " (the device can " + device + ", port " + link.port.address +
         " " + port + "), found " + found;
}

Finding narrow(const Link& link, const std::string& name, const char* when) {
  const LinkSide& device = link.device.side;
  Finding finding;
  finding.state = CompletionState::Failed;
  finding.code = "Link width";
  finding.text =
      "Link of " + name + " is below its width" + when + ": " +
      expectedText(countText(*expectedWidth(link), "lane"), std::to_string(*device.mostWidth), link,
                   std::to_string(*link.port.side.mostWidth), countText(*device.width, "lane"));
  finding.whatToDo = reseat(link);
  finding.part = partOf(link);
  return finding;
}

Finding slow(const Link& link, const std::string& name, const char* when) {
  const LinkSide& device = link.device.side;
  Finding finding;
  finding.code = "Link speed";
  finding.text = "Link of " + name + " is below its speed" + when + ": " +
                 expectedText(speedText(*expectedSpeed(link)), speedText(*device.mostSpeed), link,
                              speedText(*link.port.side.mostSpeed), speedText(*device.speed));
  finding.whatToDo =
      reseat(link) + "; look in the firmware's setup for a limit of the slot's speed";
  finding.part = partOf(link);
  return finding;
}

/// A link counts as it was found worse: it may fall back when it has something to do.
void addLink(const Link& atRest, const Link& underLoad, const NameOf& nameOf,
             std::vector<Finding>& findings) {
  const std::string name = nameOf(atRest);
  const bool narrowAtRest = isNarrow(atRest);
  if (narrowAtRest)
    findings.push_back(narrow(atRest, name, ""));
  else if (isNarrow(underLoad))
    findings.push_back(narrow(underLoad, name, " since it was read"));
  // At rest it may save power, so that being slow counts only of one that stays so.
  if (isSlow(underLoad) && !savesPower(underLoad))
    findings.push_back(slow(underLoad, name, isSlow(atRest) ? "" : " since it was read"));
}

Finding silent(const Link& link, const std::string& name) {
  Finding finding;
  finding.state = CompletionState::Failed;
  finding.code = "No answer";
  finding.text = name + " does not answer any more when its configuration is read";
  finding.whatToDo = reseat(link);
  finding.part = partOf(link);
  return finding;
}

/// Reads that failed on the way or in the drive: this test cannot tell.
void addFailedReads(const LinkWatch& watch, const NameOf& nameOf, std::vector<Finding>& findings) {
  for (std::size_t i = 0; i < watch.load.disksRead.size(); ++i) {
    const DiskRead& read = watch.load.disksRead[i];
    const LinkedDisk& disk = watch.load.disks[i];
    const auto link =
        std::find_if(watch.atRest.rbegin(), watch.atRest.rend(),
                     [&disk](const Link& candidate) { return comesOver(candidate, disk); });
    if (read.failed == 0 || link == watch.atRest.rend()) continue;
    Finding finding;
    finding.code = "Failed reads";
    finding.text = countText(read.failed, "read") + " of " + disk.name + " over the link of " +
                   nameOf(*link) + " failed: " + read.problem;
    finding.whatToDo =
        "run the disk tests on " + disk.name + "; if they find no bad sector, " + reseat(*link);
    finding.part = partOf(*link);
    findings.push_back(std::move(finding));
  }
}

/// "BadTLP by 3, RxErr by 1": what rose from one time to the other.
std::string risen(const ErrorCounts& before, const ErrorCounts& after) {
  std::string text;
  for (const auto& [name, count] : after) {
    const auto known = before.find(name);
    const std::uint64_t earlier = known == before.end() ? 0 : known->second;
    if (count > earlier)
      text += (text.empty() ? "" : ", ") + name + " by " + std::to_string(count - earlier);
  }
  return text;
}

struct Severity {
  const char* code;
  const char* words;
  CompletionState state;
  ErrorCounts DeviceErrors::*counts;
};

constexpr Severity kSeverities[] = {
    {"Fatal errors", "Fatal", CompletionState::Failed, &DeviceErrors::fatal},
    {"Nonfatal errors", "Uncorrected", CompletionState::Failed, &DeviceErrors::nonfatal},
    {"Corrected errors", "Corrected", CompletionState::Warning, &DeviceErrors::corrected}};

const Link* linkAt(const LinkWatch& watch, const std::string& address) {
  const auto found =
      std::find_if(watch.atRest.begin(), watch.atRest.end(), [&address](const Link& link) {
        return link.device.address == address || link.port.address == address;
      });
  return found == watch.atRest.end() ? nullptr : &*found;
}

/// The device's own name, or that of a port with what it is linked to.
std::string nameAt(const LinkWatch& watch, const NameOf& nameOf, const std::string& address) {
  const Link* const link = linkAt(watch, address);
  if (!link) return address;
  return link->device.address == address ? nameOf(*link)
                                         : "port " + address + ", linked to " + nameOf(*link);
}

void addRises(const LinkWatch& watch, const NameOf& nameOf, const std::string& when,
              const AllErrors& before, const AllErrors& after, std::vector<Finding>& findings) {
  for (const auto& [address, errors] : after) {
    const auto known = before.find(address);
    if (known == before.end()) continue;
    for (const Severity& severity : kSeverities) {
      const std::string rise = risen(known->second.*severity.counts, errors.*severity.counts);
      if (rise.empty()) continue;
      const Link* const link = linkAt(watch, address);
      Finding finding;
      finding.state = severity.state;
      finding.code = severity.code;
      finding.text = std::string(severity.words) + " errors of " + nameAt(watch, nameOf, address) +
                     " rose " + when + ": " + rise;
      finding.whatToDo = link ? reseat(*link) : "replace the board or the processor it belongs to";
      finding.part =
          link ? partOf(*link) : FaultyPart{"PCI Express device " + address, address, {}};
      findings.push_back(std::move(finding));
    }
  }
}

/// A fatal error since the start has been a real one; of the others many happen while the system
/// looks for its devices.
void addEarlier(const LinkWatch& watch, const NameOf& nameOf, std::vector<Finding>& findings) {
  for (const auto& [address, errors] : watch.before) {
    const std::string counted = risen({}, errors.fatal);
    if (counted.empty()) continue;
    const Link* const link = linkAt(watch, address);
    Finding finding;
    finding.code = "Earlier fatal errors";
    finding.text = "Fatal errors of " + nameAt(watch, nameOf, address) +
                   " since the system's start: " + counted;
    finding.whatToDo = link ? reseat(*link) : "look into the system's log for what they were";
    if (link) finding.part = partOf(*link);
    findings.push_back(std::move(finding));
  }
}

void addUnreadable(const LinkWatch& watch, std::vector<Finding>& findings) {
  std::set<std::string> addresses;
  for (const AllErrors* all : {&watch.before, &watch.afterLoad})
    for (const auto& [address, errors] : *all)
      if (errors.unreadable) addresses.insert(address);
  if (addresses.empty()) return;
  Finding finding;
  finding.code = "Unreadable counter";
  finding.text = "Error counters cannot be read of: ";
  for (const std::string& address : addresses)
    finding.text += (address == *addresses.begin() ? "" : ", ") + address;
  finding.whatToDo = "look into the system's log for what it says of these devices";
  findings.push_back(std::move(finding));
}

void addTo(ErrorRise& rise, const ErrorCounts& before, const ErrorCounts& after,
           std::uint64_t ErrorRise::*sum) {
  for (const auto& [name, count] : after) {
    const auto known = before.find(name);
    if (known != before.end() && count > known->second) rise.*sum += count - known->second;
  }
}

}  // namespace

std::vector<Finding> findingsOf(const LinkWatch& watch, const NameOf& nameOf) {
  std::vector<Finding> findings;
  for (std::size_t i = 0; i < watch.atRest.size(); ++i)
    addLink(watch.atRest[i], watch.underLoad.at(i), nameOf, findings);
  for (const std::string& address : watch.load.silent)
    if (const Link* const link = linkAt(watch, address))
      findings.push_back(silent(*link, nameOf(*link)));
  addFailedReads(watch, nameOf, findings);
  addRises(watch, nameOf, "at rest", watch.before, watch.afterRest, findings);
  addRises(watch, nameOf, "under load", watch.afterRest, watch.afterLoad, findings);
  addEarlier(watch, nameOf, findings);
  addUnreadable(watch, findings);
  return findings;
}

std::size_t unknownLinks(const LinkWatch& watch) {
  return static_cast<std::size_t>(std::count_if(
      watch.underLoad.begin(), watch.underLoad.end(),
      [](const Link& link) { return !link.device.side.width || !expectedWidth(link); }));
}

bool savesPower(const Link& link) {
  constexpr unsigned kClassBits = 16;
  constexpr std::uint32_t kDisplay = 0x03, kProcessor = 0x0B, kAccelerator = 0x12;
  const std::uint32_t kind = link.deviceClass >> kClassBits;
  return kind == kDisplay || kind == kProcessor || kind == kAccelerator;
}

bool isNarrow(const Link& link) {
  const auto expected = expectedWidth(link);
  return expected && link.device.side.width && *link.device.side.width < *expected;
}

bool isSlow(const Link& link) {
  const auto expected = expectedSpeed(link);
  return expected && link.device.side.speed && *link.device.side.speed < *expected;
}

std::string speedText(unsigned tenths) {
  constexpr unsigned kTenths = 10;
  return std::to_string(tenths / kTenths) + "." + std::to_string(tenths % kTenths) + " GT/s";
}

std::string linkText(const LinkSide& side) {
  return (side.speed ? speedText(*side.speed) : "speed not told") + ", " +
         (side.width ? countText(*side.width, "lane") : "width not told");
}

ErrorRise riseOf(const AllErrors& before, const AllErrors& after) {
  ErrorRise rise;
  for (const auto& [address, errors] : after) {
    const auto known = before.find(address);
    if (known == before.end()) continue;
    addTo(rise, known->second.corrected, errors.corrected, &ErrorRise::corrected);
    addTo(rise, known->second.nonfatal, errors.nonfatal, &ErrorRise::uncorrected);
    addTo(rise, known->second.fatal, errors.fatal, &ErrorRise::uncorrected);
  }
  return rise;
}

}  // namespace providers::pcie
