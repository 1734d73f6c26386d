#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "history/HistoryError.h"
#include "history/show/Tables.h"
#include "history/show/TrendPicture.h"
#include "history/show/TrendPlot.h"
#include "host/Messages.h"
#include "host/display/Display.h"
#include "host/display/Terminal.h"
#include "host/verbs/KeptVerbs.h"
#include "host/verbs/ReportSinks.h"
#include "host/verbs/State.h"
#include "reports/recover/OpenEnds.h"

namespace host {
namespace {

/// The run that the user means.
std::string named(const history::History& kept, const std::string& word) {
  try {
    return kept.resolve(word);
  } catch (const history::HistoryError& error) {
    throw UsageError(error.what());
  }
}

ExitStatus listRuns(const history::History& kept, const Options& options) {
  const std::vector<history::RunRecord> runs = kept.runs({}, options.most);
  if (options.json) {
    std::cout << history::jsonOf(runs) << '\n';
  } else {
    history::writeRuns(std::cout, runs);
  }
  return runs.empty() ? ExitStatus::kNothingToRun : ExitStatus::kPassed;
}

ExitStatus showDifference(const history::History& kept, const Options& options) {
  const history::Difference difference =
      kept.diff(named(kept, options.differ[0]), named(kept, options.differ[1]));
  if (options.json) {
    std::cout << history::jsonOf(difference) << '\n';
  } else {
    history::writeDifference(std::cout, difference);
  }
  return ExitStatus::kPassed;
}

/// The figures have no head of their own.
void writePage(const std::string& name, const std::vector<history::Trend>& trends) {
  std::ofstream page(std::filesystem::u8path(name), std::ios::binary | std::ios::trunc);
  page << "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
          "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src "
          "'unsafe-inline'\">\n<meta name=\"color-scheme\" content=\"light dark\">\n"
          "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
          "<title>Trend</title>\n</head>\n<body>\n";
  history::writeFigures(page, trends);
  page << "</body>\n</html>\n";
  if (!page.flush()) throw UsageError(name + " cannot be written");
}

ExitStatus showTrend(const history::History& kept, const Options& options) {
  const std::vector<history::Trend> trends = kept.trend(options.trend, options.measurement);
  if (trends.empty()) {
    reportError("nothing was measured in a run of \"" + options.trend + "\" that was kept");
    return ExitStatus::kNothingToRun;
  }
  if (!options.trendPage.empty()) writePage(options.trendPage, trends);
  if (options.json) {
    std::cout << history::jsonOf(trends) << '\n';
  } else if (options.trendPage.empty()) {
    history::PlotOptions how;
    how.columns = terminalSize().columns;
    for (const history::Trend& trend : trends) history::writePlot(std::cout, trend, how);
  }
  return ExitStatus::kPassed;
}

/// Shows a run as if it were going on; one that breaks off says so where it does.
class Shown : public engine::EventSink {
 public:
  Shown() : m_display(std::cout, std::cerr, DisplayStyle()) {}

  void take(const engine::Event& event) override {
    m_ends.take(event);
    m_display.take(event);
  }

  void finish() {
    for (const engine::Event& event : m_ends.closing()) m_display.take(event);
  }

 private:
  Display m_display;
  reports::OpenEnds m_ends;
};

bool hasFile(const ReportFiles& files) {
  return !files.events.empty() || !files.jsonLines.empty() || !files.junit.empty() ||
         !files.html.empty() || !files.metrics.empty();
}

}  // namespace

ExitStatus reportRun(const Options& options) {
  const history::History kept = openHistory(options);
  const std::string id = named(kept, options.kept.empty() ? "last" : options.kept);
  if (!hasFile(options.files)) {
    Shown shown;
    kept.events(id, shown);
    shown.finish();
    return ExitStatus::kPassed;
  }
  ReportSinks files(options.files, options.redact);
  kept.events(id, files);
  const std::vector<std::string> failures = files.finish();
  for (const std::string& failure : failures) reportError(failure);
  return failures.empty() ? ExitStatus::kPassed : ExitStatus::kCouldNotRun;
}

ExitStatus showHistory(const Options& options) {
  const history::History kept = openHistory(options);
  if (!options.differ.empty()) return showDifference(kept, options);
  return options.trend.empty() ? listRuns(kept, options) : showTrend(kept, options);
}

}  // namespace host
