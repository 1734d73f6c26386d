#include "reports/html/Page.h"

#include <ostream>

#include "reports/html/Escape.h"
#include "reports/html/Figures.h"
#include "reports/html/Headline.h"
#include "reports/html/Sections.h"
#include "reports/html/Style.h"

namespace reports::html {
namespace {

/// Nothing may be loaded and nothing may run; even what got past the escaping could do nothing.
void writePolicy(std::ostream& out) {
  out << "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src '"
      << kStyleHash << "'; base-uri 'none'; form-action 'none'\">\n";
}

void writeHead(std::ostream& out, const RunPicture& run) {
  out << "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n";
  writePolicy(out);
  out << "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
         "<meta name=\"color-scheme\" content=\"light dark\">\n"
         "<meta name=\"referrer\" content=\"no-referrer\">\n<title>"
      << headlineOf(run).text;
  if (run.start() && !run.start()->host.empty()) {
    out << " \xC2\xB7 " << escaped(run.start()->host);
  }
  out << "</title>\n<style>" << kStyle << "</style>\n</head>\n";
}

void writeFoot(std::ostream& out, const RunPicture& run) {
  out << "<footer>Made by diags";
  if (run.start()) out << ' ' << escaped(run.start()->version);
  out << ". Times are UTC. This page needs nothing but itself.</footer>\n";
}

}  // namespace

void writePage(std::ostream& out, const RunPicture& run) {
  writeHead(out, run);
  out << "<body>\n";
  writeVerdict(out, run);
  out << "<main>\n";
  writeActions(out, run);
  writeMachine(out, run);
  writeTestList(out, run);
  writeTimeline(out, run);
  writeTrends(out, run);
  writeTests(out, run);
  writeRun(out, run);
  out << "</main>\n";
  writeFoot(out, run);
  out << "</body>\n</html>\n";
}

}  // namespace reports::html
