#include "providers/memory/MemoryDiagnostic.h"

#include <algorithm>
#include <new>
#include <utility>

namespace providers {

namespace {

using Uint16s = std::vector<std::uint16_t>;

constexpr std::uint64_t kMebi = std::uint64_t{1024} * 1024;
constexpr std::uint64_t kDefaultBytes = 256 * kMebi;
constexpr std::uint64_t kLeastBytes = kMebi;
constexpr std::uint64_t kShareOfAvailable = 4;  // one fourth: others want to live, too
constexpr double kQuickShare = 0.2;
constexpr double kSecondsAround = 1;  // to have the memory, and for a round that takes longer

DiagnosticDescription describe(double targetSeconds) {
  DiagnosticDescription description;
  description.family = "DIAGS_Memory";
  description.name = "DIAGS: Memory Test";
  description.elementName = "Memory Test";
  description.text =
      "Writes patterns to a share of the available memory and checks that it keeps them.";
  description.testProperties = {
      {"MemoryTestType", std::uint16_t{1}, false},
      {"OtherMemoryTestTypeDescription",
       std::string("Walking bits, self addressing, moving inversions, checkerboard, random"),
       false},
      {"Characteristics", Uint16s{}, false},
      {"TestTypes", Uint16s{2}, false}};
  description.capabilities = {{"SupportedServiceModes", Uint16s{2, 3, 4, 5}, false},
                              {"SupportedLoopControl", Uint16s{2, 3, 4, 5}, false},
                              {"SupportedLogOptions", Uint16s{2, 7, 8}, false},
                              {"SupportedLogStorage", Uint16s{0x8000}, false},
                              {"SupportedExecutionControls", Uint16s{3, 5}, false},
                              {"Seed", true, false}};
  description.defaultSettings = {{"HaltOnError", false, false},
                                 {"QuickMode", false, false},
                                 {"PercentOfTestCoverage", std::uint8_t{100}, false},
                                 {"NumberOfBytes", kDefaultBytes, false},
                                 {"Seed", {}, false},
                                 {"NonDestructive", true, false}};
  description.estimatedSeconds = static_cast<std::uint32_t>(targetSeconds + kSecondsAround);
  return description;
}

std::uint64_t wholeUnits(std::uint64_t bytes) { return bytes - bytes % kLeastBytes; }

/// As much as can be had of what is wanted.
std::unique_ptr<MemoryBuffer> allocate(const MemorySurroundings& surroundings,
                                       std::uint64_t bytes) {
  for (; bytes >= kLeastBytes; bytes /= 2) {
    try {
      return surroundings.allocate(static_cast<std::size_t>(wholeUnits(bytes)));
    } catch (const std::bad_alloc&) {
      continue;
    }
  }
  return nullptr;
}

}  // namespace

std::uint64_t askedTestSize(std::uint64_t wanted, unsigned percent) {
  // Which pages the system hands out is chance, so a smaller share is as evenly spread as any.
  constexpr std::uint64_t kFull = 100;
  const std::uint64_t whole = wanted ? wanted : kDefaultBytes;
  const std::uint64_t part = whole / kFull * percent + whole % kFull * percent / kFull;
  return std::max(wholeUnits(part), kLeastBytes);
}

std::uint64_t chooseTestSize(const MemorySize& size, std::uint64_t asked) {
  return wholeUnits(std::min(asked, size.available / kShareOfAvailable));
}

MemoryDiagnostic::MemoryDiagnostic(MemorySurroundings surroundings)
    : m_surroundings(std::move(surroundings)),
      m_description(describe(m_surroundings.targetSeconds)) {}

std::vector<Device> MemoryDiagnostic::devices() const {
  const MemorySize size = m_surroundings.size();
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

std::string MemoryDiagnostic::refuse(const RunSettings& settings) const {
  for (const char* name : {"NumberOfBytes", "Seed"}) {
    const Value& value = settings.properties.get(name);
    if (!isNull(value) && !asNumber(value)) return std::string(name) + " is no number";
  }
  return {};
}

double MemoryDiagnostic::targetSeconds(const RunSettings& settings) const {
  const double target = m_surroundings.targetSeconds * (settings.quick ? kQuickShare : 1);
  return settings.loop.seconds ? std::min<double>(target, settings.loop.seconds) : target;
}

double MemoryDiagnostic::passSeconds(const RunSettings& settings) const {
  return targetSeconds(settings) + kSecondsAround;
}

Outcome MemoryDiagnostic::run(const Device&, const RunSettings& settings, RunControl& control) {
  const std::uint64_t wanted = asNumber(settings.properties.get("NumberOfBytes")).value_or(0);
  MemoryShare share;
  share.size = m_surroundings.size();
  share.askedBytes = askedTestSize(wanted, settings.coveragePercent);
  const auto buffer = allocate(m_surroundings, chooseTestSize(share.size, share.askedBytes));
  if (!buffer) return noMemoryOutcome(share);
  share.givenBytes = std::uint64_t{buffer->wordCount()} * sizeof(std::uint64_t);
  share.locked = buffer->locked();

  MemoryPlan plan;
  plan.targetSeconds = targetSeconds(settings);
  plan.haltOnError = settings.haltOnError;
  const auto seed = asNumber(settings.properties.get("Seed"));
  plan.seed = seed ? *seed : m_surroundings.seed();
  MemoryEngine engine(buffer->words(), buffer->wordCount(), *m_surroundings.settler,
                      m_surroundings.clock);
  return memoryOutcome(engine.run(plan, control), share, plan.seed);
}

}  // namespace providers
