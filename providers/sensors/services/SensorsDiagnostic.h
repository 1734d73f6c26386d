#pragma once

#include <functional>
#include <string>
#include <vector>

#include "providers/common/Diagnostic.h"
#include "providers/sensors/load/ProcessorLoad.h"
#include "providers/sensors/services/Course.h"

namespace providers::sensors {

/// Where a run has its sensors from.
struct OpenedSensors {
  ReadSensors read;
  std::string source;  ///< in words, for the record
};

/// What the test stands on.
struct SensorsSurroundings {
  std::function<bool()> hasSensors;
  std::function<OpenedSensors()> open;
  StartLoad startLoad;
  unsigned loadThreads = 1;
  std::function<double()> clock;  ///< seconds from any beginning
  std::function<void(double seconds)> sleep;
};

/// Looks whether all sensors stay within their own limits: before all processors are kept busy,
/// meanwhile, and afterwards.
class SensorsDiagnostic : public Diagnostic {
 public:
  explicit SensorsDiagnostic(SensorsSurroundings surroundings);

  const DiagnosticDescription& description() const override { return m_description; }
  std::vector<Device> devices() const override;
  std::string refuse(const RunSettings& settings) const override;
  double passSeconds(const RunSettings& settings) const override;
  Outcome run(const Device& device, const RunSettings& settings, RunControl& control) override;

 private:
  struct Watched {
    Course course;
    double loadSeconds = 0;
  };

  Watched follow(const ReadSensors& read, double loadSeconds, RunControl& control) const;
  /// Reads every second, and once at the end, or until it is critical under load; false when the
  /// run is to end.
  bool watch(Phase phase, double seconds, const ReadSensors& read, Course& course,
             RunControl& control) const;

  const SensorsSurroundings m_surroundings;
  const DiagnosticDescription m_description;
};

}  // namespace providers::sensors
