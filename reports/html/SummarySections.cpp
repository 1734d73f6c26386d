#include <algorithm>
#include <initializer_list>
#include <ostream>
#include <string>
#include <vector>

#include "reports/html/Badge.h"
#include "reports/html/Escape.h"
#include "reports/html/Figures.h"
#include "reports/html/Headline.h"
#include "reports/html/Sections.h"
#include "reports/html/Words.h"

namespace reports::html {
namespace {

constexpr engine::Outcome kOutcomes[] = {engine::Outcome::kFailed,     engine::Outcome::kBroken,
                                         engine::Outcome::kIncomplete, engine::Outcome::kAborted,
                                         engine::Outcome::kWarned,     engine::Outcome::kPassed,
                                         engine::Outcome::kSkipped};

void writeWhen(std::ostream& out, const RunPicture& run) {
  out << "<p class=\"what\">Hardware diagnostics";
  if (run.start() && !run.start()->host.empty()) out << " of " << escaped(run.start()->host);
  out << " \xC2\xB7 " << clockTime(run.from()) << " UTC \xC2\xB7 "
      << duration(secondsBetween(run.from(), run.last())) << "</p>\n";
}

void writeCounts(std::ostream& out, const RunPicture& run) {
  out << "<ul class=\"counts\">";
  for (const engine::Outcome outcome : kOutcomes) {
    const std::uint64_t count = run.ended(outcome);
    if (count == 0) continue;
    const Look look = lookOf(outcome);
    std::string word = look.word;
    word.front() = static_cast<char>(word.front() | 0x20);
    out << "<li class=\"" << look.style << "\">" << mark(look.style) << "<span>" << count << ' '
        << word << "</span></li>";
  }
  out << "</ul>\n";
}

/// Something to be done, and what asks for it.
struct Action {
  std::string text;
  std::string reason;
  std::uint64_t test = 0;
};

void collect(std::vector<Action>& actions, const TestPicture& test,
             const std::vector<std::string>& texts, const std::string& part) {
  for (const std::string& text : texts) {
    const auto isSame = [&](const Action& action) { return action.text == text; };
    if (std::any_of(actions.begin(), actions.end(), isSame)) continue;
    const std::string service = serviceOf(test.test);
    actions.push_back({text, part.empty() ? service : part + " \xC2\xB7 " + service, test.number});
  }
}

std::vector<Action> actionsOf(const RunPicture& run) {
  std::vector<Action> actions;
  for (const auto& [number, test] : run.tests()) {
    if (test.end && test.end->outcome == engine::Outcome::kPassed) continue;
    for (const engine::Diagnosis& finding : test.findings) {
      if (finding.verdict != engine::Verdict::kPass) {
        collect(actions, test, finding.actions, finding.part);
      }
    }
    for (const engine::Message& message : test.messages) {
      collect(actions, test, message.actions, {});
    }
  }
  return actions;
}

/// The worst that was found about the part with this name.
const char* styleOf(const RunPicture& run, const std::string& part) {
  const char* style = "";
  if (part.empty()) return style;
  for (const auto& [number, test] : run.tests()) {
    for (const engine::Diagnosis& finding : test.findings) {
      if (finding.part != part) continue;
      if (finding.verdict == engine::Verdict::kFail) return "fail";
      if (finding.verdict == engine::Verdict::kWarning) style = "warn";
    }
  }
  return style;
}

/// What there is of them, with dots between.
std::string joined(std::initializer_list<std::string> texts) {
  std::string all;
  for (const std::string& text : texts) {
    if (text.empty()) continue;
    all += (all.empty() ? "" : " \xC2\xB7 ") + text;
  }
  return all;
}

void writePart(std::ostream& out, const std::string& kind, const std::string& name,
               const std::string& facts, const std::string& serial, const std::string& style) {
  out << "<div class=\"card part " << style << "\"><div class=\"top\"><h3>" << escaped(name)
      << "</h3>";
  if (style == "fail") {
    writeBadge(out, "fail", "Faulty");
  } else if (style == "warn") {
    writeBadge(out, "warn", "Warning");
  } else {
    out << "<span class=\"kind\">" << escaped(kind) << "</span>";
  }
  out << "</div>";
  if (!facts.empty()) out << "<p>" << escaped(facts) << "</p>";
  if (!serial.empty()) {
    out << "<p><span class=\"soft\">Serial</span> " << escaped(serial) << "</p>";
  }
  out << "</div>\n";
}

void writePart(std::ostream& out, const RunPicture& run, const engine::Part& part) {
  writePart(out, part.kind, part.name,
            joined({part.location, part.manufacturer, part.model, part.version}), part.serial,
            styleOf(run, part.name));
}

/// Of more parts, only those that matter are seen at once.
constexpr std::size_t kMostParts = 16;

bool isFirst(const RunPicture& run, const engine::Part& part) {
  return part.kind == "system" || *styleOf(run, part.name) != '\0';
}

}  // namespace

void writeVerdict(std::ostream& out, const RunPicture& run) {
  const Headline headline = headlineOf(run);
  out << "<header class=\"verdict " << headline.style << "\"><div>\n";
  writeWhen(out, run);
  out << "<div class=\"head\"><span class=\"sign\">" << mark(headline.style) << "</span><h1>"
      << headline.text << "</h1></div>\n";
  if (!headline.lead.empty()) out << "<p class=\"lead\">" << headline.lead << "</p>\n";
  writeCounts(out, run);
  out << "</div></header>\n";
}

void writeActions(std::ostream& out, const RunPicture& run) {
  constexpr std::size_t kMost = 20;
  const std::vector<Action> actions = actionsOf(run);
  if (actions.empty()) return;
  out << "<section id=\"actions\"><h2>What to do</h2><ol class=\"card actions\">\n";
  for (std::size_t i = 0; i < std::min(actions.size(), kMost); ++i) {
    out << "<li><span class=\"n\">" << i + 1 << "</span><div><p>" << escaped(actions[i].text)
        << "</p><p><a href=\"#t" << actions[i].test << "\">" << escaped(actions[i].reason)
        << "</a></p></div></li>\n";
  }
  out << "</ol>";
  if (actions.size() > kMost) {
    out << "<p class=\"note\">" << actions.size() - kMost << " more stand with their tests.</p>";
  }
  out << "</section>\n";
}

void writeMachine(std::ostream& out, const RunPicture& run) {
  if (!run.start()) return;
  const engine::RunStarted& start = *run.start();
  if (start.host.empty() && start.firmware.empty() && start.parts.empty()) return;
  out << "<section id=\"machine\"><h2>The machine</h2><div class=\"machine\">\n";
  if (!start.host.empty() || !start.firmware.empty()) {
    writePart(out, "host", start.host.empty() ? "This machine" : start.host,
              start.firmware.empty() ? std::string() : "Firmware " + start.firmware, {}, {});
  }
  const bool areMany = start.parts.size() > kMostParts;
  for (const engine::Part& part : start.parts) {
    if (!areMany || isFirst(run, part)) writePart(out, run, part);
  }
  out << "</div>";
  if (areMany) {
    out << "<details class=\"fold\"><summary>The other parts</summary><div class=\"machine\">";
    for (const engine::Part& part : start.parts) {
      if (!isFirst(run, part)) writePart(out, run, part);
    }
    out << "</div></details>";
  }
  out << "</section>\n";
}

}  // namespace reports::html
