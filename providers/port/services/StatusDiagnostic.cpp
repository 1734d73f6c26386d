#include "providers/port/services/StatusDiagnostic.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include "providers/common/NumberSetting.h"
#include "providers/port/services/LinkFindings.h"

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
  test.settings = {kWatchSeconds.property(), {"QuickMode", false, false}};
  test.seconds = kWatchSeconds.standard;
  return test;
}

/// A packet counts once: the total of its direction has most of what is counted by kinds, too.
std::uint64_t newErrors(const PortWatch& watch) {
  struct Rise {
    std::uint64_t total = 0;
    std::uint64_t kinds = 0;
  };
  std::map<std::string, Rise> directions;
  for (const auto& [name, by] : risesOf(watch)) {
    const std::string direction = name.substr(0, 2);
    Rise& rise = directions[direction];
    (name == direction + "_errors" ? rise.total : rise.kinds) += by;
  }
  std::uint64_t sum = 0;
  for (const auto& [direction, rise] : directions) sum += std::max(rise.total, rise.kinds);
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
  const auto errors = [&state](const char* name, const char* measure) {
    const auto known = state.errors.find(name);
    return known == state.errors.end()
               ? Measured{}
               : Measured{measure, static_cast<double>(known->second), {}, true, Fold::Most, {},
                          {}};
  };
  for (const Measured& one : {errors("rx_errors", "ReceiveErrorsSinceStart"),
                              errors("tx_errors", "SendErrorsSinceStart")})
    if (!one.name.empty()) list.push_back(one);
  return list;
}

/// What was counted before the test is told, and left to who reads it: it may be years old.
std::string countedText(const PortState& state) {
  std::string text;
  for (const auto& [name, count] : state.errors)
    if (count > 0) text += (text.empty() ? "" : ", ") + name + " " + std::to_string(count);
  return "Counted since the system's start: " + (text.empty() ? "no error" : text) + "\n";
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
      formatted("Error counters watched for %.0f s\n", seconds) + countedText(watch.after);
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

Outcome StatusDiagnostic::runOn(const Port& port, const RunSettings& settings,
                                RunControl& control) {
  PortWatch watch;
  watch.before = m_surroundings.readPort(port);
  if (!watch.before.present) return portIsGone(port.id);
  if (!watch.before.on) return switchedOff(port);
  control.status("Watching " + port.id);
  const double begin = m_surroundings.waiting.clock();
  const bool whole = waitFor(kWatchSeconds.of(settings), m_surroundings.waiting, control, 0, 1);
  const double seconds = m_surroundings.waiting.clock() - begin;
  watch.after = m_surroundings.readPort(port);
  if (!watch.after.present) return portIsGone(port.id);
  if (!watch.after.on) return switchedOff(port);
  watch.modes = readLinkModes(*m_surroundings.openEthtool(), port.name);
  Outcome outcome = outcomeOf(port, watch, seconds);
  if (!whole) markStopped(outcome);
  return outcome;
}

}  // namespace providers::port
