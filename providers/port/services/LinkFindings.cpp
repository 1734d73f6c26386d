#include "providers/port/services/LinkFindings.h"

#include <algorithm>

namespace providers::port {

namespace {

FaultyPart partOf(const Port& port) {
  return {"network port " + port.id, port.slot.empty() ? port.pciAddress : port.slot, {}};
}

std::string counted(const Rises& rises) {
  std::string text;
  for (const auto& [name, rise] : rises)
    text += (text.empty() ? "" : ", ") + name + " by " + std::to_string(rise);
  return text;
}

std::string modeText(const LinkMode& mode) {
  return std::to_string(mode.megabits) + " Mbit/s, " + (mode.full ? "full" : "half") + " duplex";
}

const char* const kCheckCable =
    "check the cable of this port and the port at its other end; replace the cable, then try "
    "another port";

/// By the system's count, or, where it has none, as often as it was seen.
std::uint64_t changesIn(const PortWatch& watch) {
  if (!watch.before.linkChanges || !watch.after.linkChanges) return watch.seenChanges;
  return std::max(*watch.before.linkChanges, *watch.after.linkChanges) - *watch.before.linkChanges;
}

/// When the port had the link that it has no more; nothing where it is not known to have had one.
std::string lossText(const PortWatch& watch) {
  if (watch.after.linkGains.value_or(0) > 0) return "; it had one since the system's start";
  const bool had = watch.before.carrier.value_or(false) || watch.seenChanges > 0;
  return had ? "; it lost one during the test" : "";
}

/// What else is to be known of a port that has no link.
std::string historyText(const PortState& state) {
  if (state.member) return "; it is a member of a bond or a bridge";
  return state.linkGains ? "" : "; whether it had one since the system's start is not told";
}

/// A port that had a link, or that somebody has made part of something, is meant to have one. Of
/// another one, which is switched on by habit, nobody knows.
Finding noLink(const Port& port, const PortWatch& watch) {
  const std::string loss = lossText(watch);
  const bool relied = !loss.empty() || watch.after.member;
  Finding finding;
  finding.code = "No link";
  finding.state = relied ? CompletionState::Failed : CompletionState::Warning;
  finding.text = describe(port) + " is switched on and has no link" +
                 (loss.empty() ? historyText(watch.after) : loss);
  finding.whatToDo = relied ? kCheckCable
                            : "plug the cable in, or switch the port off if it is not used" +
                                  inBrackets(port.switchOff);
  return finding;
}

Finding unsteadyLink(const Port& port, const PortWatch& watch) {
  Finding finding;
  finding.code = "Unsteady link";
  finding.text = describe(port) + " changed between link and no link " +
                 countText(changesIn(watch), "time") + " during the test";
  finding.whatToDo = kCheckCable;
  return finding;
}

/// Slower than both ends have offered: a pair of wires is broken, as a rule.
bool isSlow(const PortWatch& watch) {
  return watch.modes.common && watch.after.megabits &&
         *watch.after.megabits < watch.modes.common->megabits;
}

Finding slowLink(const Port& port, const PortWatch& watch) {
  Finding finding;
  finding.code = "Link speed";
  finding.text = describe(port) + " runs at " + linkText(watch.after) + "; both ends can " +
                 modeText(*watch.modes.common);
  finding.whatToDo = "replace the cable; a broken pair of wires leaves a slower link";
  return finding;
}

Finding halfDuplex(const Port& port) {
  Finding finding;
  finding.code = "Half duplex";
  finding.text = describe(port) + " runs at half duplex: expected full, found half";
  finding.whatToDo = "let both ends negotiate, or set both to the same speed and to full duplex";
  return finding;
}

Finding risen(const Port& port, const Rises& rises) {
  Finding finding;
  finding.code = "Rising error counter";
  finding.text = "Error counters of " + describe(port) + " rose during the test: " + counted(rises);
  finding.whatToDo =
      "replace the cable or its transceivers; if the counters go on rising, try "
      "another port at the other end, then replace the adapter";
  return finding;
}

Finding unread(const Port& port, const PortState& state) {
  Finding finding;
  finding.code = "Unreadable counter";
  finding.text = "Error counters of " + describe(port) + " cannot be read: ";
  for (const std::string& name : state.unreadable)
    finding.text += (&name == &state.unreadable.front() ? "" : ", ") + name;
  finding.whatToDo = "look into the system's log for what the driver says of the port";
  return finding;
}

}  // namespace

bool isLinked(const PortState& state) { return state.present && state.carrier.value_or(true); }

Rises risesOf(const std::map<std::string, std::uint64_t>& before,
              const std::map<std::string, std::uint64_t>& after) {
  Rises rises;
  for (const auto& [name, count] : after) {
    const auto known = before.find(name);
    if (known != before.end() && count > known->second)
      rises.emplace_back(name, count - known->second);
  }
  return rises;
}

std::string linkText(const PortState& state) {
  const std::string speed =
      state.megabits ? std::to_string(*state.megabits) + " Mbit/s" : "a speed that is not told";
  switch (state.duplex) {
    case Duplex::Full:
      return speed + ", full duplex";
    case Duplex::Half:
      return speed + ", half duplex";
    case Duplex::Unknown:
      break;
  }
  return speed;
}

std::vector<Finding> findingsOf(const Port& port, const PortWatch& watch) {
  std::vector<Finding> findings;
  const bool linked = isLinked(watch.after);
  if (!linked) findings.push_back(noLink(port, watch));
  if (changesIn(watch) > 0) findings.push_back(unsteadyLink(port, watch));
  if (linked && isSlow(watch)) findings.push_back(slowLink(port, watch));
  if (linked && watch.after.duplex == Duplex::Half) findings.push_back(halfDuplex(port));
  const Rises rises = risesOf(watch.before.errors, watch.after.errors);
  if (!rises.empty()) findings.push_back(risen(port, rises));
  if (!watch.after.unreadable.empty()) findings.push_back(unread(port, watch.after));
  for (Finding& finding : findings) finding.part = partOf(port);
  return findings;
}

}  // namespace providers::port
