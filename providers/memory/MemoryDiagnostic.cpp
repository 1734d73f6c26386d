#include "providers/memory/MemoryDiagnostic.h"

#include <algorithm>
#include <memory>
#include <new>
#include <utility>

#include "providers/memory/MemoryBuffer.h"

namespace providers {

namespace {

using Uint16s = std::vector<std::uint16_t>;

constexpr std::uint64_t kMebi = std::uint64_t{1024} * 1024;
constexpr std::uint64_t kDefaultBytes = 256 * kMebi;
constexpr std::uint64_t kLeastBytes = kMebi;
constexpr std::uint64_t kShareOfAvailable = 4;  // one fourth: others want to live, too
constexpr double kQuickShare = 0.2;

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
                                 {"NonDestructive", true, false}};
  description.estimatedSeconds = static_cast<std::uint32_t>(targetSeconds + 1);
  return description;
}

/// As much as can be had of what is wanted.
std::unique_ptr<MemoryBuffer> allocate(std::uint64_t bytes) {
  for (; bytes >= kLeastBytes; bytes /= 2) {
    try {
      return std::make_unique<MemoryBuffer>(static_cast<std::size_t>(bytes - bytes % kLeastBytes));
    } catch (const std::bad_alloc&) {
      continue;
    }
  }
  return nullptr;
}

Outcome tooLittleMemory(const MemorySize& size) {
  Outcome outcome;
  outcome.state = CompletionState::Incomplete;
  outcome.text = "Not tested: only " + sizeText(size.available) + " of " + sizeText(size.usable) +
                 " memory are available\n";
  outcome.errors.push_back({"Not enough memory", 1});
  outcome.notes.push_back({RecordType::ServiceErrors, outcome.text, outcome.errors});
  return outcome;
}

}  // namespace

std::uint64_t chooseTestSize(const MemorySize& size, std::uint64_t wanted, unsigned percent) {
  // Which pages the system hands out is chance, so a smaller share is as evenly spread as any.
  const std::uint64_t share = size.available / kShareOfAvailable;
  const std::uint64_t bytes = std::min(wanted ? wanted : kDefaultBytes, share) * percent / 100;
  return bytes - bytes % kLeastBytes;
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

Outcome MemoryDiagnostic::run(const Device&, const RunSettings& settings, RunControl& control) {
  const MemorySize size = m_surroundings.size();
  const std::uint64_t wanted = asNumber(settings.properties.get("NumberOfBytes")).value_or(0);
  const auto buffer = allocate(chooseTestSize(size, wanted, settings.coveragePercent));
  if (!buffer) return tooLittleMemory(size);

  MemoryPlan plan;
  plan.targetSeconds = m_surroundings.targetSeconds * (settings.quick ? kQuickShare : 1);
  plan.haltOnError = settings.haltOnError;
  const auto seed = asNumber(settings.properties.get("Seed"));
  plan.seed = seed ? *seed : m_surroundings.seed();
  MemoryEngine engine(buffer->words(), buffer->wordCount(), *m_surroundings.settler,
                      m_surroundings.clock);
  const MemoryReport report = engine.run(plan, control);
  return memoryOutcome(report, size, buffer->locked(), plan.seed);
}

}  // namespace providers
