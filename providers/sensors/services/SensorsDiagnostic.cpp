#include "providers/sensors/services/SensorsDiagnostic.h"

#include <algorithm>
#include <map>
#include <utility>

#include "providers/common/Findings.h"
#include "providers/common/NumberSetting.h"
#include "providers/common/TestFacts.h"
#include "providers/sensors/services/SensorFindings.h"

namespace providers::sensors {

namespace {

constexpr NumberSetting kLoadSeconds{"LoadSeconds", 10, 86400};
/// Before the load and after it: long enough for chips that measure every second or two.
constexpr double kQuietSeconds = 2;
/// As many are measured; of more, the record would be too long for anybody.
constexpr std::size_t kMostMeasured = 100;

DiagnosticDescription descriptionOfTest() {
  constexpr std::uint16_t kFunctional = 2, kHealthCheck = 4;
  TestFacts facts;
  facts.family = "DIAGS_Sensors";
  facts.name = "DIAGS: Sensors";
  facts.elementName = "Sensors Test";
  facts.text =
      "Looks whether temperatures, fans and voltages are within their own limits before all "
      "processors are kept busy, meanwhile and afterwards.";
  facts.testTypes = {kFunctional, kHealthCheck};
  facts.settings = {
      {"HaltOnError", false, false}, {"QuickMode", false, false}, kLoadSeconds.property()};
  facts.seconds = kLoadSeconds.standard + static_cast<std::uint32_t>(2 * kQuietSeconds);
  return describeTest(facts);
}

/// Of what is too much when it is high the highest value is told, of fans the lowest.
std::optional<double> telling(const SensorCourse& course, Phase phase) {
  const Shown& shown = course.in(phase);
  return course.sensor.kind == Kind::Fan ? shown.lowest : shown.highest;
}

std::vector<Measured> measuredOf(const SensorCourse& course, const std::string& title) {
  static constexpr std::pair<Phase, const char*> kNames[] = {
      {Phase::Before, "Before"}, {Phase::UnderLoad, "UnderLoad"}, {Phase::After, "After"}};
  const Limits& limits = course.sensor.limits;
  std::vector<Measured> list;
  for (const auto& [phase, name] : kNames) {
    const auto value = telling(course, phase);
    if (!value) continue;
    Measured one;
    one.name = title + name;
    one.value = *value;
    one.unit = unitText(course.sensor.kind);
    one.whole = false;
    one.fold = course.sensor.kind == Kind::Fan ? Fold::Least : Fold::Most;
    one.minimum = limits.low ? limits.low : limits.lowCritical;
    one.maximum = limits.high ? limits.high : limits.highCritical;
    list.push_back(std::move(one));
  }
  return list;
}

std::string limitsText(const SensorCourse& course) {
  const Limits& limits = course.sensor.limits;
  const Kind kind = course.sensor.kind;
  std::string text;
  const auto add = [&](const char* name, const std::optional<double>& limit) {
    if (limit) text += std::string(text.empty() ? "" : ", ") + name + valueText(kind, *limit);
  };
  add("critical below ", limits.lowCritical);
  add("at least ", limits.low);
  add("at most ", limits.high);
  add("critical from ", limits.highCritical);
  return text.empty() ? "it has no limit" : text;
}

std::string lineOf(const SensorCourse& course) {
  std::string line =
      "  " + std::string(kindText(course.sensor.kind)) + " " + describe(course.sensor) + ":";
  if (!course.wasRead()) return line + " cannot be read\n";
  const char* between = " ";
  for (const Phase phase : {Phase::Before, Phase::UnderLoad, Phase::After}) {
    const auto value = telling(course, phase);
    line += between + (value ? valueText(course.sensor.kind, *value) : std::string("not read")) +
            " " + phaseText(phase);
    between = ", ";
  }
  return line + " (" + limitsText(course) + ")\n";
}

struct Tally {
  std::size_t read = 0;
  std::size_t judged = 0;
};

Tally tallyOf(const Course& course) {
  Tally tally;
  for (const SensorCourse& one : course.sensors()) {
    if (one.wasRead()) ++tally.read;
    // A flag of the chip is a judgement, too, whether or not its limit is told.
    if (one.wasRead() && (hasLimits(one.sensor) || one.alarm || one.criticalAlarm || one.fault))
      ++tally.judged;
  }
  return tally;
}

/// Names of sensors as identifiers, each of them once.
class Titles {
 public:
  std::string of(const Sensor& sensor) {
    std::string title = measureName(describe(sensor));
    if (title.empty() || (title.front() >= '0' && title.front() <= '9')) title = "Sensor" + title;
    const unsigned known = ++m_known[title];
    return known == 1 ? title : title + "No" + std::to_string(known);
  }

 private:
  std::map<std::string, unsigned> m_known;
};

Outcome describeCourse(const Course& course, const Tally& tally) {
  Outcome outcome;
  std::vector<Finding> findings;
  Titles titles;
  for (const SensorCourse& one : course.sensors()) {
    for (Finding& finding : findingsOf(one)) findings.push_back(std::move(finding));
    outcome.text += lineOf(one);
    if (outcome.measured.size() >= kMostMeasured) continue;
    for (Measured& measured : measuredOf(one, titles.of(one.sensor)))
      outcome.measured.push_back(std::move(measured));
  }
  outcome.summary = findings.empty() ? countText(tally.judged, "sensor") + " within limits, of " +
                                           std::to_string(course.sensors().size())
                                     : countText(findings.size(), "finding") + " of " +
                                           countText(course.sensors().size(), "sensor");
  outcome.measured.push_back(
      {"JudgedSensors", static_cast<double>(tally.judged), {}, true, Fold::Least, {}, {}});
  addFindings(outcome, findings);
  return outcome;
}

std::string headText(const Course& course, const Tally& tally, const std::string& source,
                     double seconds, unsigned threads) {
  return countText(course.sensors().size(), "sensor") + ", " + std::to_string(tally.read) +
         " of them read and " + std::to_string(tally.judged) + " with limits; by " + source + "\n" +
         formatted("Load: %.0f s on ", seconds) + countText(threads, "processor") + "\n";
}

}  // namespace

SensorsDiagnostic::SensorsDiagnostic(SensorsSurroundings surroundings)
    : m_surroundings(std::move(surroundings)), m_description(descriptionOfTest()) {}

std::vector<Device> SensorsDiagnostic::devices() const {
  if (!m_surroundings.hasSensors()) return {};
  Device device;
  device.id = "sensors0";
  device.name = "Sensors";
  return {device};
}

std::string SensorsDiagnostic::refuse(const RunSettings& settings) const {
  return kLoadSeconds.refuse(settings);
}

double SensorsDiagnostic::passSeconds(const RunSettings& settings) const {
  return kLoadSeconds.of(settings) + 2 * kQuietSeconds;
}

bool SensorsDiagnostic::watch(Phase phase, double seconds, const ReadSensors& read, Course& course,
                              RunControl& control) const {
  constexpr double kReadEvery = 1, kStep = 0.1;
  const double begin = m_surroundings.clock();
  double nextAt = 0;
  for (double passed = 0; passed < seconds; passed = m_surroundings.clock() - begin) {
    if (control.stopRequested()) return false;
    if (passed >= nextAt) {
      course.add(phase, read());
      nextAt += kReadEvery;
      if (phase == Phase::UnderLoad && course.isCritical()) return true;
    }
    control.progress((static_cast<double>(phase) + passed / seconds) / kPhases);
    m_surroundings.sleep(std::min(kStep, seconds - passed));
  }
  course.add(phase, read());
  return !control.stopRequested();
}

SensorsDiagnostic::Watched SensorsDiagnostic::follow(const ReadSensors& read, double loadSeconds,
                                                     RunControl& control) const {
  Watched watched;
  control.status("Reading the sensors at rest");
  if (!watch(Phase::Before, kQuietSeconds, read, watched.course, control)) return watched;
  bool goesOn = false;
  {
    control.status("Keeping all processors busy");
    const double begin = m_surroundings.clock();
    const auto load = m_surroundings.startLoad();
    goesOn = watch(Phase::UnderLoad, loadSeconds, read, watched.course, control);
    watched.loadSeconds = m_surroundings.clock() - begin;
  }
  control.status("Reading the sensors after the load");
  if (goesOn) watch(Phase::After, kQuietSeconds, read, watched.course, control);
  return watched;
}

Outcome SensorsDiagnostic::run(const Device&, const RunSettings& settings, RunControl& control) {
  const OpenedSensors opened = m_surroundings.open();
  const double seconds = kLoadSeconds.of(settings);
  const Watched watched = follow(opened.read, seconds, control);
  const Course& course = watched.course;
  const Tally tally = tallyOf(course);
  if (!control.stopRequested() && tally.read == 0)
    return notTested("Not tested: no sensor can be read",
                     "none of " + countText(course.sensors().size(), "sensor") + " can be read");
  Outcome outcome = describeCourse(course, tally);
  const std::string head =
      headText(course, tally, opened.source, watched.loadSeconds, m_surroundings.loadThreads);
  if (!control.stopRequested() && tally.judged == 0 && outcome.notes.empty())
    return notTested("Not tested: no sensor has limits", head + outcome.text);
  outcome.text = outcome.summary + "\n" + head + outcome.text;
  if (course.isCritical()) outcome.text += "The load was ended when a limit was reached\n";
  if (control.stopRequested()) markStopped(outcome);
  return outcome;
}

}  // namespace providers::sensors
