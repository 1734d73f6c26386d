#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "providers/common/Diagnostic.h"

namespace providers {

inline Outcome outcomeOf(CompletionState state, const std::string& text = "done\n") {
  Outcome outcome;
  outcome.state = state;
  outcome.text = text;
  return outcome;
}

inline Outcome failureWith(std::uint32_t errors) {
  Outcome outcome = outcomeOf(CompletionState::Failed, "broken\n");
  outcome.errors.push_back({"E1", errors});
  return outcome;
}

/// A diagnostic of fans whose passes end as scripted; the last one of the script is repeated.
class FakeDiagnostic : public Diagnostic {
 public:
  FakeDiagnostic() {
    m_description.family = "DIAGS_Fan";
    m_description.name = "DIAGS: Fan Test";
    m_description.elementName = "Fan Test";
    m_description.estimatedSeconds = 8;
    addDevice("fan0", "Front Fan");
  }

  void addDevice(const std::string& id, const std::string& name,
                 const Properties& properties = {}) {
    m_devices.push_back({id, name, properties});
  }
  /// What there is to know about the test, to be changed.
  DiagnosticDescription& describe() { return m_description; }
  void removeDevices() { m_devices.clear(); }
  void script(std::vector<Outcome> passes) { m_passes = std::move(passes); }
  /// Called at the beginning of each pass.
  void onRun(std::function<void(RunControl&)> hook) { m_hook = std::move(hook); }
  void refuseWith(const std::string& reason) { m_refusal = reason; }

  std::size_t runs() const {
    const std::lock_guard<std::mutex> lock(*m_mutex);
    return m_settings.size();
  }
  const RunSettings& lastSettings() const { return m_settings.back(); }

  const DiagnosticDescription& description() const override { return m_description; }
  std::vector<Device> devices() const override { return m_devices; }
  std::string refuse(const RunSettings&) const override { return m_refusal; }
  Outcome run(const Device&, const RunSettings& settings, RunControl& control) override {
    {
      const std::lock_guard<std::mutex> lock(*m_mutex);
      m_settings.push_back(settings);
    }
    if (m_hook) m_hook(control);
    return m_passes[std::min(runs(), m_passes.size()) - 1];
  }

 private:
  std::shared_ptr<std::mutex> m_mutex = std::make_shared<std::mutex>();  ///< for the settings
  DiagnosticDescription m_description;
  std::vector<Device> m_devices;
  std::vector<Outcome> m_passes{outcomeOf(CompletionState::Ok)};
  std::function<void(RunControl&)> m_hook;
  std::string m_refusal;
  std::vector<RunSettings> m_settings;
};

}  // namespace providers
