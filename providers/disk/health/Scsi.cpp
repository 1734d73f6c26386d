#include "providers/disk/health/Scsi.h"

#include <array>
#include <cstdio>

#include "providers/disk/health/Page.h"
#include "providers/disk/health/Sense.h"

namespace providers::disk {

namespace {

constexpr std::uint8_t kRequestSense = 0x03, kSendDiagnostic = 0x1D, kReadDefectData = 0x37,
                       kLogSense = 0x4D;
constexpr std::uint8_t kExceptionsPage = 0x2F, kSelfTestPage = 0x10;
constexpr std::uint8_t kWarningCode = 0x0B, kFailureCode = 0x5D;

ScsiAnswer logSense(DriveCommands& commands, std::uint8_t page, std::uint16_t bytes) {
  constexpr std::uint8_t kCumulative = 0x40;
  return commands.scsi(
      {{kLogSense, 0, static_cast<std::uint8_t>(kCumulative | page), 0, 0, 0, 0,
        static_cast<std::uint8_t>(bytes >> 8), static_cast<std::uint8_t>(bytes), 0},
       bytes});
}

Sense requestSense(DriveCommands& commands) {
  constexpr std::uint8_t kBytes = 252;
  const ScsiAnswer answer = commands.scsi({{kRequestSense, 0, 0, 0, kBytes, 0}, kBytes});
  return answer.good() ? readSense(answer.data) : Sense{};
}

void judge(std::uint8_t code, std::uint8_t qualifier, Health& health) {
  constexpr std::uint8_t kTrial = 0xFF;
  std::array<char, 48> number{};
  std::snprintf(number.data(), number.size(), " (code %02x/%02x)", static_cast<unsigned>(code),
                static_cast<unsigned>(qualifier));
  if (code == kFailureCode)
    health.findings.push_back(
        {true, std::string("The drive predicts that it is going to fail") + number.data() +
                   (qualifier == kTrial ? ", or was told to say so for a trial" : "")});
  if (code == kWarningCode && qualifier == 1)
    health.findings.push_back(
        {false, std::string("The temperature is beyond a threshold") + number.data()});
  else if (code == kWarningCode)
    health.findings.push_back(
        {false, std::string("The drive gives a warning of itself") + number.data()});
}

SelfTestState endOf(const Page& log, std::size_t newest) {
  using Phase = SelfTestState::Phase;
  const unsigned result = log.at(newest + 4) & 0xF;
  SelfTestState state;
  if (result == 0) {
    state.phase = Phase::Passed;
    state.text = "It found no error";
  } else if (result == 1 || result == 2) {
    state.phase = Phase::Aborted;
    state.text = "It was ended before its end";
  } else if (result >= 3 && result <= 7) {
    state.phase = Phase::Failed;
    state.text = result == 3 ? "An unknown error kept it from its end"
                             : "Part " + std::to_string(log.at(newest + 5)) + " of it failed";
    const std::uint64_t block = log.big(newest + 8, 8);
    if (block != UINT64_MAX) state.failingBlock = block;
  }
  return state;
}

class ScsiSelfTest : public SelfTest {
 public:
  explicit ScsiSelfTest(DriveCommands& commands) : m_commands(commands) {}

  std::string start(SelfTestKind kind) override {
    if (state().phase == SelfTestState::Phase::Running)
      return "A self-test is under way in the drive already";
    return whyNot(diagnose(kind == SelfTestKind::Short ? 1 : 2), "the self-test");
  }

  SelfTestState state() override {
    constexpr std::uint16_t kBytes = 0x194;
    constexpr std::size_t kNewest = 4;
    constexpr unsigned kUnderWay = 0xF;
    const ScsiAnswer answer = logSense(m_commands, kSelfTestPage, kBytes);
    SelfTestState state;
    state.text = whyNot(answer, "its self-test log");
    if (!state.text.empty()) return state;
    const Page log(answer.data);
    if (log.size() < kNewest + 20 || (log.at(0) & 0x3F) != kSelfTestPage) {
      state.text = "The drive gave less than all of its self-test log";
      return state;
    }
    if ((log.at(kNewest + 4) & 0xF) != kUnderWay) return endOf(log, kNewest);
    state.phase = SelfTestState::Phase::Running;
    state.share = requestSense(m_commands).share.value_or(0);
    return state;
  }

  void abort() override { diagnose(4); }
  double seconds(SelfTestKind kind) override { return kind == SelfTestKind::Short ? 120 : 0; }

 private:
  ScsiAnswer diagnose(unsigned code) {
    return m_commands.scsi(
        {{kSendDiagnostic, static_cast<std::uint8_t>(code << 5), 0, 0, 0, 0}, 0});
  }

  DriveCommands& m_commands;
};

}  // namespace

Health scsiHealth(DriveCommands& commands) {
  constexpr std::size_t kLeast = 10;
  Health health;
  const ScsiAnswer answer = logSense(commands, kExceptionsPage, 252);
  health.unknown = whyNot(answer, "its informational exceptions");
  const Page log(answer.data);
  if (health.unknown.empty() && (log.size() < kLeast || (log.at(0) & 0x3F) != kExceptionsPage))
    health.unknown = "The drive gave less than all of its informational exceptions";
  if (health.unknown.empty()) {
    judge(log.at(8), log.at(9), health);
    if (log.at(7) >= 3 && log.at(10) > 0 && log.at(10) < 0xFF)
      health.measured.push_back(
          {"Temperature", static_cast<double>(log.at(10)), "degree C", true, Fold::Most});
  }
  // Some report it there alone.
  const Sense sense = requestSense(commands);
  if (health.findings.empty()) judge(sense.code, sense.qualifier, health);
  if (!health.findings.empty()) health.unknown.clear();
  return health;
}

Health scsiDefects(DriveCommands& commands) {
  constexpr std::uint8_t kGrownList = 0x08, kLongBlocks = 0x03, kHeader = 4;
  Health health;
  const ScsiAnswer answer = commands.scsi(
      {{kReadDefectData, 0, kGrownList | kLongBlocks, 0, 0, 0, 0, 0, kHeader, 0}, kHeader});
  const Page list(answer.data);
  // A drive that has the list in another format than was asked for says so beside the list.
  const bool came =
      answer.problem.empty() && list.size() >= kHeader && (list.at(1) & kGrownList) != 0;
  if (!came) {
    health.unknown = whyNot(answer, "its list of grown defects");
    if (health.unknown.empty())
      health.unknown = "The drive gave less than its list of grown defects";
    return health;
  }
  const unsigned format = list.at(1) & 7;
  const std::uint64_t each = format == 0 ? 4 : 8;
  const std::uint64_t count = list.big(2, 2) / each;
  if (count > 0)
    health.findings.push_back(
        {false, "The drive has replaced " + std::to_string(count) + " bad blocks"});
  health.measured = {{"GrownDefects", static_cast<double>(count), {}, true, Fold::Most, {}, 0}};
  return health;
}

std::unique_ptr<SelfTest> makeScsiSelfTest(DriveCommands& commands) {
  return std::make_unique<ScsiSelfTest>(commands);
}

}  // namespace providers::disk
