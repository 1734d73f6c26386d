#include <ostream>
#include <string>

#include "reports/html/Escape.h"
#include "reports/html/Figures.h"
#include "reports/html/Sections.h"

/// What stands folded away: record, steps, output, log.
namespace reports::html {
namespace {

void open(std::ostream& out, const std::string& name) {
  out << "<details><summary>" << name << "</summary>";
}

void writeRecord(std::ostream& out, const TestPicture& test) {
  if (!test.end || test.end->record.empty()) return;
  open(out, "The test's record");
  out << "<pre>" << escapedLines(test.end->record) << "</pre></details>\n";
}

void writeSteps(std::ostream& out, const TestPicture& test) {
  if (test.steps.empty()) return;
  open(out, counted(test.steps.size(), "step"));
  out << "<ol class=\"steps\">";
  for (std::size_t i = 0; i < test.steps.size(); ++i) {
    const engine::Time to = i + 1 < test.steps.size() ? test.steps[i + 1].from : test.last;
    out << "<li>" << escaped(test.steps[i].name) << " <span class=\"soft\">"
        << duration(secondsBetween(test.steps[i].from, to)) << "</span></li>";
  }
  out << "</ol></details>\n";
}

const char* outputStyle(int kind) {
  return kind == static_cast<int>(engine::Stream::kError) ? "odd" : "";
}

const char* logStyle(int kind) { return kind == 0 ? "bad" : kind == 1 ? "odd" : ""; }

template <class Lines>
void writeLines(std::ostream& out, const Lines& lines, const char* (*style)(int)) {
  for (const Line& line : lines) {
    out << "<span class=\"at\">" << clockTime(line.time).substr(11) << "</span>";
    const std::string name = style(line.kind);
    if (!name.empty()) out << "<span class=\"" << name << "\">";
    out << escaped(line.text) << (name.empty() ? "\n" : "</span>\n");
  }
}

void writeExcerpt(std::ostream& out, const char* name, const Excerpt& lines,
                  const char* (*style)(int)) {
  if (lines.isEmpty()) return;
  open(out, name + (", " + counted(lines.count(), "line")));
  out << "<pre>";
  writeLines(out, lines.first(), style);
  if (lines.leftOut() > 0) {
    out << "<span class=\"gap\">" << counted(lines.leftOut(), "line")
        << " left out here; the events of the run have them all.</span>";
  }
  writeLines(out, lines.last(), style);
  out << "</pre></details>\n";
}

}  // namespace

void writeFolded(std::ostream& out, const TestPicture& test) {
  writeRecord(out, test);
  writeSteps(out, test);
  writeExcerpt(out, "Output", test.output, outputStyle);
  writeExcerpt(out, "Log", test.log, logStyle);
}

}  // namespace reports::html
