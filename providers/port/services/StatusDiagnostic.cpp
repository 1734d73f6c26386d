#include "providers/port/services/StatusDiagnostic.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <utility>

#include "providers/common/NumberSetting.h"

namespace providers::port {

namespace {

constexpr NumberSetting kWatchSeconds{"WatchSeconds", 5, 86400};

PortTest statusTest() {
  constexpr std::uint16_t kStatus = 8, kHealthCheck = 4;
  PortTest test;
  test.type = kStatus;
  test.name = "Status";
  test.text = "Looks at the link, its speed and duplex, and whether error counters rise.";
  test.testTypes = {kHealthCheck};
  test.settingsClass = "DIAGS_PortStatusTestSettings";
  test.settings = {kWatchSeconds.property(), {"QuickMode", false, false}};
  test.seconds = kWatchSeconds.standard;
  return test;
}

/// What the system calls a direction's counters, and all of its errors.
struct Direction {
  const char* counters;  ///< with what their names begin
  const char* total;
  const char* measure;
};

constexpr std::array<Direction, 4> kDirections{{
    {"rx_", "rx_errors", "ReceiveErrorsSinceStart"},
    {"tx_", "tx_errors", "SendErrorsSinceStart"},
    {"In", "InErrors", "ReceiveErrorsSinceStart"},
    {"Out", "OutErrors", "SendErrorsSinceStart"},
}};

/// A packet counts once: the total of its direction has most of what is counted by kinds, too.
std::uint64_t newErrors(const PortWatch& watch) {
  std::uint64_t sum = 0;
  const Rises rises = risesOf(watch.before.errors, watch.after.errors);
  for (const Direction& direction : kDirections) {
    std::uint64_t total = 0;
    std::uint64_t kinds = 0;
    for (const auto& [name, by] : rises)
      if (name.rfind(direction.counters, 0) == 0) (name == direction.total ? total : kinds) += by;
    sum += std::max(total, kinds);
  }
  return sum;
}

std::vector<Measured> measured(const PortWatch& watch) {
  std::vector<Measured> list;
  const PortState& state = watch.after;
  if (state.carrier) list.push_back({"Link", *state.carrier ? 1.0 : 0.0, {}, true, Fold::Least, 1});
  if (state.carrier.value_or(true) && state.megabits)
    list.push_back(
        {"Speed", static_cast<double>(*state.megabits), "Mbit/s", true, Fold::Least, {}, {}});
  if (!state.errors.empty())
    list.push_back(
        {"NewErrors", static_cast<double>(newErrors(watch)), {}, true, Fold::Sum, {}, 0});
  for (const Direction& direction : kDirections) {
    const auto known = state.errors.find(direction.total);
    if (known != state.errors.end())
      list.push_back(
          {direction.measure, static_cast<double>(known->second), {}, true, Fold::Most, {}, {}});
  }
  return list;
}

/// What was counted before the test is told, and left to who reads it: it may be years old.
std::string countedText(const PortState& state) {
  std::string text;
  for (const auto& [name, count] : state.errors)
    if (count > 0) text += (text.empty() ? "" : ", ") + name + " " + std::to_string(count);
  return "Counted since the system's start: " + (text.empty() ? "no error" : text) + "\n";
}

/// What was dropped without a fault: told, since whoever misses packets looks for it.
std::string discardText(const PortWatch& watch) {
  std::string text;
  const Rises rises = risesOf(watch.before.discards, watch.after.discards);
  for (const auto& [name, count] : watch.after.discards) {
    if (count == 0) continue;
    text += (text.empty() ? "" : ", ") + name + " " + std::to_string(count);
    for (const auto& [risen, by] : rises)
      if (risen == name) text += " (" + std::to_string(by) + " during the test)";
  }
  return text.empty() ? "" : "Dropped without an error, which is no fault: " + text + "\n";
}

/// What this system or this driver keeps to itself is not to look like something that was tested.
std::string untoldText(const PortWatch& watch) {
  if (!isLinked(watch.after)) return {};
  std::string text;
  const auto add = [&text](const char* what) {
    text += (text.empty() ? "" : ", ") + std::string(what);
  };
  if (!watch.after.carrier) add("whether there is a link");
  if (!watch.modes.common || !watch.after.megabits) add("the speed that both ends can");
  if (watch.after.duplex == Duplex::Unknown) add("the duplex");
  return text.empty() ? "" : "Not told, and so not judged: " + text + "\n";
}

std::string summaryOf(const std::vector<Finding>& findings, const PortState& state) {
  if (!findings.empty()) return countText(findings.size(), "finding");
  if (!state.carrier) return "No error; whether there is a link is not told";
  return "Link, " + linkText(state);
}

Outcome outcomeOf(const Port& port, const PortWatch& watch, double seconds) {
  const std::vector<Finding> findings = findingsOf(port, watch);
  Outcome outcome;
  outcome.summary = summaryOf(findings, watch.after);
  outcome.text =
      describe(port) + ": " +
      (watch.after.carrier.value_or(true) ? "link, " + linkText(watch.after) : "no link") + "\n" +
      formatted("Error counters watched for %.0f s\n", seconds) + countedText(watch.after) +
      discardText(watch) + untoldText(watch);
  if (watch.after.errors.empty()) outcome.text += "The port has no error counters\n";
  outcome.measured = measured(watch);
  addFindings(outcome, findings);
  return outcome;
}

}  // namespace

StatusDiagnostic::StatusDiagnostic(StatusSurroundings surroundings)
    : PortDiagnostic(surroundings.findPorts, statusTest()),
      m_surroundings(std::move(surroundings)) {}

std::string StatusDiagnostic::refuse(const RunSettings& settings) const {
  const std::string reason = kWatchSeconds.refuse(settings);
  return reason.empty() ? PortDiagnostic::refuse(settings) : reason;
}

double StatusDiagnostic::passSeconds(const RunSettings& settings) const {
  return kWatchSeconds.of(settings);
}

bool StatusDiagnostic::watchIt(const Port& port, double seconds, RunControl& control,
                               PortWatch& watch) const {
  bool linked = isLinked(watch.before);
  // Where the system counts the changes itself, nobody has to look all the time.
  const bool counted = watch.before.linkChanges.has_value();
  const bool whole = waitFor(seconds, m_surroundings.waiting, control, [&] {
    if (counted) return;
    const bool now = isLinked(m_surroundings.readPort(port));
    if (now != linked) ++watch.seenChanges;
    linked = now;
  });
  watch.after = m_surroundings.readPort(port);
  if (!counted && isLinked(watch.after) != linked) ++watch.seenChanges;
  return whole;
}

Outcome StatusDiagnostic::runOn(const Port& port, const RunSettings& settings,
                                RunControl& control) {
  PortWatch watch;
  watch.before = m_surroundings.readPort(port);
  if (!watch.before.present) return portIsGone(port.id);
  if (!watch.before.on) return switchedOff(port);
  control.status("Watching " + port.id);
  const double begin = m_surroundings.waiting.clock();
  const bool whole = watchIt(port, kWatchSeconds.of(settings), control, watch);
  const double seconds = m_surroundings.waiting.clock() - begin;
  if (!watch.after.present) return portIsGone(port.id);
  if (!watch.after.on) return switchedOff(port);
  watch.modes = m_surroundings.readModes(port);
  Outcome outcome = outcomeOf(port, watch, seconds);
  if (!whole) markStopped(outcome);
  return outcome;
}

}  // namespace providers::port
