#include <ostream>
#include <string>

#include "reports/html/Escape.h"
#include "reports/html/Figures.h"
#include "reports/html/Plots.h"
#include "reports/html/Sections.h"
#include "reports/html/Words.h"

namespace reports::html {
namespace {

void writeSayingTop(std::ostream& out, const Look& look, const std::string& rest) {
  out << "<div class=\"says " << look.style << "\"><p class=\"top\">" << mark(look.style)
      << "<span>" << look.word << (rest.empty() ? "" : ": ") << escaped(rest) << "</span></p>";
}

void writeText(std::ostream& out, const std::string& text) {
  if (!text.empty()) out << "<p class=\"text\">" << escapedLines(text) << "</p>";
}

void writeActionList(std::ostream& out, const std::vector<std::string>& actions) {
  if (actions.empty()) return;
  out << "<ol>";
  for (const std::string& action : actions) out << "<li>" << escaped(action) << "</li>";
  out << "</ol>";
}

void writeFinding(std::ostream& out, const engine::Diagnosis& finding) {
  writeSayingTop(out, lookOf(finding.verdict), finding.part);
  writeText(out, finding.text);
  writeActionList(out, finding.actions);
  out << "</div>\n";
}

void writeMessage(std::ostream& out, const engine::Message& message) {
  writeSayingTop(out, lookOf(message.severity), {});
  writeText(out, message.text);
  writeActionList(out, message.actions);
  out << "</div>\n";
}

std::string originOf(const engine::Error& error) {
  std::string text;
  if (!error.provider.empty()) text += "Last entered: " + error.provider;
  if (!error.operation.empty()) {
    text += (text.empty() ? "Last entered: " : ", ") + error.operation;
  }
  if (error.code != 0) text += (text.empty() ? "Code " : "; code ") + std::to_string(error.code);
  return text;
}

void writeError(std::ostream& out, const engine::Error& error) {
  writeSayingTop(out, {"open", sentenceOf(error.cause)}, {});
  writeText(out, error.text);
  if (const std::string origin = originOf(error); !origin.empty()) {
    out << "<p class=\"from\">" << escaped(origin) << "</p>";
  }
  if (!error.libraries.empty()) {
    out << "<p class=\"from\">Libraries on the stack, the innermost first:";
    for (const std::string& library : error.libraries) {
      out << " <code>" << escaped(library) << "</code>";
    }
    out << "</p>";
  }
  out << "</div>\n";
}

void writeTestHead(std::ostream& out, const TestPicture& test, const Look& look) {
  out << "<header><h3>" << escaped(serviceOf(test.test)) << "</h3>";
  writeBadge(out, look.style, look.word);
  out << "<p class=\"where\">" << escaped(whereOf(test.test));
  if (test.test.repetition > 1) out << " \xC2\xB7 repetition " << test.test.repetition;
  out << "</p><p class=\"took\">";
  if (test.end) {
    if (ran(*test.end)) out << duration(test.end->seconds);
  } else {
    out << "at " << figure(test.percent) << " %";
  }
  out << "</p></header>\n";
}

/// What the test's end says beside its outcome; nothing where that is the badge's word again.
void writeEnd(std::ostream& out, const engine::Ended& end) {
  std::string text = end.remark;
  const bool saysMore = end.text != "Pass" && end.text != "Warning" && end.text != "Fail" &&
                        end.text != "Aborted" && end.text != "Incomplete";
  if (saysMore && !end.text.empty() && end.text != text) {
    text = text.empty() ? end.text : end.text + "\n" + text;
  }
  if (!text.empty()) out << "<p class=\"remark\">" << escapedLines(text) << "</p>\n";
}

void writeTest(std::ostream& out, const TestPicture& test) {
  const Look look = test.end ? lookOf(test.end->outcome) : Look{"open", "No end"};
  out << "<article class=\"card test " << look.style << "\" id=\"t" << test.number << "\">\n";
  writeTestHead(out, test, look);
  if (test.end) writeEnd(out, *test.end);
  writeSayings(out, test);
  writeMeasurements(out, test.measurements);
  writeFolded(out, test);
  out << "</article>\n";
}

}  // namespace

void writeSayings(std::ostream& out, const TestPicture& test) {
  for (const engine::Diagnosis& finding : test.findings) writeFinding(out, finding);
  for (const engine::Error& error : test.errors) writeError(out, error);
  for (const engine::Message& message : test.messages) writeMessage(out, message);
  if (test.leftOut > 0) {
    out << "<p class=\"note\">" << test.leftOut
        << " more messages, findings, measurements or steps are left out here; the events of the "
           "run have them all.</p>\n";
  }
}

void writeMeasurementRow(std::ostream& out, const Series& series, const std::string& of) {
  const engine::Measurement& latest = series.latest();
  out << "<tr><td>" << escaped(series.name());
  if (!of.empty()) out << "<span class=\"of\">" << escaped(of) << "</span>";
  if (!series.part().empty()) out << "<span class=\"of\">" << escaped(series.part()) << "</span>";
  out << "</td><td class=\"picture\">" << plot(series) << "</td><td class=\"value"
      << (isBeyondLimits(latest) ? " out" : "") << "\">" << escaped(valueText(latest.value));
  if (!series.unit().empty()) out << "\xC2\xA0" << escaped(series.unit());
  if (series.places().size() > 1) {
    out << "<span class=\"of\">" << figure(series.least()) << " to " << figure(series.most())
        << "</span>";
  }
  if (series.count() > 1 && series.outside() > 0) {
    out << "<span class=\"of\">" << series.outside() << " of " << series.count()
        << " beyond limits</span>";
  }
  out << "</td><td class=\"limits\">" << escaped(limitsText(latest)) << "</td></tr>\n";
}

void writeMeasurements(std::ostream& out, const std::vector<Series>& measurements) {
  if (measurements.empty()) return;
  out << "<table><thead><tr><th>Measurement</th><th class=\"picture\">Course</th><th "
         "class=\"value\">Value</th><th>Allowed</th></tr>"
         "</thead><tbody>\n";
  for (const Series& series : measurements) writeMeasurementRow(out, series, {});
  out << "</tbody></table>\n";
}

bool didNotPass(const TestPicture& test) {
  return !test.end || test.end->outcome != engine::Outcome::kPassed;
}

bool isLong(const RunPicture& run) {
  constexpr std::size_t kMany = 40;
  return run.tests().size() > kMany;
}

void writeTests(std::ostream& out, const RunPicture& run) {
  if (run.tests().empty()) return;
  out << "<section id=\"details\"><h2>" << (run.tests().size() > 1 ? "Each test" : "The test")
      << "</h2>\n";
  std::size_t folded = 0;
  for (const auto& [number, test] : run.tests()) {
    if (!isLong(run) || didNotPass(test)) {
      writeTest(out, test);
    } else {
      ++folded;
    }
  }
  if (folded > 0) {
    out << "<details class=\"fold\"><summary>" << counted(folded, "run")
        << " of tests that passed</summary>";
    for (const auto& [number, test] : run.tests()) {
      if (!didNotPass(test)) writeTest(out, test);
    }
    out << "</details>";
  }
  out << "</section>\n";
}

}  // namespace reports::html
