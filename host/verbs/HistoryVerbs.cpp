#include <iostream>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "engine/plan/TestNames.h"
#include "history/HistoryError.h"
#include "history/show/Tables.h"
#include "history/show/TrendPicture.h"
#include "history/show/TrendPlot.h"
#include "host/Messages.h"
#include "host/display/Display.h"
#include "host/display/Terminal.h"
#include "host/verbs/KeptVerbs.h"
#include "host/verbs/PageFile.h"
#include "host/verbs/RedactedHistory.h"
#include "host/verbs/ReportSinks.h"
#include "host/verbs/State.h"
#include "reports/recover/OpenEnds.h"
#include "reports/redact/Redactor.h"

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
  std::vector<history::RunRecord> runs = kept.runs({}, options.most);
  RedactedHistory(kept, options.redact).redact(runs);
  if (options.json) {
    std::cout << history::jsonOf(runs) << '\n';
  } else {
    history::writeRuns(std::cout, runs);
  }
  return runs.empty() ? ExitStatus::kNothingToRun : ExitStatus::kPassed;
}

ExitStatus showDifference(const history::History& kept, const Options& options) {
  history::Difference difference =
      kept.diff(named(kept, options.differ[0]), named(kept, options.differ[1]));
  RedactedHistory(kept, options.redact).redact(difference);
  if (options.json) {
    std::cout << history::jsonOf(difference) << '\n';
  } else {
    history::writeDifference(std::cout, difference);
  }
  return ExitStatus::kPassed;
}

/// The device stands behind the service's name, which may have commas itself.
std::string deviceIn(const history::TestName& test) {
  const std::string start = test.service + ",";
  if (test.identifier.compare(0, start.size(), start) != 0) return {};
  return test.identifier.substr(start.size(),
                                test.identifier.find(',', start.size()) - start.size());
}

/// The tests that were kept as if they were on offer, to be named alike.
std::vector<engine::OfferedTest> testsIn(const history::History& kept) {
  std::vector<engine::OfferedTest> tests;
  for (const history::TestName& name : kept.tests()) {
    engine::OfferedTest test;
    test.identifier = name.identifier;
    test.service = name.service;
    test.device = deviceIn(name);
    tests.push_back(std::move(test));
  }
  return tests;
}

/// Of each test that the name means, as on the command line of a run.
std::vector<history::Trend> trendsOf(const history::History& kept, const Options& options) {
  std::vector<history::Trend> trends = kept.trend(options.trend, options.measurement);
  if (!trends.empty()) return trends;
  const std::vector<engine::OfferedTest> tests = testsIn(kept);
  const engine::TestNames names(tests);
  if (!names.has(options.trend)) return trends;
  for (const std::size_t test : names.find(options.trend, true).tests) {
    for (history::Trend& one : kept.trend(tests[test].identifier, options.measurement)) {
      trends.push_back(std::move(one));
    }
  }
  return trends;
}

ExitStatus showTrend(const history::History& kept, const Options& options) {
  PageFile page(options.trendPage);
  refuseTwoAnswers(options.json, page);
  std::vector<history::Trend> trends = trendsOf(kept, options);
  RedactedHistory redacted(kept, options.redact);
  redacted.redact(trends);
  if (trends.empty()) {
    reportError("nothing was measured in a run of \"" + options.trend + "\" that was kept");
    return ExitStatus::kNothingToRun;
  }
  const std::string asked = redacted.shown(options.trend);
  page.write([&](std::ostream& out) { history::writeTrendPage(out, asked, trends); });
  if (options.json) {
    std::cout << history::jsonOf(trends) << '\n';
  } else if (!page.isWanted()) {
    history::PlotOptions how;
    how.columns = terminalSize().columns;
    for (const history::Trend& trend : trends) history::writePlot(std::cout, trend, how);
  }
  return ExitStatus::kPassed;
}

/// Shows a run as if it were going on; one that breaks off says so where it does.
class Shown : public engine::EventSink {
 public:
  explicit Shown(const Options& options) : m_display(std::cout, std::cerr, styleOf(options)) {
    if (options.redact) m_redactor.emplace(m_display);
  }

  void take(const engine::Event& event) override {
    m_ends.take(event);
    show(event);
  }

  void finish() {
    for (const engine::Event& event : m_ends.closing()) show(event);
  }

 private:
  static DisplayStyle styleOf(const Options& options) {
    DisplayStyle style;
    adapt(style, surroundings());
    style.redraws = false;
    style.level = options.level.value_or(Level::kImmediate);
    if (options.isQuiet) style.detail = Detail::kQuiet;
    if (options.isVerbose) style.detail = Detail::kVerbose;
    return style;
  }

  void show(const engine::Event& event) {
    if (m_redactor) return m_redactor->take(event);
    m_display.take(event);
  }

  Display m_display;
  std::optional<reports::Redactor> m_redactor;
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
    Shown shown(options);
    kept.events(id, shown);
    shown.finish();
    return ExitStatus::kPassed;
  }
  if (options.isQuiet || options.isVerbose || options.level) {
    throw UsageError("--level, --quiet and --verbose are for what is shown, not for files");
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
