#pragma once

#include "providers/common/Diagnostic.h"
#include "providers/memory/services/RunFindings.h"
#include "providers/memory/services/Surroundings.h"
#include "providers/memory/services/TestKinds.h"

namespace providers::memory {

/// Tests a share of the memory that is available with one kind of pattern.
class PatternDiagnostic : public Diagnostic {
 public:
  PatternDiagnostic(const TestKind& kind, const Surroundings& surroundings);

  const DiagnosticDescription& description() const override { return m_description; }
  std::vector<Device> devices() const override {
    return memoryDevices(m_surroundings.extent().size);
  }
  std::string refuse(const RunSettings& settings) const override;
  double passSeconds(const RunSettings& settings) const override;
  Outcome run(const Device& device, const RunSettings& settings, RunControl& control) override;

 private:
  std::uint64_t asked(const MemorySize& size, const RunSettings& settings) const;
  std::unique_ptr<MemoryBuffer> allocate(std::uint64_t bytes) const;
  bool mayGoOn(std::uint64_t floor) const;
  Outcome test(MemoryBuffer& buffer, RunFrame& frame, const RunSettings& settings,
               RunControl& control);
  MemoryReport sweep(MemoryBuffer& buffer, ThreadTeam& team, std::vector<LineRange> regions,
                     const RunFrame& frame, const RunSettings& settings, RunControl& control);
  std::vector<PlacedPage> place(MemoryBuffer& buffer, ThreadTeam& team, const MemoryReport& report,
                                const RunFrame& frame, const RunSettings& settings,
                                RunControl& control);
  const Kernels& kernels() const;

  const TestKind& m_kind;
  const Surroundings m_surroundings;
  const DiagnosticDescription m_description;
};

}  // namespace providers::memory
