#include "providers/disk/services/SelfTestDiagnostic.h"

#include <algorithm>
#include <utility>

#include "providers/common/Findings.h"
#include "providers/disk/services/HealthDiagnostic.h"

namespace providers::disk {

namespace {

using Phase = SelfTestState::Phase;

constexpr double kStep = 0.25;      // how soon a request to stop is seen
constexpr double kPollAtFirst = 1;  // a drive that is asked all the time is slower
constexpr double kPollAtMost = 30;
constexpr int kSilentLooks = 4;         // that are borne: half a minute and more
constexpr double kPatienceFactor = 3;   // beyond what the drive says
constexpr double kShortPatience = 600;  // where it says nothing
constexpr double kExtendedPatience = 86400;

DiskTest testOf(SelfTestKind kind) {
  constexpr std::uint16_t kShortTest = 2, kExtendedTest = 3;
  const bool brief = kind == SelfTestKind::Short;
  DiskTest test;
  test.type = brief ? kShortTest : kExtendedTest;
  test.name = brief ? "Short Self-Test" : "Extended Self-Test";
  test.text = brief
                  ? "Has the drive run the short test that it has in itself."
                  : "Has the drive run the long test that it has in itself, which reads all of it.";
  // The long one slows the drive down for hours.
  constexpr std::uint16_t kRisky = 5;
  if (!brief) test.characteristics = {kRisky};
  test.testTypes = {2, 6};
  test.seconds = brief ? 120 : 7200;
  return test;
}

/// One self-test, from its start to its end.
class Watch {
 public:
  Watch(SelfTest& test, SelfTestKind kind, const SelfTestSurroundings& surroundings,
        RunControl& control)
      : m_test(test),
        m_surroundings(surroundings),
        m_control(control),
        m_begin(surroundings.clock()) {
    m_expected = test.seconds(kind);
    const double silent = kind == SelfTestKind::Short ? kShortPatience : kExtendedPatience;
    m_patience = m_expected > 0 ? std::max(kShortPatience, kPatienceFactor * m_expected) : silent;
  }

  /// The state at its end, or the last one where it is to stop or has taken too long. A drive that
  /// is at work may not tell for a while.
  SelfTestState follow() {
    SelfTestState state;
    state.phase = Phase::Running;
    int silent = 0;
    for (double poll = kPollAtFirst; pause(poll); poll = std::min(2 * poll, kPollAtMost)) {
      state = m_test.state();
      silent = state.phase == Phase::Unknown ? silent + 1 : 0;
      if (silent > kSilentLooks) break;
      if (state.phase == Phase::Unknown) continue;
      if (state.phase != Phase::Running) break;
      const double expected = m_expected > 0 ? std::min(0.99, seconds() / m_expected) : 0;
      m_control.progress(state.share > 0 ? state.share : expected);
      if (seconds() > m_patience) break;
    }
    return state;
  }

  double seconds() const { return m_surroundings.clock() - m_begin; }

 private:
  bool pause(double length) {
    for (const double end = m_surroundings.clock() + length; m_surroundings.clock() < end;) {
      if (m_control.stopRequested()) return false;
      m_surroundings.sleep(kStep);
    }
    return !m_control.stopRequested();
  }

  SelfTest& m_test;
  const SelfTestSurroundings& m_surroundings;
  RunControl& m_control;
  const double m_begin;
  double m_expected = 0;
  double m_patience = 0;
};

std::string endText(const SelfTestState& state) {
  std::string text = state.text.empty() ? "The drive does not tell how it ended" : state.text;
  if (state.failingBlock) text += ", at logical block " + std::to_string(*state.failingBlock);
  return text;
}

Outcome failed(const SelfTestState& state, const Disk& disk) {
  Outcome outcome;
  outcome.state = CompletionState::Failed;
  outcome.summary = "The drive's self-test failed";
  outcome.text = outcome.summary + ": " + describe(disk) + "\n";
  outcome.errors = {{"Self-test", 1}};
  addFinding(outcome, disk, endText(state) + "\n", "save the data and replace " + describe(disk));
  return outcome;
}

const char* const kAgain =
    "run the test again while nothing else uses the drive; if it does not end then either, look at "
    "the Status and Sequential Read tests of the drive";

/// Whether the drive may still be at it.
bool mayGoOn(const SelfTestState& state) {
  return state.phase == Phase::Running || state.phase == Phase::Unknown;
}

/// Of a test that the drive has ended by itself.
Outcome endedOutcome(const SelfTestState& state, const Disk& disk) {
  if (state.phase == Phase::Failed) return failed(state, disk);
  if (state.phase == Phase::Aborted)
    return notTested("Not finished: the self-test was ended", endText(state), kAgain);
  Outcome outcome;
  outcome.summary = "The drive's self-test found no error";
  outcome.text = outcome.summary + ": " + describe(disk) + "\n";
  return outcome;
}

/// Of a test that the drive was told to end; `refusal` is why it did not, if it didn't.
Outcome cutShortOutcome(const SelfTestState& state, const std::string& refusal, double seconds,
                        bool stopped) {
  const std::string end =
      refusal.empty()
          ? "the drive was told to end its self-test"
          : "the drive may still be testing itself, as it was not told to end that: " + refusal;
  if (!stopped)
    return state.phase == Phase::Unknown
               ? notTested("Not finished: the drive does not tell of its self-test",
                           endText(state) + "; " + end, kAgain)
               : notTested("Not finished: the self-test takes too long",
                           "After " + formatted("%.0f s ", seconds) + end, kAgain);
  Outcome outcome;
  outcome.state = CompletionState::Stopped;
  outcome.summary = "Stopped before the end";
  outcome.text = outcome.summary + "; " + end + "\n";
  return outcome;
}

}  // namespace

SelfTestDiagnostic::SelfTestDiagnostic(SelfTestSurroundings surroundings, SelfTestKind kind)
    : DiskDiagnostic(surroundings.findDisks, testOf(kind)),
      m_surroundings(std::move(surroundings)),
      m_kind(kind) {}

/// Bridges to USB hand on nothing of the kind.
bool SelfTestDiagnostic::suits(const Disk& disk) const {
  return hasHealth(disk) && disk.bus != Bus::Usb;
}

Outcome SelfTestDiagnostic::runOn(const Disk& disk, const RunSettings&, RunControl& control) {
  const OpenedDrive drive = m_surroundings.openDrive(disk);
  if (!drive.commands) return notOpened(drive.problem);
  const auto test = makeSelfTest(disk, *drive.commands);
  Watch watch(*test, m_kind, m_surroundings, control);
  const std::string refusal = test->start(m_kind);
  if (!refusal.empty())
    return notTested("Not tested: the self-test does not begin", refusal,
                     "wait for the end of a self-test that is under way; of a drive that has none, "
                     "look at the Status and Sequential Read tests");
  control.status("The self-test of " + disk.name + " is under way");
  const SelfTestState state = watch.follow();
  const bool stopped = control.stopRequested();
  const double seconds = watch.seconds();
  Outcome outcome = mayGoOn(state) ? cutShortOutcome(state, test->abort(), seconds, stopped)
                                   : endedOutcome(state, disk);
  outcome.measured = {{"Duration", seconds, "s", false}};
  return outcome;
}

}  // namespace providers::disk
