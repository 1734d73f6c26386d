#include <chrono>
#include <thread>

#include "providers/common/ProviderLibrary.h"
#include "providers/memory/services/RunFindings.h"

// The diagnostics of a node that is sound, has a faulty memory module, or takes its time. What the
// memory test says is what the built-in ones say of the same findings.

namespace providers {

namespace {

using memory::FaultyPage;
using memory::MemoryModule;
using memory::PlacedPage;
using memory::RunFindings;
using memory::RunFrame;

enum class Conduct { kSound, kFaulty, kSlow };

RunFindings soundMemory() {
  RunFindings findings;
  findings.report.testedBytes = std::uint64_t{1} << 30;
  findings.report.bytesChecked = std::uint64_t{6} << 30;
  findings.report.sweeps = findings.report.plannedSweeps = 6;
  findings.report.seconds = 1;
  return findings;
}

/// Three wrong words in a page of one module, with one bit that is wrong whenever it is tested.
RunFindings faultyMemory() {
  constexpr std::uint64_t kStuck = std::uint64_t{1} << 17;
  PlacedPage placed;
  placed.page.first.expected = 0;
  placed.page.first.actual = kStuck;
  placed.page.errors = 3;
  placed.page.bits = kStuck;
  placed.address = 0x7f31c5209c40;
  placed.physical.address = 0x1c5209c40;
  MemoryModule module;
  module.locator = "DIMM_A2";
  module.serial = "S1";
  module.part = "P1";
  placed.modules = {module};
  placed.retest = {8, 8, true, kStuck};
  RunFindings findings = soundMemory();
  findings.report.errors = 3;
  findings.pages = {placed};
  return findings;
}

RunFrame frameOf(const RunFindings& findings) {
  RunFrame frame;
  frame.size.installed = std::uint64_t{8} << 30;
  frame.size.available = std::uint64_t{4} << 30;
  frame.askedBytes = frame.givenBytes = findings.report.testedBytes;
  frame.threads = 2;
  frame.kernels = "scalar";
  return frame;
}

class NodeDiagnostic : public Diagnostic {
 public:
  NodeDiagnostic(std::string name, Conduct conduct) : m_conduct(conduct) {
    m_description.family = "DIAGS_Node";
    m_description.name = std::move(name);
    m_description.elementName = "Memory of a node";
    m_description.text = "Finds what it was told to.";
    m_description.estimatedSeconds = 1;
  }

  const DiagnosticDescription& description() const override { return m_description; }
  std::vector<Device> devices() const override { return {{"mem0", "System Memory", {}}}; }
  std::string refuse(const RunSettings&) const override { return {}; }

  Outcome run(const Device&, const RunSettings&, RunControl& control) override {
    if (m_conduct == Conduct::kSlow) waitUntilStopped(control);
    control.progress(1);
    const RunFindings findings = m_conduct == Conduct::kFaulty ? faultyMemory() : soundMemory();
    return memory::memoryOutcome(findings, frameOf(findings));
  }

 private:
  /// Longer than any of the tests wants to see it run.
  static void waitUntilStopped(RunControl& control) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point end = Clock::now() + std::chrono::minutes(2);
    while (!control.stopRequested() && Clock::now() < end)
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }

  DiagnosticDescription m_description;
  Conduct m_conduct;
};

}  // namespace

std::vector<std::unique_ptr<Diagnostic>> makeDiagnostics() {
  std::vector<std::unique_ptr<Diagnostic>> all;
  all.push_back(std::make_unique<NodeDiagnostic>("NODE: Memory First", Conduct::kSound));
  all.push_back(std::make_unique<NodeDiagnostic>("NODE: Memory Last", Conduct::NODE_CONDUCT));
  return all;
}

}  // namespace providers
