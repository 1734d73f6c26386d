#include "providers/port/services/LinkFindings.h"

namespace providers::port {

namespace {

FaultyPart partOf(const Port& port) {
  return {"network port " + port.id, port.slot.empty() ? port.pciAddress : port.slot, {}};
}

std::string counted(const std::vector<std::pair<std::string, std::uint64_t>>& rises) {
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

bool isLinked(const PortState& state) { return state.carrier.value_or(true); }

/// A port that had a link, or that somebody has made part of something, is meant to have one. Of
/// another one, which is switched on by habit, nobody knows.
Finding noLink(const Port& port, const PortState& state) {
  const bool lost = state.linkGains.value_or(0) > 0;
  Finding finding;
  finding.code = "No link";
  finding.state = lost || state.member ? CompletionState::Failed : CompletionState::Warning;
  finding.text = describe(port) + " is switched on and has no link" +
                 (lost           ? "; it had one since the system's start"
                  : state.member ? "; it is a member of a bond or a bridge"
                                 : "");
  finding.whatToDo = lost || state.member
                         ? kCheckCable
                         : std::string(
                               "plug the cable in, or switch the port off if it is not used "
                               "(ip link set ") +
                               port.id + " down)";
  return finding;
}

Finding unsteadyLink(const Port& port, const PortWatch& watch) {
  Finding finding;
  finding.code = "Unsteady link";
  finding.text =
      describe(port) + " changed between link and no link " +
      countText(watch.after.linkChanges.value_or(0) - watch.before.linkChanges.value_or(0),
                "time") +
      " during the test";
  finding.whatToDo = kCheckCable;
  return finding;
}

bool isUnsteady(const PortWatch& watch) {
  return watch.before.linkChanges && watch.after.linkChanges &&
         *watch.after.linkChanges > *watch.before.linkChanges;
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

Finding risen(const Port& port, const std::vector<std::pair<std::string, std::uint64_t>>& rises) {
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

std::vector<std::pair<std::string, std::uint64_t>> risesOf(const PortWatch& watch) {
  std::vector<std::pair<std::string, std::uint64_t>> rises;
  for (const auto& [name, count] : watch.after.errors) {
    const auto before = watch.before.errors.find(name);
    if (before != watch.before.errors.end() && count > before->second)
      rises.emplace_back(name, count - before->second);
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
  if (!linked) findings.push_back(noLink(port, watch.after));
  if (isUnsteady(watch)) findings.push_back(unsteadyLink(port, watch));
  if (linked && isSlow(watch)) findings.push_back(slowLink(port, watch));
  if (linked && watch.after.duplex == Duplex::Half) findings.push_back(halfDuplex(port));
  const auto rises = risesOf(watch);
  if (!rises.empty()) findings.push_back(risen(port, rises));
  if (!watch.after.unreadable.empty()) findings.push_back(unread(port, watch.after));
  for (Finding& finding : findings) finding.part = partOf(port);
  return findings;
}

}  // namespace providers::port
