#include "providers/port/services/PingDiagnostic.h"

#include <array>
#include <utility>

#include "providers/common/Findings.h"
#include "providers/common/NumberSetting.h"
#include "providers/common/SplitMix.h"

namespace providers::port {

namespace {

constexpr NumberSetting kPackets{"Packets", 100, 60000};

/// What the packets carry, by turns: up to nearly as much as one can.
constexpr std::array<std::size_t, 5> kSizes{56, 512, 1472, 8972, 65000};

PortTest pingTest() {
  constexpr std::uint16_t kPing = 9, kStress = 3;
  PortTest test;
  test.type = kPing;
  test.name = "Ping";
  test.text = "Sends packets of several sizes through the loopback interface and compares them.";
  test.testTypes = {kStress};
  test.settingsClass = "DIAGS_PortPingTestSettings";
  test.settings = {kPackets.property(), {"QuickMode", false, false}};
  return test;
}

std::string contentOf(std::uint16_t sequence) {
  constexpr unsigned kByte = 8;
  const std::size_t size = kSizes[sequence % kSizes.size()];
  std::string content;
  for (std::uint64_t index = 0; content.size() < size; ++index) {
    std::uint64_t word = splitMix(sequence, index);
    for (unsigned i = 0; i < sizeof word && content.size() < size; ++i, word >>= kByte)
      content += static_cast<char>(word);
  }
  return content;
}

struct Tally {
  std::uint32_t sent = 0;
  std::uint32_t lost = 0;
  std::uint32_t wrong = 0;
  std::string problem;  ///< of the last packet that could not be sent
};

/// Sends one packet and waits for its answer; earlier ones that come late are passed over, but not
/// whatever somebody sends for ever.
void exchange(EchoDoor& door, std::uint16_t sequence, Tally& tally) {
  constexpr int kMilliseconds = 1000, kMostOthers = 1000;
  const EchoPacket packet{sequence, contentOf(sequence)};
  ++tally.sent;
  if (std::string problem = door.send(packet); !problem.empty()) {
    tally.problem = std::move(problem);
    ++tally.lost;
    return;
  }
  for (int others = 0; others < kMostOthers; ++others) {
    const auto answer = door.receive(kMilliseconds);
    if (!answer) break;
    if (answer->sequence != sequence) continue;
    if (answer->content != packet.content) ++tally.wrong;
    return;
  }
  ++tally.lost;
}

Finding faultOf(const Tally& tally) {
  Finding finding;
  finding.state = CompletionState::Failed;
  finding.code = tally.wrong > 0 ? "Changed packet" : "Lost packet";
  finding.text = "Of " + countText(tally.sent, "packet") + " to the machine itself " +
                 std::to_string(tally.lost) + " did not come back and " +
                 std::to_string(tally.wrong) + " came back changed";
  if (!tally.problem.empty())
    finding.text += "; the last one that could not be sent: " + tally.problem;
  finding.whatToDo =
      tally.wrong > 0
          ? "run the memory and processor tests: these packets never left the machine"
          : "look for a packet filter that keeps echoes back, then run the memory and processor "
            "tests: these packets never leave the machine";
  return finding;
}

/// A system can be told to answer no echo, and a packet filter to let none through; what loses some
/// packets and not others is no such thing.
Outcome nothingCameBack(const Tally& tally) {
  return notTested("Not tested: no echo comes back",
                   tally.problem.empty()
                       ? "of " + countText(tally.sent, "packet") + " none came back"
                       : "packets cannot be sent: " + tally.problem,
                   adviceWithoutEcho());
}

Outcome outcomeOf(const Tally& tally) {
  Outcome outcome;
  const std::uint32_t good = tally.sent - tally.lost - tally.wrong;
  outcome.summary = std::to_string(good) + " of " + countText(tally.sent, "packet") + " came back";
  outcome.text = outcome.summary + " through the loopback interface as they were sent, of " +
                 std::to_string(kSizes.front()) + " to " + std::to_string(kSizes.back()) +
                 " bytes\n";
  outcome.measured = {
      {"Packets", static_cast<double>(tally.sent)},
      {"LostPackets", static_cast<double>(tally.lost), {}, true, Fold::Sum, {}, 0},
      {"ChangedPackets", static_cast<double>(tally.wrong), {}, true, Fold::Sum, {}, 0}};
  if (tally.lost + tally.wrong > 0) addFindings(outcome, {faultOf(tally)});
  return outcome;
}

}  // namespace

PingDiagnostic::PingDiagnostic(PingSurroundings surroundings)
    : PortDiagnostic(surroundings.findPorts, pingTest()), m_surroundings(std::move(surroundings)) {}

std::string PingDiagnostic::refuse(const RunSettings& settings) const {
  const std::string reason = kPackets.refuse(settings);
  return reason.empty() ? PortDiagnostic::refuse(settings) : reason;
}

Outcome PingDiagnostic::runOn(const Port& port, const RunSettings& settings, RunControl& control) {
  const PortState state = m_surroundings.readPort(port);
  if (!state.present) return portIsGone(port.id);
  if (!state.on) return switchedOff(port);
  const OpenedEcho echo = m_surroundings.openEcho();
  if (!echo.door) return notTested("Not tested: no echo can be sent", echo.problem);
  const std::uint32_t packets = kPackets.of(settings);
  constexpr std::uint32_t kHopeless = 3;  // a second each
  Tally tally;
  for (std::uint32_t i = 0; i < packets && !control.stopRequested(); ++i) {
    exchange(*echo.door, static_cast<std::uint16_t>(i + 1), tally);
    control.progress(static_cast<double>(i + 1) / packets);
    if (tally.lost == kHopeless && tally.sent == kHopeless) break;
  }
  if (tally.sent > 0 && tally.lost == tally.sent && !control.stopRequested())
    return nothingCameBack(tally);
  Outcome outcome = outcomeOf(tally);
  if (control.stopRequested() && tally.sent < packets) markStopped(outcome);
  return outcome;
}

}  // namespace providers::port
