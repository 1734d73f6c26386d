#pragma once

#include <ostream>
#include <string>

#include "engine/events/EventSink.h"
#include "reports/common/LineWriter.h"
#include "reports/metrics/RunMetrics.h"

namespace reports {

/// Writes a run as metrics in Prometheus' text format, at its end and in one go: what collects them
/// reads whole files alone. Until then it keeps a value for each series, within limits.
class MetricsWriter : public engine::EventSink {
 public:
  /// The stream must outlive it; `file` is its name.
  MetricsWriter(std::ostream& out, std::string file, const metrics::Limits& limits = {});

  void take(const engine::Event& event) override;

 private:
  LineWriter m_lines;
  metrics::RunMetrics m_run;
};

namespace metrics {

/// The whole text of a run that has ended; metrics and series in an order of their own.
std::string textOf(const RunMetrics& run);

}  // namespace metrics
}  // namespace reports
