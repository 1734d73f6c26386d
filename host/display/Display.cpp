#include "host/display/Display.h"

#include <algorithm>
#include <limits>
#include <ostream>
#include <stdexcept>
#include <utility>

#include "text/Columns.h"
#include "text/SafeText.h"

namespace host {
namespace {

const std::string kMargin = "  ";

/// Nobody sees more.
constexpr auto kBetweenRedraws = std::chrono::milliseconds(100);
/// Plain lines stay where they are written.
constexpr auto kBetweenPercentages = std::chrono::seconds(1);

/// No test has it.
constexpr std::uint64_t kNothing = std::numeric_limits<std::uint64_t>::max();
/// More of a name does not fit onto any terminal.
constexpr std::size_t kNameBytes = 4000;

const std::string kDash = " - ";

/// The text in lines that are not wider than the columns, each behind the margin.
std::string wrappedBehind(const std::string& margin, const std::string& text, std::size_t columns) {
  std::string lines;
  for (const std::string& line : text::wrapped(text, columns - margin.size())) {
    lines += (lines.empty() ? "" : "\n") + margin + line;
  }
  return lines;
}

const char* colourOf(engine::Outcome outcome) {
  switch (outcome) {
    case engine::Outcome::kPassed:
      return "\x1b[32m";
    case engine::Outcome::kFailed:
      return "\x1b[1;31m";
    case engine::Outcome::kSkipped:
      return "\x1b[2m";
    default:
      return "\x1b[33m";
  }
}

bool isWorthTelling(const engine::Diagnosis& finding) {
  return finding.verdict == engine::Verdict::kFail || finding.verdict == engine::Verdict::kWarning;
}

double seconds(DisplayStyle::Clock::duration time) {
  return std::chrono::duration<double>(time).count();
}

/// What the engine itself has to say of the run: that a time was up, or a provider dawdled.
const engine::Message* warningIn(const engine::Event& event) {
  const auto* const message = std::get_if<engine::Message>(&event.body);
  const bool isWarning = message != nullptr && message->severity != engine::Severity::kInfo;
  return isWarning && event.source == engine::Source::kEngine ? message : nullptr;
}

}  // namespace

Display::Display(std::ostream& out, std::ostream& err, DisplayStyle style)
    : m_out(out), m_err(err), m_style(std::move(style)), m_live(out), m_drawn(m_style.now()) {
  if (m_style.detail == Detail::kQuiet) m_style.redraws = false;
}

Display::~Display() {
  m_live.leave();
  m_out.flush();
}

void Display::take(const engine::Event& event) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  const auto running = m_running.find(event.test);
  if (const auto* const test = std::get_if<engine::TestStarted>(&event.body)) {
    begin(event, *test);
  } else if (const auto* const done = std::get_if<engine::Progress>(&event.body)) {
    if (running != m_running.end()) progress(running->second, event.test, *done);
  } else if (const auto* const ended = std::get_if<engine::Ended>(&event.body)) {
    end(event, *ended);
  } else if (const auto* const error = std::get_if<engine::Error>(&event.body)) {
    tellError(event.test, errorText(*error));
  } else if (const auto* const warning = warningIn(event)) {
    const auto& told = m_style.told;
    if (std::find(told.begin(), told.end(), warning->text) != told.end()) return;
    tellError(event.test, warning->text);
  } else if (const auto* const finding = std::get_if<engine::Diagnosis>(&event.body)) {
    tellFinding(event.test, *finding);
  } else if (m_style.detail == Detail::kVerbose) {
    tellDetail(event.test, detailText(event.body));
  }
}

void Display::tick() {
  const std::lock_guard<std::mutex> lock(m_mutex);
  if (m_style.redraws && !m_running.empty()) redraw();
}

void Display::begin(const engine::Event& event, const engine::TestStarted& test) {
  Running running;
  // Drawn anew again and again, a name is not made safe at its whole length each time.
  running.test = {m_style.redraws ? test.name.substr(0, kNameBytes) : test.name, 0, test.estimate,
                  0};
  running.test.toVerdict = m_style.toVerdict;
  running.start = running.toldAt = m_style.now();
  m_running.insert_or_assign(event.test, std::move(running));
  if (m_style.redraws) {
    redraw();
  } else if (m_style.detail != Detail::kQuiet) {
    announce(event.test);
    checkOutput();
  }
}

void Display::progress(Running& running, std::uint64_t number, const engine::Progress& progress) {
  running.test.percent = progress.percent;
  running.test.percentAt = seconds(m_style.now() - running.start);
  if (m_style.redraws) return redrawIfDue();
  if (m_style.detail == Detail::kQuiet || m_announced != number) return;
  const int percent = static_cast<int>(std::clamp(progress.percent, 0.0, 100.0));
  const Moment now = m_style.now();
  const bool isDue =
      running.toldPercent < 0 || percent == 100 || now - running.toldAt >= kBetweenPercentages;
  if (percent == running.toldPercent || !isDue) return;
  running.toldPercent = percent;
  running.toldAt = now;
  printLine("Percent Complete: " + std::to_string(percent) + "%");
  checkOutput();
}

void Display::end(const engine::Event& event, const engine::Ended& end) {
  if (event.test == 0) return endOfRun();
  m_summary.add(end.outcome);
  const auto running = m_running.find(event.test);
  if (running == m_running.end()) return;
  const bool isTold = m_style.detail != Detail::kQuiet || end.outcome != engine::Outcome::kPassed;
  m_live.clear();
  if (isTold) tellVerdict(event.test, running->second, end);
  m_running.erase(running);
  if (m_style.redraws) redraw();
  checkOutput();
}

void Display::endOfRun() {
  m_live.clear();
  m_running.clear();
  if (m_summary.total() > 1 || m_style.detail == Detail::kQuiet) printLine(m_summary.text());
  checkOutput();
}

void Display::tellVerdict(std::uint64_t number, const Running& running, const engine::Ended& end) {
  if (m_style.redraws) {
    m_out << finishedLine(running, end) << '\n';
    m_announced = kNothing;
  } else {
    announce(number);
    const std::string text = text::visible(verdictText(end, m_style.level));
    m_out << "Verdict: " << coloured(text, end.outcome) << '\n';
  }
  if (m_style.level == Level::kExtended && !end.record.empty()) {
    m_out << kMargin << text::setApart(end.record, kMargin) << '\n';
  }
}

void Display::tellFinding(std::uint64_t number, const engine::Diagnosis& finding) {
  if (m_style.detail == Detail::kQuiet) return;
  if (m_style.detail == Detail::kVerbose || isWorthTelling(finding)) {
    tellDetail(number, findingText(finding));
  }
}

void Display::tellDetail(std::uint64_t number, const std::string& text) {
  if (text.empty()) return;
  m_live.clear();
  announce(number);
  m_out << kMargin << text::setApart(text, kMargin + kMargin) << '\n';
  if (m_style.redraws) redrawIfDue();
  checkOutput();
}

void Display::tellError(std::uint64_t number, const std::string& error) {
  m_live.clear();
  m_out.flush();
  const std::string& name = nameOf(number);
  m_err << text::visible("diags: " + (name.empty() ? name : name + ": ") + error) << '\n'
        << std::flush;
  if (m_style.redraws) redraw();
  checkOutput();
}

std::string Display::finishedLine(const Running& running, const engine::Ended& end) const {
  const std::string verdict = text::visible(verdictText(end, m_style.level));
  const std::size_t dash = std::min(verdict.find(kDash), verdict.size());
  const std::string word = verdict.substr(0, dash);
  const std::string rest = verdict.substr(std::min(dash + kDash.size(), verdict.size()));
  const std::string took = "  " + clockText(end.seconds);
  const std::size_t follow = 2 + text::columnsOf(word) + took.size();
  if (columns() < kShortestName + follow) {
    return wrappedBehind("", text::visible(running.test.name) + ": " + verdict, columns());
  }
  const std::string name = nameColumn(running.test.name, columns(), follow);
  const std::string line = name + "  " + coloured(word, end.outcome) + took;
  if (rest.empty()) return line;
  const std::size_t taken = text::columnsOf(name) + follow + kMargin.size();
  if (taken + text::columnsOf(rest) <= columns()) return line + kMargin + rest;
  return line + "\n" + wrappedBehind(kMargin, rest, columns());
}

std::string Display::coloured(const std::string& text, engine::Outcome outcome) const {
  return m_style.colours ? colourOf(outcome) + text + "\x1b[0m" : text;
}

/// The last one stays free: many terminals go on to the next line with it.
std::size_t Display::columns() const { return std::max(m_style.size().columns, 2U) - 1; }

const std::string& Display::nameOf(std::uint64_t number) const {
  static const std::string none;
  const auto running = m_running.find(number);
  return running == m_running.end() ? none : running->second.test.name;
}

void Display::announce(std::uint64_t number) {
  if (m_announced == number) return;
  m_announced = number;
  printLine(number == 0 ? "The run:" : "Test: " + nameOf(number));
}

void Display::printLine(const std::string& line) { m_out << text::visible(line) << '\n'; }

void Display::redraw() {
  m_drawn = m_style.now();
  const ScreenSize size = m_style.size();
  const std::size_t room = std::max(size.rows, 3U) - 1;
  std::vector<std::string> lines;
  for (auto& [number, running] : m_running) {
    if (lines.size() + 1 == room && m_running.size() > room) {
      lines.push_back(text::fitted(
          "... and " + std::to_string(m_running.size() - lines.size()) + " more", columns()));
      break;
    }
    running.test.elapsed = seconds(m_drawn - running.start);
    lines.push_back(runningLine(running.test, columns()));
  }
  m_live.show(lines);
  checkOutput();
}

void Display::redrawIfDue() {
  if (m_style.now() - m_drawn >= kBetweenRedraws) redraw();
}

void Display::checkOutput() {
  m_out.flush();
  if (!m_out) throw std::runtime_error("standard output cannot be written");
}

}  // namespace host
