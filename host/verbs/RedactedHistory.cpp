#include "host/verbs/RedactedHistory.h"

#include <algorithm>

#include "history/HistoryError.h"
#include "reports/redact/Redactor.h"

namespace host {

bool RedactedHistory::learn(const std::string& run) {
  auto start = m_kept.start(run);
  if (start) reports::learnMachine(m_secrets, *start);
  return start.has_value();
}

void RedactedHistory::redact(history::RunRecord& run) {
  if (!run.host.empty()) run.host = m_secrets.replace(reports::Secrets::Kind::kHost, run.host);
  redact(run.version);
  redact(run.command);
}

void RedactedHistory::redact(std::vector<history::RunRecord>& runs) {
  if (!m_isWanted) return;
  std::vector<history::RunRecord*> unlearned;
  for (history::RunRecord& run : runs) {
    try {
      if (!learn(run.id)) unlearned.push_back(&run);
    } catch (const history::DamagedHistory&) {
      unlearned.push_back(&run);
    }
  }
  for (history::RunRecord& run : runs) redact(run);
  // Nobody knows what to take out of the command there.
  for (history::RunRecord* const run : unlearned) run->command = "(its machine cannot be read)";
}

void RedactedHistory::redact(std::optional<history::Measured>& value) {
  if (value) redact(value->text);
}

void RedactedHistory::redact(history::TestDifference& test) {
  redact(test.name);
  for (history::MeasurementDifference& measurement : test.measurements) {
    redact(measurement.name);
    redact(measurement.part);
    redact(measurement.unit);
    redact(measurement.before);
    redact(measurement.after);
  }
}

void RedactedHistory::redact(history::Difference& difference) {
  if (!m_isWanted) return;
  learn(difference.before.id);
  learn(difference.after.id);
  redact(difference.before);
  redact(difference.after);
  for (history::TestDifference& test : difference.tests) redact(test);
}

/// Of all its runs: a disk that was replaced has been in some of them.
void RedactedHistory::redact(std::vector<history::Trend>& trends) {
  if (!m_isWanted) return;
  std::vector<std::string> runs;
  for (const history::Trend& trend : trends) {
    for (const history::TrendPoint& point : trend.points) runs.push_back(point.run);
  }
  std::sort(runs.begin(), runs.end());
  runs.erase(std::unique(runs.begin(), runs.end()), runs.end());
  for (const std::string& run : runs) learn(run);
  for (history::Trend& trend : trends) {
    redact(trend.test);
    redact(trend.name);
    redact(trend.part);
    redact(trend.unit);
  }
}

}  // namespace host
