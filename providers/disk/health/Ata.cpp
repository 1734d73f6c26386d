#include "providers/disk/health/Ata.h"

#include <algorithm>
#include <array>
#include <numeric>

#include "providers/disk/health/Page.h"
#include "providers/disk/health/Sense.h"

namespace providers::disk {

namespace {

constexpr std::uint8_t kSmart = 0xB0;
constexpr std::uint8_t kReadData = 0xD0, kReadThresholds = 0xD1, kExecute = 0xD4, kReadLog = 0xD5,
                       kReturnStatus = 0xDA;
constexpr std::uint8_t kSelfTestLog = 6;
constexpr std::uint32_t kPageBytes = 512;

/// A SMART command, wrapped in a SCSI command as every bridge understands it. `low` is the lowest
/// byte of its address; the two above it are what makes it a SMART command.
ScsiAnswer smart(DriveCommands& commands, std::uint8_t feature, std::uint8_t low, bool data) {
  constexpr std::uint8_t kPassThrough = 0x85, kNoData = 3 << 1, kDataIn = 4 << 1;
  constexpr std::uint8_t kTellRegisters = 0x20, kFromDriveInBlocks = 0x0E;
  return commands.scsi(
      {{kPassThrough, data ? kDataIn : kNoData, data ? kFromDriveInBlocks : kTellRegisters, 0,
        feature, 0, static_cast<std::uint8_t>(data ? 1 : 0), 0, low, 0, 0x4F, 0, 0xC2, 0, kSmart,
        0},
       data ? kPageBytes : 0});
}

/// A page of SMART data, or why there is none.
struct SmartPage {
  std::string unknown;
  Bytes bytes;
};

SmartPage smartPage(DriveCommands& commands, std::uint8_t feature, std::uint8_t low,
                    const std::string& what) {
  ScsiAnswer answer = smart(commands, feature, low, true);
  if (!answer.good()) return {whyNot(answer, what), {}};
  if (answer.data.size() < kPageBytes) return {"The drive gave less than all of " + what, {}};
  const unsigned sum = std::accumulate(answer.data.begin(), answer.data.begin() + kPageBytes, 0U);
  if (sum % 256 != 0) return {"The checksum of " + what + " is wrong", {}};
  // Its sum is right, too.
  if (std::all_of(answer.data.begin(), answer.data.end(), [](std::uint8_t b) { return b == 0; }))
    return {"The drive gave nothing but zeros for " + what, {}};
  return {{}, std::move(answer.data)};
}

/// The registers that a drive is left with, told among the sense data.
struct Registers {
  std::uint8_t middle = 0;
  std::uint8_t high = 0;
};

std::optional<Registers> registersOf(const Bytes& sense) {
  constexpr std::uint8_t kAtaReturn = 9;
  constexpr std::size_t kHeader = 8;
  const Page page(sense);
  const unsigned format = page.at(0) & 0x7F;
  if (format == 0x70) return Registers{page.at(10), page.at(11)};
  for (std::size_t place = kHeader; format == 0x72 && place + 13 < page.size();
       place += 2U + page.at(place + 1))
    if (page.at(place) == kAtaReturn) return Registers{page.at(place + 9), page.at(place + 11)};
  return std::nullopt;
}

struct Attribute {
  std::uint8_t id = 0;
  bool foretells = false;  ///< a failure, where it falls to its threshold; else age or use
  std::uint8_t value = 0;
  std::uint64_t raw = 0;
  std::uint8_t threshold = 0;
};

std::vector<Attribute> attributes(const Bytes& data, const Bytes& thresholds) {
  constexpr std::size_t kFirst = 2, kEach = 12, kCount = 30;
  const Page page(data);
  const Page limits(thresholds);
  std::vector<Attribute> list;
  for (std::size_t i = 0; i < kCount; ++i) {
    const std::size_t place = kFirst + i * kEach;
    if (page.at(place) == 0) continue;
    const bool foretells = (page.at(place + 1) & 1) != 0;
    Attribute attribute{page.at(place), foretells, page.at(place + 3), page.little(place + 5, 6),
                        0};
    for (std::size_t k = 0; k < kCount; ++k)
      if (limits.at(kFirst + k * kEach) == attribute.id)
        attribute.threshold = limits.at(kFirst + k * kEach + 1);
    list.push_back(attribute);
  }
  return list;
}

struct KnownAttribute {
  std::uint8_t id;
  const char* name;  ///< of the measurement
  const char* unit;
  std::uint64_t mask;  ///< of the raw value: some drives keep more than one number in it
  const char* defect;  ///< what more than none means; null where that is all right
};

constexpr std::uint64_t kLower = 0xFFFFFFFF;
constexpr std::array<KnownAttribute, 8> kKnown{{
    {5, "ReallocatedBlocks", "", kLower, "blocks were replaced"},
    {9, "PowerOnHours", "h", kLower, nullptr},
    {184, "EndToEndErrors", "", kLower, "times data were damaged inside of the drive"},
    {187, "UncorrectableErrors", "", kLower, "errors could not be corrected"},
    {194, "Temperature", "degree C", 0xFF, nullptr},
    {197, "PendingBlocks", "", kLower, "blocks cannot be read and wait to be replaced"},
    {198, "OfflineUncorrectableBlocks", "", kLower,
     "blocks could not be read by the drive's own check"},
    {199, "InterfaceErrors", "", kLower, nullptr},
}};

/// `defects`: those attributes that count what is broken, with a finding for each; else the others.
void readAttributes(DriveCommands& commands, bool defects, Health& health) {
  const SmartPage data = smartPage(commands, kReadData, 0, "its SMART data");
  health.unknown = data.unknown;
  if (!data.unknown.empty()) return;
  const SmartPage thresholds = smartPage(commands, kReadThresholds, 0, "its SMART thresholds");
  for (const Attribute& attribute : attributes(data.bytes, thresholds.bytes)) {
    const std::string id = std::to_string(attribute.id);
    const bool exceeded =
        attribute.threshold > 0 && attribute.value > 0 && attribute.value <= attribute.threshold;
    for (const KnownAttribute& known : kKnown) {
      if (known.id != attribute.id || (known.defect != nullptr) != defects) continue;
      const std::uint64_t raw = attribute.raw & known.mask;
      health.measured.push_back(
          {known.name, static_cast<double>(raw), known.unit, true, Fold::Most});
      if (defects) health.measured.back().maximum = 0;
      if (defects && raw > 0)
        health.findings.push_back(
            {false, std::to_string(raw) + " " + known.defect + " (attribute " + id + ")"});
    }
    if (exceeded && !defects)
      health.findings.push_back({attribute.foretells, "Attribute " + id + " has fallen to " +
                                                          std::to_string(attribute.value) +
                                                          ", its threshold is " +
                                                          std::to_string(attribute.threshold)});
  }
}

SelfTestState endOf(unsigned result) {
  constexpr std::array<const char*, 9> kEnds{"It found no error",
                                             "It was ended by a command",
                                             "It was ended by a reset",
                                             "A fatal error kept it from its end",
                                             "A part of it failed, the drive does not know which",
                                             "The electrical part of it failed",
                                             "The servo part of it failed",
                                             "The reading part of it failed",
                                             "The drive seems to have been damaged by a blow"};
  using Phase = SelfTestState::Phase;
  SelfTestState state;
  if (result >= kEnds.size()) return state;
  state.phase = result == 0 ? Phase::Passed : result <= 2 ? Phase::Aborted : Phase::Failed;
  state.text = kEnds[result];
  return state;
}

class AtaSelfTest : public SelfTest {
 public:
  explicit AtaSelfTest(DriveCommands& commands) : m_commands(commands) {}

  std::string start(SelfTestKind kind) override {
    constexpr std::uint8_t kHasSelfTest = 0x10;
    const SmartPage data = smartPage(m_commands, kReadData, 0, "its SMART data");
    if (!data.unknown.empty()) return data.unknown;
    const Page page(data.bytes);
    if (!(page.at(367) & kHasSelfTest)) return "The drive has no self-test";
    if (page.at(363) >> 4 == kUnderWay) return "A self-test is under way in the drive already";
    SmartPage log = resultLog();
    m_hadLog = log.unknown.empty();
    m_results.rememberBefore(std::move(log.bytes));
    return execute(kind == SelfTestKind::Short ? 1 : 2);
  }

  SelfTestState state() override {
    const SmartPage data = smartPage(m_commands, kReadData, 0, "its SMART data");
    SelfTestState state;
    state.text = data.unknown;
    if (!data.unknown.empty()) return state;
    const unsigned status = Page(data.bytes).at(363);
    if (status >> 4 != kUnderWay) {
      const SmartPage log = resultLog();
      if (isOfThisTest(log)) return withBlock(endOf(status >> 4), log);
      state.text = kNoResultYet;
      return state;
    }
    m_results.sawItRun();
    state.phase = SelfTestState::Phase::Running;
    state.share = 1 - (status & 0xF) / 10.0;
    return state;
  }

  std::string abort() override { return execute(0x7F); }

  double seconds(SelfTestKind kind) override {
    const SmartPage data = smartPage(m_commands, kReadData, 0, "its SMART data");
    const Page page(data.bytes);
    if (kind == SelfTestKind::Short) return 60.0 * page.at(372);
    return 60.0 * (page.at(373) == 0xFF ? static_cast<double>(page.little(375, 2)) : page.at(373));
  }

 private:
  static constexpr unsigned kUnderWay = 0xF;

  std::string execute(std::uint8_t what) {
    const ScsiAnswer answer = smart(m_commands, kExecute, what, false);
    // The registers were asked for, so that success comes with sense data, too.
    constexpr std::uint8_t kRecovered = 1;
    const bool good =
        answer.good() || (answer.problem.empty() && readSense(answer.sense).key <= kRecovered);
    return good ? "" : whyNot(answer, "the self-test");
  }

  SmartPage resultLog() {
    return smartPage(m_commands, kReadLog, kSelfTestLog, "its self-test log");
  }

  /// The state that a drive tells stays until the next test begins: one that takes the command and
  /// does nothing would pass. A drive without a log is believed.
  bool isOfThisTest(const SmartPage& log) const {
    if (log.unknown.empty()) return m_results.hasNewResult(log.bytes);
    return !m_hadLog || m_results.hasRun();
  }

  /// Adds where it failed, which the drive keeps in a log.
  static SelfTestState withBlock(SelfTestState state, const SmartPage& log) {
    constexpr std::size_t kFirst = 2, kEach = 24, kNewest = 508, kMost = 21;
    constexpr std::uint64_t kNone = 0xFFFFFFFF;
    if (state.phase != SelfTestState::Phase::Failed) return state;
    const Page page(log.bytes);
    const std::size_t newest = page.at(kNewest);
    if (!log.unknown.empty() || newest == 0 || newest > kMost) return state;
    const std::uint64_t block = page.little(kFirst + (newest - 1) * kEach + 5, 4);
    if (block != kNone && block != 0) state.failingBlock = block;
    return state;
  }

  DriveCommands& m_commands;
  ResultLog m_results;
  bool m_hadLog = false;
};

}  // namespace

Health ataHealth(DriveCommands& commands) {
  Health health;
  const ScsiAnswer answer = smart(commands, kReturnStatus, 0, false);
  const auto registers = answer.problem.empty() ? registersOf(answer.sense) : std::nullopt;
  const bool good = registers && registers->middle == 0x4F && registers->high == 0xC2;
  const bool failing = registers && registers->middle == 0xF4 && registers->high == 0x2C;
  readAttributes(commands, false, health);
  if (failing)
    health.findings.insert(health.findings.begin(),
                           {true, "The drive predicts that it is going to fail"});
  if (good || failing || !health.findings.empty()) {
    health.unknown.clear();
  } else {
    health.unknown = whyNot(answer, "its SMART status");
    if (health.unknown.empty()) health.unknown = "The drive does not tell its SMART status";
  }
  return health;
}

Health ataDefects(DriveCommands& commands) {
  Health health;
  readAttributes(commands, true, health);
  if (health.unknown.empty() && health.measured.empty())
    health.unknown = "The drive counts neither replaced nor unreadable blocks";
  return health;
}

std::unique_ptr<SelfTest> makeAtaSelfTest(DriveCommands& commands) {
  return std::make_unique<AtaSelfTest>(commands);
}

}  // namespace providers::disk
