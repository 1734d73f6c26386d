#include "providers/disk/health/Scsi.h"

#include <array>
#include <cstdio>
#include <utility>

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

/// Whether it is that page, with so many bytes that the drive has filled: others may have been
/// zeros before.
bool hasPage(const Page& log, std::uint8_t page, std::size_t bytes) {
  constexpr std::size_t kHeader = 4;
  return (log.at(0) & 0x3F) == page && log.size() >= bytes && log.big(2, 2) + kHeader >= bytes;
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
    // What cannot be followed is not begun.
    Bytes log;
    std::string unreadable = read(log);
    if (!unreadable.empty()) return unreadable;
    if (isUnderWay(Page(log))) return "A self-test is under way in the drive already";
    m_results.rememberBefore(std::move(log));
    m_code = kind == SelfTestKind::Short ? 1 : 2;
    return whyNot(diagnose(m_code), "the self-test");
  }

  SelfTestState state() override {
    Bytes log;
    SelfTestState state;
    state.text = read(log);
    if (!state.text.empty()) return state;
    const Page page(log);
    if (!isUnderWay(page)) {
      if (m_results.hasNewResult(log) && page.at(kNewest + 4) >> 5 == m_code)
        return endOf(page, kNewest);
      state.text = kNoResultYet;
      return state;
    }
    m_results.sawItRun();
    state.phase = SelfTestState::Phase::Running;
    state.share = requestSense(m_commands).share.value_or(0);
    return state;
  }

  std::string abort() override { return whyNot(diagnose(4), "the command"); }
  double seconds(SelfTestKind kind) override { return kind == SelfTestKind::Short ? 120 : 0; }

 private:
  static constexpr std::size_t kNewest = 4;

  static bool isUnderWay(const Page& log) { return (log.at(kNewest + 4) & 0xF) == 0xF; }

  /// Why the results cannot be read; empty where they can.
  std::string read(Bytes& log) {
    constexpr std::uint16_t kBytes = 0x194;
    constexpr std::size_t kEach = 20;
    ScsiAnswer answer = logSense(m_commands, kSelfTestPage, kBytes);
    std::string unreadable = whyNot(answer, "its self-test log");
    if (!unreadable.empty()) return unreadable;
    log = std::move(answer.data);
    return hasPage(Page(log), kSelfTestPage, kNewest + kEach)
               ? ""
               : "The drive gave less than all of its self-test log";
  }

  ScsiAnswer diagnose(unsigned code) {
    return m_commands.scsi(
        {{kSendDiagnostic, static_cast<std::uint8_t>(code << 5), 0, 0, 0, 0}, 0});
  }

  DriveCommands& m_commands;
  ResultLog m_results;
  unsigned m_code = 0;
};

}  // namespace

Health scsiHealth(DriveCommands& commands) {
  constexpr std::size_t kLeast = 10;
  Health health;
  const ScsiAnswer answer = logSense(commands, kExceptionsPage, 252);
  health.unknown = whyNot(answer, "its informational exceptions");
  const Page log(answer.data);
  if (health.unknown.empty() && !hasPage(log, kExceptionsPage, kLeast))
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
