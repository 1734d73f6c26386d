#include "providers/pcie/services/PcieDiagnostic.h"

#include <algorithm>
#include <utility>

#include "providers/common/Findings.h"
#include "providers/common/NumberSetting.h"
#include "providers/common/TestFacts.h"
#include "providers/pcie/finding/SysfsLinks.h"
#include "providers/pcie/services/LinkFindings.h"

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
      "errors are counted at rest and while the devices' configurations are read.";
  facts.testTypes = {kFunctional, kHealthCheck};
  facts.settings = {
      {"HaltOnError", false, false}, {"QuickMode", false, false}, kWatchSeconds.property()};
  facts.seconds = 2 * kWatchSeconds.standard;
  return describeTest(facts);
}

/// The course of one run.
class Course {
 public:
  Course(const PcieSurroundings& surroundings, double seconds, RunControl& control)
      : m_surroundings(surroundings), m_seconds(seconds), m_control(control) {}

  LinkWatch follow() {
    LinkWatch watch;
    watch.atRest = findLinks(m_surroundings.sys);
    if (watch.atRest.empty()) return watch;
    watch.before = readErrors(m_surroundings.sys);
    m_control.status("Watching the links at rest");
    phase(0, [](double) {});
    watch.afterRest = readErrors(m_surroundings.sys);
    m_control.status("Reading the devices");
    watch.load = load(watch.atRest);
    for (Link link : watch.atRest) {
      link.device = readEnd(m_surroundings.sys, link.device.address);
      watch.underLoad.push_back(std::move(link));
    }
    watch.afterLoad = readErrors(m_surroundings.sys);
    return watch;
  }

 private:
  /// `work` is done again and again for the time, and may take some of it; what is left of a step
  /// is slept.
  template <class Work>
  void phase(double first, Work work, double pause = 0.1) {
    const double begin = m_surroundings.clock();
    for (double passed = 0; passed < m_seconds; passed = m_surroundings.clock() - begin) {
      if (m_control.stopRequested()) return;
      m_control.progress(first + passed / m_seconds / 2);
      work(passed);
      if (pause > 0) m_surroundings.sleep(std::min(pause, m_seconds - passed));
    }
  }

  /// One round after another of reading each device and comparing who it says that it is.
  LoadReport load(const std::vector<Link>& links) {
    constexpr std::size_t kIdentity = 4;
    static const std::string kNobody(kIdentity, '\xff');
    constexpr double kHalf = 0.5;
    constexpr int kRounds = 16;
    LoadReport report;
    std::map<std::string, std::string> identities;
    const auto round = [&](double) {
      for (const Link& link : links) {
        const std::string& address = link.device.address;
        const std::string found = m_surroundings.readConfiguration(address).substr(0, kIdentity);
        if (!found.empty()) ++report.reads;
        const std::string& known = identities.emplace(address, found).first->second;
        const bool silent =
            std::find(report.silent.begin(), report.silent.end(), address) != report.silent.end();
        if ((found != known || found == kNobody) && !silent) report.silent.push_back(address);
      }
    };
    phase(
        kHalf,
        [&](double passed) {
          for (int i = 0; i < kRounds; ++i) round(passed);
        },
        0);
    return report;
  }

  const PcieSurroundings& m_surroundings;
  const double m_seconds;
  RunControl& m_control;
};

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
          {"Reads", static_cast<double>(watch.load.reads)}};
}

std::string linkLines(const LinkWatch& watch, const NameOf& nameOf) {
  std::string lines;
  for (const Link& link : watch.underLoad) {
    lines += "  " + nameOf(link) + ": " + linkText(link.device.side);
    if (isSlow(link) && savesPower(link))
      lines += "; it could have " + speedText(*expectedSpeed(link)) +
               ", but such devices are slower when they have nothing to do: not judged";
    lines += "\n";
  }
  return lines;
}

/// The load is told as what it is: requests and answers of four bytes, a tiny part of what a link
/// can carry.
std::string loadText(const LinkWatch& watch, double seconds) {
  return formatted("Watched for %.0f s at rest and %.0f s under load: ", seconds, seconds) +
         std::to_string(watch.load.reads) +
         " readings of the devices' configurations, which is little data; what the devices carry "
         "in use is not made here\n";
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
  const LinkWatch watch = Course(m_surroundings, seconds, control).follow();
  if (watch.atRest.empty())
    return notTested("Not tested: there is no link", "there is no PCI Express link any more");
  Outcome outcome = outcomeOf(watch, namesFor(watch.atRest, m_surroundings.nameFiles), seconds);
  if (control.stopRequested()) markStopped(outcome);
  return outcome;
}

}  // namespace providers::pcie
