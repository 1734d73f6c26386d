#include "providers/pcie/services/PcieDiagnostic.h"

#include <algorithm>
#include <utility>

#include "providers/common/Findings.h"
#include "providers/common/NumberSetting.h"
#include "providers/common/TestFacts.h"
#include "providers/pcie/finding/DeviceNames.h"
#include "providers/pcie/services/Course.h"
#include "providers/pcie/services/LinkFindings.h"
#include "providers/pcie/services/LoadText.h"

namespace providers::pcie {

namespace {

constexpr NumberSetting kWatchSeconds{"WatchSeconds", 5, 86400};

DiagnosticDescription descriptionOfTest() {
  constexpr std::uint16_t kFunctional = 2, kHealthCheck = 4;
  TestFacts facts;
  facts.family = "DIAGS_Pcie";
  facts.name = "DIAGS: PCI Express Link";
  facts.elementName = "PCI Express Link Test";
  facts.text =
      "Looks whether each PCI Express link is as wide and as fast as its ends can, and whether "
      "errors are counted at rest and under load, while the devices' configurations are read and "
      "the "
      "disks among them.";
  facts.testTypes = {kFunctional, kHealthCheck};
  facts.settings = {
      {"HaltOnError", false, false}, {"QuickMode", false, false}, kWatchSeconds.property()};
  facts.seconds = 2 * kWatchSeconds.standard;
  return describeTest(facts);
}

NameOf namesFor(const std::vector<Link>& links, const std::vector<std::string>& files) {
  std::vector<DeviceId> wanted;
  wanted.reserve(links.size());
  for (const Link& link : links) wanted.emplace_back(link.vendorId, link.deviceId);
  return [names = deviceNames(wanted, files)](const Link& link) {
    return link.device.address + " (" + names.at({link.vendorId, link.deviceId}) +
           (link.slot.empty() ? "" : ", slot " + link.slot) + ")";
  };
}

std::vector<Measured> measured(const LinkWatch& watch) {
  const auto most = [](const char* name, std::size_t value) {
    return Measured{name, static_cast<double>(value), {}, true, Fold::Most, {}, 0};
  };
  const auto countIf = [&watch](bool (*wanted)(const Link&)) {
    return static_cast<std::size_t>(
        std::count_if(watch.underLoad.begin(), watch.underLoad.end(), wanted));
  };
  const ErrorRise rise = riseOf(watch.before, watch.afterLoad);
  const auto sum = [](const char* name, std::uint64_t value) {
    return Measured{name, static_cast<double>(value), {}, true, Fold::Sum, {}, 0};
  };
  return {{"Links", static_cast<double>(watch.atRest.size()), {}, true, Fold::Most, {}, {}},
          most("NarrowLinks", countIf(isNarrow)),
          most("SlowLinks",
               countIf([](const Link& link) { return isSlow(link) && !savesPower(link); })),
          sum("CorrectedErrors", rise.corrected),
          sum("UncorrectedErrors", rise.uncorrected),
          {"Reads", static_cast<double>(watch.load.reads)},
          {"DiskData", mebibytesRead(watch.load), "MiB"}};
}

std::string linkLines(const LinkWatch& watch, const NameOf& nameOf) {
  std::string lines;
  for (const Link& link : watch.underLoad) {
    lines += "  " + nameOf(link) + ": " + linkText(link.device.side) + loadText(link, watch.load);
    if (isSlow(link) && savesPower(link))
      lines += "; it could have " + speedText(*expectedSpeed(link)) +
               ", but such devices are slower when they have nothing to do: not judged";
    lines += "\n";
  }
  return lines;
}

Outcome outcomeOf(const LinkWatch& watch, const NameOf& nameOf, double seconds) {
  const std::size_t unknown = unknownLinks(watch);
  if (unknown == watch.atRest.size())
    return notTested(
        "Not tested: no link tells its width",
        "the system does not tell the width of any of " + countText(watch.atRest.size(), "link"));
  const std::vector<Finding> findings = findingsOf(watch, nameOf);
  Outcome outcome;
  outcome.summary =
      findings.empty()
          ? countText(watch.atRest.size() - unknown, "link") + " as wide and fast as both ends can"
          : countText(findings.size(), "finding") + " of " + countText(watch.atRest.size(), "link");
  outcome.text = outcome.summary + "\n" + linkLines(watch, nameOf) + loadText(watch, seconds);
  if (watch.before.empty()) outcome.text += "No device counts errors\n";
  if (unknown > 0)
    outcome.text += countText(unknown, "link") + " not judged, as the width is not told\n";
  outcome.measured = measured(watch);
  addFindings(outcome, findings);
  return outcome;
}

}  // namespace

PcieDiagnostic::PcieDiagnostic(PcieSurroundings surroundings)
    : m_surroundings(std::move(surroundings)), m_description(descriptionOfTest()) {}

std::vector<Device> PcieDiagnostic::devices() const {
  if (!m_surroundings.hasLinks()) return {};
  Device device;
  device.id = "pcie0";
  device.name = "PCI Express";
  return {device};
}

std::string PcieDiagnostic::refuse(const RunSettings& settings) const {
  return kWatchSeconds.refuse(settings);
}

double PcieDiagnostic::passSeconds(const RunSettings& settings) const {
  return 2.0 * kWatchSeconds.of(settings);
}

Outcome PcieDiagnostic::run(const Device&, const RunSettings& settings, RunControl& control) {
  const double seconds = kWatchSeconds.of(settings);
  const LinkWatch watch = watchLinks(m_surroundings, seconds, control);
  if (watch.atRest.empty())
    return notTested("Not tested: there is no link", "there is no PCI Express link any more");
  Outcome outcome = outcomeOf(watch, namesFor(watch.atRest, m_surroundings.nameFiles), seconds);
  if (control.stopRequested()) markStopped(outcome);
  return outcome;
}

}  // namespace providers::pcie
