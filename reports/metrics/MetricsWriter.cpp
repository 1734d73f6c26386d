#include "reports/metrics/MetricsWriter.h"

#include <utility>

namespace reports {

MetricsWriter::MetricsWriter(std::ostream& out, std::string file, const metrics::Limits& limits)
    : m_lines(out, std::move(file)), m_run(limits) {}

void MetricsWriter::take(const engine::Event& event) {
  if (m_run.hasEnded()) return;
  m_run.take(event);
  if (m_run.hasEnded()) m_lines.writeAll(metrics::textOf(m_run));
}

}  // namespace reports
