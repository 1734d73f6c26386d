#include "fleet/page/Page.h"

#include <ostream>

#include "fleet/page/Headline.h"
#include "fleet/page/Inlays.h"
#include "fleet/page/Sections.h"
#include "reports/html/Style.h"

namespace fleet {
namespace {

/// Nothing may be loaded, and nothing may run but the page's own scripts, which cannot turn a text
/// into markup: even what got past the escaping could do nothing.
void writePolicy(std::ostream& out) {
  out << "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src '"
      << reports::html::kStyleHash << "' '" << page::kStyle.hash << "'; script-src '"
      << page::kFleetScript.hash << "' '" << page::kTableScript.hash
      << "'; require-trusted-types-for 'script'; trusted-types 'none'; base-uri 'none'; "
         "form-action 'none'\">\n";
}

void writeHead(std::ostream& out, const Answer& answer) {
  out << "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n";
  writePolicy(out);
  out << "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
         "<meta name=\"color-scheme\" content=\"light dark\">\n"
         "<meta name=\"referrer\" content=\"no-referrer\">\n<title>"
      << page::headlineOf(answer).text << "</title>\n<style>" << reports::html::kStyle
      << "</style>\n<style>" << page::kStyle.text << "</style>\n</head>\n";
}

void writeScripts(std::ostream& out) {
  out << "<script>" << page::kFleetScript.text << "</script>\n<script>" << page::kTableScript.text
      << "</script>\n";
}

}  // namespace

void writePage(const Answer& answer, std::ostream& out, const PageLimits& limits) {
  writeHead(out, answer);
  out << "<body class=\"fleet\">\n";
  page::writeVerdict(out, answer);
  out << "<main>\n";
  page::writeGroups(out, answer, limits);
  page::writeFailedTests(out, answer, limits);
  page::writeSlow(out, answer, limits);
  page::writeSilent(out, answer, limits);
  page::writeFleets(out, answer, limits);
  page::writeComplaints(out, answer, limits);
  page::writeMachines(out, answer, limits);
  out << "</main>\n<footer>Made by diags fleet. Times are UTC. This page needs nothing but "
         "itself.</footer>\n";
  writeScripts(out);
  out << "</body>\n</html>\n";
}

}  // namespace fleet
