#include <algorithm>
#include <ostream>

#include "fleet/page/PageData.h"
#include "fleet/page/Sections.h"
#include "fleet/page/Words.h"
#include "reports/html/Badge.h"

namespace fleet::page {
namespace {

bool hasNoGoodVerdict(const Machine& machine) {
  return machine.verdict == Verdict::kFailed || machine.verdict == Verdict::kUnfinished;
}

/// The first ones that failed, then those that did not end.
std::vector<std::uint32_t> toBeRead(const Answer& answer) {
  std::vector<std::uint32_t> machines;
  for (std::uint32_t i = 0; i < answer.machines.size(); ++i) {
    if (hasNoGoodVerdict(answer.machines[i])) machines.push_back(i);
  }
  std::stable_partition(machines.begin(), machines.end(), [&](std::uint32_t machine) {
    return answer.machines[machine].verdict == Verdict::kFailed;
  });
  return machines;
}

bool isOfEarlierMachine(const Finding& finding, std::uint32_t machine) {
  return finding.machine < machine;
}

void writeFinding(std::ostream& out, const Answer& answer, const Finding& finding,
                  const PageLimits& limits) {
  out << "<p>"
      << htmlOf(joined({testName(answer, finding.test), finding.part, finding.text}),
                limits.textBytes)
      << "</p>";
}

void writeMachine(std::ostream& out, const Answer& answer, std::uint32_t number,
                  const PageLimits& limits) {
  constexpr std::size_t kMostFindings = 3;
  const Machine& machine = answer.machines[number];
  const Look& look = lookOf(machine.verdict);
  out << "<li><div class=\"top\"><b>" << htmlOf(machine.name, limits.nameBytes) << "</b>";
  reports::html::writeBadge(out, look.style, look.word);
  out << "</div>";
  auto finding =
      std::lower_bound(answer.findings.begin(), answer.findings.end(), number, isOfEarlierMachine);
  for (std::size_t i = 0;
       i < kMostFindings && finding != answer.findings.end() && finding->machine == number;
       ++i, ++finding) {
    writeFinding(out, answer, *finding, limits);
  }
  out << "</li>\n";
}

/// For those whose browser runs no script, and for machines that read the page.
void writeText(std::ostream& out, const Answer& answer, const PageLimits& limits) {
  const std::vector<std::uint32_t> machines = toBeRead(answer);
  if (machines.empty()) {
    out << "<p class=\"note\">No machine failed. The table of all machines is drawn by a "
           "script.</p>\n";
    return;
  }
  out << "<ul class=\"card failed\">\n";
  const std::size_t shown = std::min(machines.size(), limits.rows);
  for (std::size_t i = 0; i < shown; ++i) writeMachine(out, answer, machines[i], limits);
  out << "</ul>";
  writeMore(out, machines.size(), shown);
  out << "<p class=\"note\">The table of all machines is drawn by a script.</p>\n";
}

/// From which the script takes its signs.
void writeMarks(std::ostream& out) {
  out << "<template id=\"marks\">";
  for (const char* const style : {"pass", "warn", "fail", "open", "info"}) {
    out << "<b class=\"" << style << "\">" << reports::html::mark(style) << "</b>";
  }
  out << "</template>\n";
}

}  // namespace

void writeMachines(std::ostream& out, const Answer& answer, const PageLimits& limits) {
  out << "<section id=\"machines\"><h2>Machines and tests</h2><div id=\"matrix\">\n";
  writeText(out, answer, limits);
  out << "</div></section>\n";
  writeMarks(out);
  out << "<script type=\"application/json\" id=\"data\">";
  writeData(out, answer, limits);
  out << "</script>\n";
}

}  // namespace fleet::page
