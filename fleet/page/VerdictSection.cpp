#include <algorithm>
#include <ostream>

#include "fleet/page/Headline.h"
#include "fleet/page/Sections.h"
#include "fleet/page/Words.h"
#include "reports/html/Badge.h"
#include "reports/html/Figures.h"

namespace fleet::page {
namespace {

bool isBefore(const Machine& one, const Machine& other) { return one.began < other.began; }

void writeWhen(std::ostream& out, const Answer& answer) {
  out << "<p class=\"what\">Hardware diagnostics of a fleet \xC2\xB7 "
      << counted(answer.totals.streams, "stream");
  if (!answer.machines.empty()) {
    const auto [first, last] =
        std::minmax_element(answer.machines.begin(), answer.machines.end(), isBefore);
    out << " \xC2\xB7 " << reports::html::clockTime(first->began) << " to "
        << reports::html::clockTime(last->began) << " UTC";
  }
  out << "</p>\n";
}

std::uint64_t nowhere(const Answer& answer) {
  return static_cast<std::uint64_t>(
      std::count_if(answer.silent.begin(), answer.silent.end(),
                    [](const Silent& silent) { return silent.machine == kNowhere; }));
}

std::uint64_t machinesWith(const Answer& answer, Verdict verdict) {
  const auto count = static_cast<std::uint64_t>(
      std::count_if(answer.machines.begin(), answer.machines.end(),
                    [=](const Machine& machine) { return machine.verdict == verdict; }));
  return verdict == Verdict::kNone ? count + nowhere(answer) : count;
}

void writeCount(std::ostream& out, const char* style, std::uint64_t count, std::string word) {
  if (count == 0) return;
  word.front() = static_cast<char>(word.front() | 0x20);
  out << "<li class=\"" << style << "\">" << reports::html::mark(style) << "<span>"
      << thousands(count) << ' ' << word << "</span></li>";
}

std::uint64_t slowMachines(const Answer& answer) {
  std::vector<std::uint32_t> machines;
  for (const Slow& slow : answer.slow) machines.push_back(slow.machine);
  std::sort(machines.begin(), machines.end());
  return static_cast<std::uint64_t>(
      std::distance(machines.begin(), std::unique(machines.begin(), machines.end())));
}

void writeCounts(std::ostream& out, const Answer& answer) {
  out << "<ul class=\"counts\">";
  for (const Look& look : kLooks) {
    writeCount(out, look.style, machinesWith(answer, look.verdict), look.word);
  }
  writeCount(out, "warn", slowMachines(answer), "unlike their peers");
  out << "</ul>\n";
}

}  // namespace

void writeVerdict(std::ostream& out, const Answer& answer) {
  const Headline headline = headlineOf(answer);
  out << "<header class=\"verdict " << headline.style << "\"><div>\n";
  writeWhen(out, answer);
  out << "<div class=\"head\"><span class=\"sign\">" << reports::html::mark(headline.style)
      << "</span><h1>" << headline.text << "</h1></div>\n";
  if (!headline.lead.empty()) out << "<p class=\"lead\">" << headline.lead << "</p>\n";
  writeCounts(out, answer);
  out << "</div></header>\n";
}

void writeMore(std::ostream& out, std::size_t all, std::size_t shown) {
  if (all <= shown) return;
  out << "<p class=\"note\">" << thousands(all - shown) << " more are not shown here.</p>\n";
}

}  // namespace fleet::page
