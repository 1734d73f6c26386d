#pragma once

#include <functional>
#include <memory>
#include <string>

#include "providers/common/Diagnostic.h"
#include "providers/memory/MemoryBuffer.h"
#include "providers/memory/MemoryEngine.h"
#include "providers/memory/MemorySize.h"

namespace providers {

/// What the memory test needs of its surroundings; a test has its own.
struct MemorySurroundings {
  std::function<MemorySize()> size;
  /// Throws `std::bad_alloc` when there is not that much.
  std::function<std::unique_ptr<MemoryBuffer>(std::size_t bytes)> allocate = [](std::size_t bytes) {
    return std::make_unique<MemoryBuffer>(bytes);
  };
  MemoryEngine::Clock clock;
  MemorySettler* settler = nullptr;     ///< outlives the diagnostic
  std::function<std::uint64_t()> seed;  ///< for runs whose settings have none
  double targetSeconds = 7;
};

/// Tests a share of the memory that is available.
class MemoryDiagnostic : public Diagnostic {
 public:
  explicit MemoryDiagnostic(MemorySurroundings surroundings);

  const DiagnosticDescription& description() const override { return m_description; }
  std::vector<Device> devices() const override;
  std::string refuse(const RunSettings& settings) const override;
  double passSeconds(const RunSettings& settings) const override;
  Outcome run(const Device& device, const RunSettings& settings, RunControl& control) override;

 private:
  double targetSeconds(const RunSettings& settings) const;

  const MemorySurroundings m_surroundings;
  const DiagnosticDescription m_description;
};

/// How many bytes a run is to go over: whole mebibytes, one at least. `wanted` is what the settings
/// ask for, 0 for the default.
std::uint64_t askedTestSize(std::uint64_t wanted, unsigned percent);

/// What of these bytes it does go over; 0 when there is too little memory to test.
std::uint64_t chooseTestSize(const MemorySize& size, std::uint64_t asked);

/// What is told of a memory, for example "256 MiB" or "23.4 GiB".
std::string sizeText(std::uint64_t bytes);

/// What a run had to work with.
struct MemoryShare {
  MemorySize size;
  std::uint64_t askedBytes = 0;
  std::uint64_t givenBytes = 0;
  bool locked = false;
};

/// What a run found, as a record has it.
Outcome memoryOutcome(const MemoryReport& report, const MemoryShare& share, std::uint64_t seed);

/// What is told where there was no memory to test.
Outcome noMemoryOutcome(const MemoryShare& share);

}  // namespace providers
