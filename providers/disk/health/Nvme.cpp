#include "providers/disk/health/Nvme.h"

#include <array>
#include <cstdio>
#include <utility>

#include "providers/disk/health/Page.h"

namespace providers::disk {

namespace {

constexpr std::uint8_t kGetLogPage = 0x02, kIdentify = 0x06, kDeviceSelfTest = 0x14;
constexpr std::uint32_t kAllSpaces = 0xFFFFFFFF;
constexpr std::uint32_t kHealthLog = 0x02, kSelfTestLog = 0x06;
constexpr std::size_t kNewestTest = 4;  // in the self-test log
constexpr std::uint32_t kHealthBytes = 512, kSelfTestBytes = 564, kControllerBytes = 4096;

NvmeAnswer logPage(DriveCommands& commands, std::uint32_t log, std::uint32_t bytes) {
  const std::uint32_t words = bytes / 4 - 1;
  return commands.nvme({kGetLogPage, kAllSpaces, words << 16 | log, bytes});
}

std::string whyNot(const NvmeAnswer& answer, const std::string& what, std::uint32_t bytes) {
  if (!answer.problem.empty()) return answer.problem;
  if (answer.status != 0) {
    std::array<char, 8> status{};
    std::snprintf(status.data(), status.size(), "0x%03x",
                  static_cast<unsigned>(answer.status & 0xFFF));
    return "The drive refuses " + what + ", with status " + status.data();
  }
  return answer.data.size() < bytes ? "The drive gave less than all of " + what : "";
}

struct Warning {
  unsigned bit;
  bool failing;
  const char* text;
};

constexpr std::array<Warning, 6> kWarnings{{
    {0, true, "The spare blocks are used up below their threshold"},
    {1, false, "The temperature is beyond a threshold"},
    {2, true, "The drive is degraded: too many errors of the medium or inside of the drive"},
    {3, true, "The medium can only be read any more"},
    {4, true, "The backup of the drive's volatile memory has failed"},
    {5, true, "The persistent memory region cannot be relied upon"},
}};

void judge(const Page& log, Health& health) {
  const std::uint8_t warnings = log.at(0);
  for (const Warning& warning : kWarnings)
    if (warnings >> warning.bit & 1) health.findings.push_back({warning.failing, warning.text});
  const unsigned used = log.at(5);
  if (used >= 100)
    health.findings.push_back({false, "The drive has reached " + std::to_string(used) +
                                          " % of the use that it was made for"});
}

void measure(const Page& log, Health& health) {
  constexpr double kKelvin = 273;
  const auto add = [&health](const char* name, double value, const char* unit, Fold fold) {
    health.measured.push_back({name, value, unit, true, fold});
  };
  const auto number = [&log](std::size_t place) {
    return static_cast<double>(log.little(place, 16));
  };
  const std::uint64_t kelvin = log.little(1, 2);
  if (kelvin > 0)
    health.measured.push_back(
        {"Temperature", static_cast<double>(kelvin) - kKelvin, "degree C", false, Fold::Most});
  health.measured.push_back({"AvailableSpare", static_cast<double>(log.at(3)), "%", true,
                             Fold::Least, static_cast<double>(log.at(4))});
  add("PercentageUsed", log.at(5), "%", Fold::Most);
  add("PowerOnHours", number(128), "h", Fold::Most);
  add("UnsafeShutdowns", number(144), "", Fold::Most);
  add("MediaErrors", number(160), "", Fold::Most);
}

Health healthLog(DriveCommands& commands, void (*read)(const Page&, Health&)) {
  Health health;
  const NvmeAnswer answer = logPage(commands, kHealthLog, kHealthBytes);
  health.unknown = whyNot(answer, "its health log", kHealthBytes);
  if (health.unknown.empty()) read(Page(answer.data), health);
  return health;
}

/// The result of the newest self-test.
SelfTestState endOf(const Page& log) {
  constexpr std::size_t kNewest = kNewestTest;
  constexpr std::array<const char*, 10> kEnds{"It found no error",
                                              "It was ended by a command",
                                              "It was ended by a reset of the controller",
                                              "It was ended as a namespace was removed",
                                              "It was ended by a format command",
                                              "A fatal error kept it from its end",
                                              "A part of it failed, the drive does not know which",
                                              "A part of it failed",
                                              "It was ended for an unknown reason",
                                              "It was ended by a sanitize command"};
  const unsigned result = log.at(kNewest) & 0xF;
  SelfTestState state;
  if (result >= kEnds.size()) return state;
  using Phase = SelfTestState::Phase;
  state.phase = result == 0                  ? Phase::Passed
                : result >= 5 && result <= 7 ? Phase::Failed
                                             : Phase::Aborted;
  state.text = kEnds[result];
  if (result == 7) state.text += ": number " + std::to_string(log.at(kNewest + 1));
  if (log.at(kNewest + 2) & 2) state.failingBlock = log.little(kNewest + 16, 8);
  return state;
}

class NvmeSelfTest : public SelfTest {
 public:
  explicit NvmeSelfTest(DriveCommands& commands) : m_commands(commands) {}

  std::string start(SelfTestKind kind) override {
    constexpr std::uint16_t kInProgress = 0x11D;
    const NvmeAnswer controller = identify();
    const std::string unknown = whyNot(controller, "to identify itself", kControllerBytes);
    if (!unknown.empty()) return unknown;
    if (!(Page(controller.data).little(256, 2) & 0x10)) return "The drive has no self-test";
    // What cannot be followed is not begun.
    NvmeAnswer log = logPage(m_commands, kSelfTestLog, kSelfTestBytes);
    std::string unreadable = whyNot(log, "its self-test log", kSelfTestBytes);
    if (!unreadable.empty()) return unreadable;
    m_results.rememberBefore(std::move(log.data));
    m_code = kind == SelfTestKind::Short ? 1 : 2;
    const NvmeAnswer answer = m_commands.nvme({kDeviceSelfTest, kAllSpaces, m_code, 0});
    if ((answer.status & 0x7FF) == kInProgress)
      return "A self-test is under way in the drive already";
    return whyNot(answer, "the self-test", 0);
  }

  SelfTestState state() override {
    const NvmeAnswer answer = logPage(m_commands, kSelfTestLog, kSelfTestBytes);
    SelfTestState state;
    state.text = whyNot(answer, "its self-test log", kSelfTestBytes);
    if (!state.text.empty()) return state;
    const Page log(answer.data);
    if ((log.at(0) & 0xF) == 0) {
      if (m_results.hasNewResult(answer.data) && log.at(kNewestTest) >> 4 == m_code)
        return endOf(log);
      state.text = kNoResultYet;
      return state;
    }
    m_results.sawItRun();
    state.phase = SelfTestState::Phase::Running;
    state.share = (log.at(1) & 0x7F) / 100.0;
    return state;
  }

  std::string abort() override {
    return whyNot(m_commands.nvme({kDeviceSelfTest, kAllSpaces, 0xF, 0}), "the command", 0);
  }

  double seconds(SelfTestKind kind) override {
    constexpr double kShort = 120;
    if (kind == SelfTestKind::Short) return kShort;
    const NvmeAnswer controller = identify();
    return controller.good() ? 60.0 * static_cast<double>(Page(controller.data).little(316, 2)) : 0;
  }

 private:
  NvmeAnswer identify() { return m_commands.nvme({kIdentify, 0, 1, kControllerBytes}); }

  DriveCommands& m_commands;
  ResultLog m_results;
  std::uint32_t m_code = 0;
};

}  // namespace

Health nvmeHealth(DriveCommands& commands) {
  return healthLog(commands, [](const Page& log, Health& health) {
    judge(log, health);
    measure(log, health);
  });
}

Health nvmeDefects(DriveCommands& commands) {
  return healthLog(commands, [](const Page& log, Health& health) {
    const std::uint64_t errors = log.little(160, 16);
    if (errors > 0)
      health.findings.push_back({false, "The medium failed " + std::to_string(errors) +
                                            " times so that data could not be corrected"});
    if (log.at(3) < log.at(4))
      health.findings.push_back({true, "Of the spare blocks " + std::to_string(log.at(3)) +
                                           " % are left, below the threshold of " +
                                           std::to_string(log.at(4)) + " %"});
    health.measured = {{"MediaErrors", static_cast<double>(errors), {}, true, Fold::Most, {}, 0},
                       {"AvailableSpare", static_cast<double>(log.at(3)), "%", true, Fold::Least,
                        static_cast<double>(log.at(4))}};
  });
}

std::unique_ptr<SelfTest> makeNvmeSelfTest(DriveCommands& commands) {
  return std::make_unique<NvmeSelfTest>(commands);
}

}  // namespace providers::disk
