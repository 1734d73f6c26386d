#include "providers/memory/services/PatternDiagnostic.h"

#include <algorithm>
#include <new>
#include <utility>

#include "providers/common/Findings.h"
#include "providers/common/TestFacts.h"
#include "providers/memory/size/Headroom.h"

namespace providers::memory {

namespace {

constexpr std::uint64_t kMebi = std::uint64_t{1} << 20;
constexpr std::uint8_t kDefaultPercent = 5;  // all the tests together are to take no minute
constexpr unsigned kQuickDivisor = 5;
constexpr std::uint32_t kDefaultRest = 2;
constexpr std::size_t kPlacedPages = 4;

/// Those of its parameters that it has a use for are its settings' to change.
const char* settingsClassOf(TestType type) {
  if (type == TestType::BitFade) return "";  // the family's own
  return type == TestType::MovingInversionsRandom ? "DIAGS_MemoryRandomTestSettings"
                                                  : "DIAGS_MemoryPatternTestSettings";
}

DiagnosticDescription describe(const TestKind& kind) {
  const std::string name = std::string("Memory ") + kind.name;
  constexpr std::uint16_t kFunctional = 2;
  TestFacts facts;
  facts.family = "DIAGS_Memory";
  facts.name = "DIAGS: " + name;
  facts.elementName = name + " Test";
  facts.text = kind.text;
  facts.type = {{"MemoryTestType", kind.number, false}};
  facts.testTypes = {kFunctional};
  facts.settings = {{"HaltOnError", false, false},
                    {"QuickMode", false, false},
                    {"PercentOfTestCoverage", kDefaultPercent, false},
                    {"NumberOfBytes", {}, false},
                    {"Seed", {}, false}};
  if (kind.type == TestType::BitFade) facts.settings.set("WaitSeconds", kDefaultRest);
  facts.settingsClass = settingsClassOf(kind.type);
  facts.capabilities = {{"Seed", kind.type == TestType::MovingInversionsRandom, false}};
  DiagnosticDescription description = describeTest(facts);
  description.exclusive = Exclusive::Family;  // two would take each other's memory
  return description;
}

std::uint64_t numberOf(const RunSettings& settings, const char* name) {
  return asNumber(settings.properties.get(name)).value_or(0);
}

double restSeconds(const RunSettings& settings) {
  return static_cast<double>(
      asNumber(settings.properties.get("WaitSeconds")).value_or(kDefaultRest));
}

unsigned percentOf(const RunSettings& settings) {
  const bool isSaid = !isNull(settings.properties.get("PercentOfTestCoverage"));
  return isSaid ? settings.coveragePercent : kDefaultPercent;
}

/// Whether it has to be alone: a second test would count what the first one leaves to others as
/// free, and take it. Of small parts several leave enough.
bool isLarge(std::uint64_t bytes, const MemorySize& size) {
  constexpr std::uint64_t kPart = 4;
  return bytes > testableBytes(size) / kPart;
}

Outcome busyOutcome() {
  return notTested("Not tested: another memory test is under way",
                   "another process tests a large part of the memory, and both together would take "
                   "what others need",
                   "wait until it has ended, and test again");
}

unsigned threadCount(std::size_t processors, std::uint64_t bytes) {
  // Where each has less than that, more of them only get in each other's way.
  return static_cast<unsigned>(std::clamp<std::uint64_t>(bytes / kMebi, 1, processors));
}

}  // namespace

std::vector<Device> memoryDevices(const MemorySize& size) {
  Device memory;
  memory.id = "mem0";
  memory.name = "System Memory";
  memory.properties = {{"BlockSize", std::uint64_t{1}, false},
                       {"NumberOfBlocks", size.installed, false},
                       {"ConsumableBlocks", size.usable, false},
                       {"Access", std::uint16_t{3}, false},
                       {"Volatile", true, false},
                       {"Primordial", true, false}};
  return {memory};
}

PatternDiagnostic::PatternDiagnostic(const TestKind& kind, const Surroundings& surroundings)
    : m_kind(kind), m_surroundings(surroundings), m_description(describe(kind)) {}

const Kernels& PatternDiagnostic::kernels() const {
  return m_surroundings.kernels ? *m_surroundings.kernels : bestKernels();
}

std::string PatternDiagnostic::refuse(const RunSettings& settings) const {
  for (const char* name : {"NumberOfBytes", "Seed", "WaitSeconds"}) {
    const Value& value = settings.properties.get(name);
    if (!isNull(value) && !asNumber(value)) return std::string(name) + " is no number";
  }
  return {};
}

std::uint64_t PatternDiagnostic::asked(const MemorySize& size, const RunSettings& settings) const {
  const std::uint64_t all =
      askedBytes(size, numberOf(settings, "NumberOfBytes"), percentOf(settings));
  return settings.quick ? std::max(all / kQuickDivisor / kMebi, std::uint64_t{1}) * kMebi : all;
}

double PatternDiagnostic::passSeconds(const RunSettings& settings) const {
  constexpr double kBytesASecond = 2e9;  // of a processor that writes and checks
  constexpr double kMostAtOnce = 8;      // more do not get more from memory
  constexpr double kTouches = 4;         // to have a page takes as long as so many sweeps
  constexpr double kAround = 1;
  const Extent extent = m_surroundings.extent();
  const std::uint64_t bytes = std::min(asked(extent.size, settings), testableBytes(extent.size));
  const auto count = static_cast<std::size_t>(bytes / sizeof(std::uint64_t));
  const std::vector<Sweep> sweeps = makeSequence(m_kind.type, {nullptr, count, 0, 0});
  const double speed =
      kBytesASecond * std::min(kMostAtOnce, static_cast<double>(extent.processors));
  const double passes = static_cast<double>(sweeps.size()) + kTouches;
  const double rests = m_kind.type == TestType::BitFade ? 2 * restSeconds(settings) : 0;
  return kAround + rests + static_cast<double>(bytes) * passes / speed;
}

/// As much as can be had of what is wanted.
std::unique_ptr<MemoryBuffer> PatternDiagnostic::allocate(std::uint64_t bytes) const {
  for (; bytes >= kMebi; bytes = bytes / 2 / kMebi * kMebi) {
    try {
      return m_surroundings.allocate(static_cast<std::size_t>(bytes));
    } catch (const std::bad_alloc&) {
      continue;
    }
  }
  return nullptr;
}

/// Others may have taken memory since it was counted.
bool PatternDiagnostic::mayGoOn(std::uint64_t floor) const {
  return m_surroundings.size().available >= floor;
}

Outcome PatternDiagnostic::run(const Device&, const RunSettings& settings, RunControl& control) {
  RunFrame frame;
  frame.size = m_surroundings.size();
  frame.askedBytes = asked(frame.size, settings);
  const Value& seed = settings.properties.get("Seed");
  frame.seed = isNull(seed) ? m_surroundings.seed() : asNumber(seed).value_or(0);
  frame.kernels = kernels().name;
  const std::uint64_t wanted = std::min(frame.askedBytes, testableBytes(frame.size));
  std::unique_ptr<MemoryTurn> turn;
  if (isLarge(wanted, frame.size)) {
    turn = m_surroundings.takeTurn(frame.size);
    if (!turn) return busyOutcome();
  }
  const auto buffer = allocate(wanted);
  return buffer ? test(*buffer, frame, settings, control) : noMemoryOutcome(frame);
}

Outcome PatternDiagnostic::test(MemoryBuffer& buffer, RunFrame& frame, const RunSettings& settings,
                                RunControl& control) {
  const std::vector<Processor> all = m_surroundings.processors();
  const std::vector<Processor> places =
      spreadOver(all, threadCount(all.size(), buffer.wordCount() * sizeof(std::uint64_t)));
  ThreadTeam team(
      static_cast<unsigned>(places.size()),
      [&places](unsigned thread) { takePlace(places[thread]); }, m_surroundings.start);
  const std::uint64_t floor = headroom(frame.size.available) / 2;
  control.status("Taking memory");
  std::vector<LineRange> regions = touchAll(
      buffer.words(), buffer.wordCount(), team, floor / 2,
      [&] { return !control.stopRequested() && mayGoOn(floor); },
      [&buffer](LineRange lines) { buffer.keepInPlace(lines); });
  if (control.stopRequested()) return stoppedOutcome(frame);
  for (const LineRange region : regions) frame.givenBytes += region.count * kLineBytes;
  if (frame.givenBytes == 0) return noMemoryOutcome(frame);
  frame.whyNotLocked = buffer.whyNotLocked();
  frame.threads = team.size();
  frame.refusedThreads = static_cast<unsigned>(places.size()) - team.size();
  frame.cacheBytes = m_surroundings.cacheBytes(places);

  RunFindings findings;
  const std::vector<ErrorCounter> before = m_surroundings.counters();
  findings.report = sweep(buffer, team, std::move(regions), frame, settings, control);
  for (const FaultyPage& page : findings.report.pages) buffer.withhold(page.offset);
  findings.pages = place(buffer, team, findings.report, frame, settings, control);
  findings.counted = risen(before, m_surroundings.counters());
  return memoryOutcome(findings, frame);
}

MemoryReport PatternDiagnostic::sweep(MemoryBuffer& buffer, ThreadTeam& team,
                                      std::vector<LineRange> regions, const RunFrame& frame,
                                      const RunSettings& settings, RunControl& control) {
  EngineSetup setup;
  setup.regions = std::move(regions);
  setup.kernels = &kernels();
  setup.cacheBytes = frame.cacheBytes;
  setup.haltOnError = settings.haltOnError;
  setup.clock = m_surroundings.clock;
  MemoryEngine engine(buffer.words(), buffer.wordCount(), team, *m_surroundings.resting,
                      std::move(setup));
  return engine.run(makeSequence(m_kind.type, {buffer.words(), buffer.wordCount(), frame.seed,
                                               restSeconds(settings)}),
                    control);
}

std::vector<PlacedPage> PatternDiagnostic::place(MemoryBuffer& buffer, ThreadTeam& team,
                                                 const MemoryReport& report, const RunFrame& frame,
                                                 const RunSettings& settings, RunControl& control) {
  constexpr unsigned kRounds = 8;
  std::vector<PlacedPage> list;
  if (report.pages.empty()) return list;
  const std::string firmware = m_surroundings.firmware();
  const ModuleTable modules = moduleTable(firmware);
  const bool rests = m_kind.type == TestType::BitFade;
  RestBudget budget(restSeconds(settings));
  RetestPlan plan{m_kind.type, frame.seed, restSeconds(settings), kRounds, &kernels()};
  for (const FaultyPage& page : report.pages) {
    if (list.size() == kPlacedPages) break;
    PlacedPage placed;
    placed.page = page;
    std::uint64_t* const word = buffer.words() + page.first.offset / sizeof(std::uint64_t);
    placed.address = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(word));
    placed.physical = m_surroundings.physical(word);
    if (!placed.physical.address) {
      placed.whyNoModule = "the physical address is not known";
    } else if (firmware.empty()) {
      placed.whyNoModule = "the firmware's table (SMBIOS) cannot be read";
    } else {
      placed.modules = modulesAt(modules, *placed.physical.address);
      if (placed.modules.empty())
        placed.whyNoModule = "the firmware's table (SMBIOS) maps no module to that address";
    }
    if (rests) plan.rounds = budget.takeRounds();
    placed.retest = retestPage(buffer.words() + page.offset / sizeof(std::uint64_t), plan, team,
                               *m_surroundings.resting, control);
    list.push_back(std::move(placed));
  }
  return list;
}

}  // namespace providers::memory
