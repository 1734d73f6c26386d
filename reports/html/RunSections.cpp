#include <algorithm>
#include <ostream>
#include <string>

#include "reports/html/Escape.h"
#include "reports/html/Figures.h"
#include "reports/html/Plots.h"
#include "reports/html/Sections.h"
#include "reports/html/Words.h"

namespace reports::html {
namespace {

void writeListLine(std::ostream& out, const TestPicture& test) {
  const Look look = test.end ? lookOf(test.end->outcome) : Look{"open", "No end"};
  out << "<li><a href=\"#t" << test.number << "\">";
  writeBadge(out, look.style, look.word);
  out << "<span class=\"name\">" << escaped(serviceOf(test.test));
  std::string where = whereOf(test.test);
  if (test.test.repetition > 1) {
    where += (where.empty() ? "" : " \xC2\xB7 ") +
             ("repetition " + std::to_string(test.test.repetition));
  }
  if (!where.empty()) out << " <span class=\"where\">" << escaped(where) << "</span>";
  out << "</span><span class=\"took\">";
  if (test.end && ran(*test.end)) out << duration(test.end->seconds);
  out << "</span></a></li>\n";
}

using Choice = bool (*)(const TestPicture&);

bool isAny(const TestPicture&) { return true; }

void writeList(std::ostream& out, const RunPicture& run, Choice isChosen) {
  bool isOpen = false;
  for (const auto& [number, test] : run.tests()) {
    if (!isChosen(test)) continue;
    if (!isOpen) out << "<ol class=\"card list\">\n";
    isOpen = true;
    writeListLine(out, test);
  }
  if (isOpen) out << "</ol>";
}

std::string outcomesLeftOut(const RunPicture& run) {
  std::string text;
  for (int i = 0; i < 7; ++i) {
    const auto outcome = static_cast<engine::Outcome>(i);
    if (run.leftOut(outcome) == 0) continue;
    if (!text.empty()) text += ", ";
    text += std::to_string(run.leftOut(outcome)) + " " + lookOf(outcome).word;
  }
  return text;
}

void writeLeftOut(std::ostream& out, const RunPicture& run) {
  if (run.leftOutInAll() == 0) return;
  out << "<p class=\"note\">" << counted(run.leftOutInAll(), "more run")
      << " of tests are counted above and not shown one by one (" << outcomesLeftOut(run)
      << "); the events of the run have them all.</p>";
}

void writeRow(std::ostream& out, const RunPicture& run, const Timeline::Row& row) {
  const engine::Time from = row.bars.front().from;
  const engine::Time to = row.bars.back().to;
  out << "<div class=\"row\"><div>" << escaped(row.service);
  if (!row.where.empty()) out << " <span class=\"where\">" << escaped(row.where) << "</span>";
  out << "</div>" << bars(row, run.from(), run.last()) << "<div>";
  if (row.runs > 1) {
    out << row.runs << " runs";
  } else {
    out << duration(secondsBetween(from, to));
  }
  out << "</div></div>\n";
}

void writeTrend(std::ostream& out, const Trend& trend) {
  const std::string where = whereOf(trend.test);
  writeMeasurementRow(out, trend.series,
                      serviceOf(trend.test) + (where.empty() ? "" : " \xC2\xB7 " + where));
}

void writeFact(std::ostream& out, const std::string& name, const std::string& value) {
  out << "<dt>" << escaped(name) << "</dt><dd>" << escaped(value) << "</dd>";
}

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
  return text;
}

}  // namespace

void writeTestList(std::ostream& out, const RunPicture& run) {
  if (run.tests().size() < 2) return;
  out << "<section id=\"tests\"><h2>The tests</h2>";
  if (isLong(run)) {
    writeList(out, run, didNotPass);
    out << "<details class=\"fold\"><summary>" << counted(run.tests().size(), "run")
        << " of tests in their order</summary>";
    writeList(out, run, isAny);
    out << "</details>";
  } else {
    writeList(out, run, isAny);
  }
  writeLeftOut(out, run);
  out << "</section>\n";
}

void writeTimeline(std::ostream& out, const RunPicture& run) {
  const Timeline& timeline = run.timeline();
  if (timeline.rows().empty()) return;
  out << "<section id=\"timeline\"><h2>What ran when</h2><div class=\"card timeline\">\n";
  for (const Timeline::Row& row : timeline.rows()) writeRow(out, run, row);
  out << "<div class=\"row axis\"><div></div><div><span>" << clockTime(run.from()).substr(11)
      << "</span><span>" << clockTime(run.last()).substr(11)
      << " UTC</span></div><div></div></div>";
  out << "</div>";
  if (timeline.leftOut() > 0) {
    out << "<p class=\"note\">" << counted(timeline.leftOut(), "run")
        << " of further tests are not drawn.</p>";
  }
  out << "</section>\n";
}

void writeTrends(std::ostream& out, const RunPicture& run) {
  const auto isTrend = [](const Trend& trend) { return trend.tests > 1; };
  if (std::none_of(run.trends().begin(), run.trends().end(), isTrend)) return;
  out << "<section id=\"trends\"><h2>Measurements over the run</h2><div class=\"card\"><table>"
         "<thead><tr><th>Measurement</th><th class=\"picture\">Course</th><th "
         "class=\"value\">Latest</th><th>Allowed</th></tr>"
         "</thead><tbody>\n";
  for (const Trend& trend : run.trends()) {
    if (isTrend(trend)) writeTrend(out, trend);
  }
  out << "</tbody></table></div></section>\n";
}

void writeRun(std::ostream& out, const RunPicture& run) {
  out << "<section id=\"run\"><h2>The run</h2><div class=\"card test open\">\n<dl class=\"facts\">";
  writeFact(out, "Began", clockTime(run.from()) + " UTC");
  writeFact(out, run.end() ? "Ended" : "Known until", clockTime(run.last()) + " UTC");
  if (run.start()) {
    writeFact(out, "Program", "diags " + run.start()->version);
    writeFact(out, "Command line", joined(run.start()->commandLine));
    for (const auto& [name, value] : run.start()->parameters) writeFact(out, name, value);
  }
  out << "</dl>\n";
  writeSayings(out, run.whole());
  writeMeasurements(out, run.whole().measurements);
  writeFolded(out, run.whole());
  out << "</div></section>\n";
}

}  // namespace reports::html
