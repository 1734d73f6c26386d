#include "providers/pcie/services/Course.h"

#include <algorithm>
#include <map>
#include <memory>
#include <utility>

#include "providers/pcie/finding/SysfsLinks.h"

namespace providers::pcie {

namespace {

/// The course of one run.
class Course {
 public:
  Course(const PcieSurroundings& surroundings, double seconds, RunControl& control)
      : m_surroundings(surroundings), m_seconds(seconds), m_control(control) {}

  LinkWatch follow() {
    m_watch.atRest = findLinks(m_surroundings.sys);
    if (m_watch.atRest.empty()) return std::move(m_watch);
    m_watch.before = readErrors(m_surroundings.sys);
    m_control.status("Watching the links at rest");
    phase(0, [] {});
    m_watch.afterRest = readErrors(m_surroundings.sys);
    m_control.status("Reading the devices");
    m_watch.underLoad = m_watch.atRest;
    load();
    m_watch.afterLoad = readErrors(m_surroundings.sys);
    return std::move(m_watch);
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
      work();
      if (pause > 0) m_surroundings.sleep(std::min(pause, m_seconds - passed));
    }
  }

  /// Reads the disks, and one round after another all configurations, with a look at the links now
  /// and then, the last one before the disks come to rest.
  void load() {
    constexpr double kHalf = 0.5, kBetweenLooks = 0.25;
    constexpr int kRounds = 16;
    LoadReport& report = m_watch.load;
    report.disks = disksOverLinks();
    const double begin = m_surroundings.clock();
    const std::unique_ptr<DiskLoad> disks =
        report.disks.empty() ? nullptr : m_surroundings.startLoad(report.disks);
    bool any = false;
    double looked = begin;
    phase(
        kHalf,
        [&] {
          for (int i = 0; i < kRounds; ++i) readConfigurations();
          if (any && m_surroundings.clock() - looked < kBetweenLooks) return;
          look(!any);
          any = true;
          looked = m_surroundings.clock();
        },
        0);
    look(!any);
    report.seconds = m_surroundings.clock() - begin;
    if (disks) report.disksRead = disks->sofar();
  }

  std::vector<LinkedDisk> disksOverLinks() const {
    std::vector<LinkedDisk> disks;
    if (m_control.stopRequested()) return disks;
    for (LinkedDisk& disk : findLinkedDisks(m_surroundings.sys))
      if (std::any_of(m_watch.atRest.begin(), m_watch.atRest.end(),
                      [&disk](const Link& link) { return comesOver(link, disk); }))
        disks.push_back(std::move(disk));
    return disks;
  }

  /// A link that has lost lanes for a moment has lost them; its speed may change by itself, and is
  /// as it was last.
  void look(bool first) {
    for (Link& link : m_watch.underLoad) {
      const std::optional<unsigned> least = link.device.side.width;
      link.device = readEnd(m_surroundings.sys, link.device.address);
      std::optional<unsigned>& width = link.device.side.width;
      if (!first && width && least) width = std::min(*width, *least);
    }
  }

  /// Each device's, comparing who it says that it is.
  void readConfigurations() {
    constexpr std::size_t kIdentity = 4;
    static const std::string kNobody(kIdentity, '\xff');
    LoadReport& report = m_watch.load;
    for (const Link& link : m_watch.atRest) {
      const std::string& address = link.device.address;
      const std::string found = m_surroundings.readConfiguration(address).substr(0, kIdentity);
      if (!found.empty()) ++report.reads;
      const std::string& known = m_identities.emplace(address, found).first->second;
      const bool silent =
          std::find(report.silent.begin(), report.silent.end(), address) != report.silent.end();
      if ((found != known || found == kNobody) && !silent) report.silent.push_back(address);
    }
  }

  const PcieSurroundings& m_surroundings;
  const double m_seconds;
  RunControl& m_control;
  LinkWatch m_watch;
  std::map<std::string, std::string> m_identities;
};

}  // namespace

LinkWatch watchLinks(const PcieSurroundings& surroundings, double seconds, RunControl& control) {
  return Course(surroundings, seconds, control).follow();
}

}  // namespace providers::pcie
