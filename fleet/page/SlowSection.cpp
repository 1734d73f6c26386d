#include <algorithm>
#include <cmath>
#include <ostream>

#include "fleet/page/PeersPlot.h"
#include "fleet/page/Sections.h"
#include "fleet/page/Words.h"
#include "reports/html/Escape.h"
#include "reports/html/Figures.h"

namespace fleet::page {
namespace {

/// Leads to the machine's row, opened.
void writeMachine(std::ostream& out, const Answer& answer, std::uint32_t machine,
                  const PageLimits& limits) {
  if (machine >= answer.machines.size()) return;
  const std::string name = seen(answer.machines[machine].name, limits.nameBytes);
  out << "<a href=\"" << address("open", name) << reports::html::escaped("&")
      << address("machine", name).substr(1) << "\">" << reports::html::escaped(name) << "</a>";
}

void writeWhere(std::ostream& out, const Answer& answer, const Slow& slow,
                const PageLimits& limits) {
  const std::string serial = slow.serial.empty() ? "" : "serial " + slow.serial;
  out << "<span class=\"of\">"
      << htmlOf(joined({testName(answer, slow.test), slow.device, slow.model, serial}),
                2 * limits.nameBytes)
      << "</span>";
}

void writeValue(std::ostream& out, const Slow& slow, const PageLimits& limits) {
  out << "<td class=\"value\">" << htmlOf(slow.measurement, limits.nameBytes)
      << "<span class=\"of\">" << htmlOf(besidePeers(slow), limits.textBytes) << "; "
      << reports::html::figure(std::round(slow.score * 10) / 10) << " deviations off";
  if (slow.measurements > 1) out << " together";
  if (slow.unlike == Unlike::kDifferent) out << "; better or worse is not known";
  out << "</span></td>";
}

void writeRow(std::ostream& out, const Answer& answer, const Slow& slow, const PageLimits& limits) {
  out << "<tr><td>";
  writeMachine(out, answer, slow.machine, limits);
  writeWhere(out, answer, slow, limits);
  out << "</td><td class=\"picture\">" << peersPlot(slow) << "</td>";
  writeValue(out, slow, limits);
  out << "</tr>\n";
}

}  // namespace

void writeSlow(std::ostream& out, const Answer& answer, const PageLimits& limits) {
  if (answer.slow.empty()) return;
  out << "<section id=\"slow\"><h2>Slow beside their peers, or unlike them</h2><div "
         "class=\"card\"><table>"
         "<thead><tr><th scope=\"col\">Machine and part</th><th scope=\"col\" class=\"picture\">"
         "Among its peers</th><th scope=\"col\" class=\"value\">Measurement</th></tr></thead>"
         "<tbody>\n";
  const std::size_t shown = std::min(answer.slow.size(), limits.rows);
  for (std::size_t i = 0; i < shown; ++i) writeRow(out, answer, answer.slow[i], limits);
  out << "</tbody></table></div>";
  writeMore(out, answer.slow.size(), shown);
  out << "</section>\n";
}

}  // namespace fleet::page
