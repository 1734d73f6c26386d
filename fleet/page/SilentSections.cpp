#include <algorithm>
#include <ostream>

#include "fleet/page/Sections.h"
#include "fleet/page/Words.h"
#include "reports/html/Badge.h"

namespace fleet::page {
namespace {

void writeSilentRow(std::ostream& out, const Silent& silent, const PageLimits& limits) {
  out << "<tr><th scope=\"row\">" << htmlOf(silent.name, limits.nameBytes) << "</th><td>"
      << htmlOf(silent.why, limits.textBytes) << "</td><td>";
  if (silent.machine != kNowhere) out << counted(silent.answered, "test") << " ended";
  out << "</td></tr>\n";
}

void writeComplaint(std::ostream& out, const Complaint& complaint, const PageLimits& limits) {
  out << "<li>";
  reports::html::writeBadge(out, complaint.isLeftOut ? "warn" : "info",
                            complaint.isLeftOut ? "Left out" : "Note");
  out << "<span>";
  if (!complaint.file.empty()) {
    out << "<b>" << htmlOf(complaint.file, limits.textBytes);
    if (complaint.line > 0) out << ':' << complaint.line;
    out << "</b> ";
  }
  out << htmlOf(complaint.text, limits.textBytes) << "</span></li>\n";
}

/// Files that count for nothing stand before oddities.
std::vector<const Complaint*> inOrder(const Answer& answer) {
  std::vector<const Complaint*> complaints;
  for (const Complaint& complaint : answer.complaints) complaints.push_back(&complaint);
  std::stable_partition(complaints.begin(), complaints.end(),
                        [](const Complaint* complaint) { return complaint->isLeftOut; });
  return complaints;
}

void writeFleet(std::ostream& out, const Answer& answer, const Component& fleet,
                const PageLimits& limits) {
  out << "<li><span>" << counted(fleet.machines, "machine") << " with "
      << counted(fleet.tests, "test");
  if (fleet.example < answer.machines.size()) {
    out << ", such as <b>" << htmlOf(answer.machines[fleet.example].name, limits.nameBytes)
        << "</b>";
  }
  out << "</span></li>\n";
}

}  // namespace

void writeFleets(std::ostream& out, const Answer& answer, const PageLimits& limits) {
  if (answer.components.size() < 2) return;
  out << "<section id=\"fleets\"><h2>Several fleets</h2><ul class=\"card complaints\">\n";
  const std::size_t shown = std::min(answer.components.size(), limits.rows);
  for (std::size_t i = 0; i < shown; ++i) writeFleet(out, answer, answer.components[i], limits);
  out << "</ul>";
  writeMore(out, answer.components.size(), shown);
  out << "<p class=\"note\">Machines of one fleet have no test in common with those of another: "
         "are "
         "they meant to stand in one answer?</p></section>\n";
}

void writeSilent(std::ostream& out, const Answer& answer, const PageLimits& limits) {
  if (answer.silent.empty()) return;
  out << "<section id=\"silent\"><h2>Machines that did not answer</h2><div class=\"card\">"
         "<table class=\"plain\"><thead><tr><th scope=\"col\">Machine</th><th "
         "scope=\"col\">Why</th>"
         "<th scope=\"col\">What it said</th></tr></thead><tbody>\n";
  const std::size_t shown = std::min(answer.silent.size(), limits.rows);
  for (std::size_t i = 0; i < shown; ++i) writeSilentRow(out, answer.silent[i], limits);
  out << "</tbody></table></div>";
  writeMore(out, answer.silent.size(), shown);
  out << "</section>\n";
}

void writeComplaints(std::ostream& out, const Answer& answer, const PageLimits& limits) {
  if (answer.complaints.empty()) return;
  out << "<section id=\"streams\"><h2>Streams that were left out or odd</h2>"
         "<ul class=\"card complaints\">\n";
  const std::vector<const Complaint*> complaints = inOrder(answer);
  const std::size_t shown = std::min(complaints.size(), limits.rows);
  for (std::size_t i = 0; i < shown; ++i) writeComplaint(out, *complaints[i], limits);
  out << "</ul>";
  writeMore(out, complaints.size() + answer.moreComplaints, shown);
  out << "</section>\n";
}

}  // namespace fleet::page
