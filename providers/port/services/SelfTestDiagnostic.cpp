#include "providers/port/services/SelfTestDiagnostic.h"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

#include "providers/common/Findings.h"

namespace providers::port {

namespace {

/// For how long a port may take to have its link again after tests that took it away.
constexpr double kSettleSeconds = 15;

PortTest testOf(TestMode mode) {
  constexpr std::uint16_t kInternalLoopback = 4, kSelf = 7, kFunctional = 2, kRisky = 5;
  const bool offline = mode == TestMode::Offline;
  constexpr std::uint32_t kOnlineSeconds = 5, kOfflineSeconds = 30;
  PortTest test;
  test.type = offline ? kInternalLoopback : kSelf;
  test.name = offline ? "Internal Loopback" : "Self";
  test.text = offline ? "Has the driver test the adapter's registers, memory, interrupts and inner "
                        "loopback; the port is out of the network meanwhile."
                      : "Has the driver test the adapter as far as the port stays at work.";
  test.testTypes = {kFunctional};
  if (offline) test.characteristics = {kRisky};
  test.seconds = offline ? kOfflineSeconds : kOnlineSeconds;
  return test;
}

std::string reasonOf(const Port& port, int problem) {
  if (problem == EPERM || problem == EACCES)
    return "only root, or who has the right CAP_NET_ADMIN, may have the driver of " + port.id +
           " test the adapter";
  return "the driver of " + describe(port) +
         " does not test it: " + std::generic_category().message(problem);
}

FaultyPart partOf(const Port& port) {
  return {"network port " + port.id, port.slot.empty() ? port.pciAddress : port.slot, {}};
}

std::string replaceAdapter(const Port& port) {
  return "replace the adapter" + (port.slot.empty() ? "" : " in slot " + port.slot);
}

Finding failedTests(const Port& port, const SelfTestReport& report) {
  Finding finding;
  finding.state = CompletionState::Failed;
  finding.code = "Adapter self-test";
  std::string names;
  for (const DriverTest& test : report.tests)
    if (test.value != 0)
      names += (names.empty() ? "" : ", ") + test.name + " (" + std::to_string(test.value) + ")";
  finding.text = "The driver of " + describe(port) + " found faults: " +
                 (names.empty() ? "it does not tell in which of its tests" : names);
  finding.whatToDo =
      "check that the cable is plugged in and run the test again; if the same tests "
      "fail, " +
      replaceAdapter(port);
  finding.part = partOf(port);
  return finding;
}

Finding linkStayedAway(const Port& port) {
  Finding finding;
  finding.state = CompletionState::Warning;
  finding.code = "No link";
  finding.text = describe(port) + " had a link before the test, and none " +
                 formatted("%.0f s after it", kSettleSeconds);
  finding.whatToDo = "look at the port's other end, and switch the port off and on again";
  finding.part = partOf(port);
  return finding;
}

Finding goneSince(const Port& port) {
  Finding finding;
  finding.state = CompletionState::Failed;
  finding.code = "Port gone";
  finding.text = describe(port) + " was there before the test, and is no more since it";
  finding.whatToDo =
      "restart the machine and look for the port; if it is gone again after the test, " +
      replaceAdapter(port);
  finding.part = partOf(port);
  return finding;
}

/// The driver, once it tests, cannot be stopped.
Outcome stoppedBefore(const Port& port) {
  Outcome outcome;
  outcome.summary = "Stopped before the driver began";
  outcome.text = outcome.summary + " to test " + describe(port) + "\n";
  markStopped(outcome);
  return outcome;
}

std::vector<Finding> findingsOf(const Port& port, const SelfTestReport& report) {
  const bool faulty =
      report.failed || std::any_of(report.tests.begin(), report.tests.end(),
                                   [](const DriverTest& test) { return test.value != 0; });
  if (!faulty) return {};
  return {failedTests(port, report)};
}

Outcome outcomeOf(const Port& port, const SelfTestReport& report, TestMode mode) {
  Outcome outcome;
  const auto failed = std::count_if(report.tests.begin(), report.tests.end(),
                                    [](const DriverTest& test) { return test.value != 0; });
  outcome.text = std::string(mode == TestMode::Offline ? "Online and offline" : "Online") +
                 " tests of the driver of " + describe(port) + ":\n";
  for (const DriverTest& test : report.tests)
    outcome.text += "  " + test.name + ": " +
                    (test.value == 0 ? "no fault" : "fault " + std::to_string(test.value)) + "\n";
  outcome.measured = {
      {"Tests", static_cast<double>(report.tests.size()), {}, true, Fold::Most, {}, {}},
      {"FailedTests", static_cast<double>(failed), {}, true, Fold::Most, {}, 0}};
  const std::vector<Finding> findings = findingsOf(port, report);
  outcome.summary = findings.empty()
                        ? "The driver found no fault in " + countText(report.tests.size(), "test")
                        : "The driver found faults";
  addFindings(outcome, findings);
  return outcome;
}

}  // namespace

SelfTestDiagnostic::SelfTestDiagnostic(SelfTestSurroundings surroundings, TestMode mode)
    : PortDiagnostic(surroundings.findPorts, testOf(mode)),
      m_surroundings(std::move(surroundings)),
      m_mode(mode) {}

Outcome SelfTestDiagnostic::runOn(const Port& port, const RunSettings&, RunControl& control) {
  const PortState before = m_surroundings.readPort(port);
  if (!before.present) return portIsGone(port.id);
  if (!before.on && m_mode == TestMode::Online) return switchedOff(port);
  if (control.stopRequested()) return stoppedBefore(port);
  control.status("The driver of " + port.id + " tests it");
  const SelfTestReport report = runSelfTests(*m_surroundings.openEthtool(), port.name, m_mode);
  if (report.problem != 0)
    return notTested("Not tested: the driver does not do it", reasonOf(port, report.problem));
  Outcome outcome = outcomeOf(port, report, m_mode);
  const bool awaited = m_mode == TestMode::Offline && before.on && before.carrier.value_or(false);
  const Waiting& waiting = m_surroundings.waiting;
  const double begin = waiting.clock();
  constexpr double kLookEvery = 0.5;
  for (PortState now; awaited; waiting.sleep(kLookEvery)) {
    now = m_surroundings.readPort(port);
    if (!now.present) {
      addFindings(outcome, {goneSince(port)});
      break;
    }
    if (now.carrier.value_or(false)) break;
    if (control.stopRequested()) {
      markStopped(outcome);
      break;
    }
    if (waiting.clock() - begin >= kSettleSeconds) {
      addFindings(outcome, {linkStayedAway(port)});
      break;
    }
  }
  control.progress(1);
  return outcome;
}

}  // namespace providers::port
