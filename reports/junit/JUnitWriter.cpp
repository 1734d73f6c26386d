#include "reports/junit/JUnitWriter.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <utility>

#include "engine/events/EventNames.h"
#include "engine/events/Timestamp.h"
#include "reports/common/Describe.h"

namespace reports {
namespace {

using engine::Outcome;

/// With a dot, wherever it runs, and at most as many digits as a dashboard reads.
std::string secondsText(double seconds) {
  constexpr double kMost = 1e12;
  const double value = std::isfinite(seconds) ? std::clamp(seconds, 0.0, kMost) : 0;
  char digits[40];
  const std::to_chars_result end =
      std::to_chars(std::begin(digits), std::end(digits), value, std::chars_format::fixed, 3);
  return std::string(digits, end.ptr);
}

/// Dashboards take no zone and no fraction; it is UTC.
std::string suiteTime(engine::Time time) {
  constexpr std::size_t kUpToSeconds = 19;
  return engine::timestampOf(time).substr(0, kUpToSeconds);
}

std::string property(const std::string& name, const std::string& value) {
  return "<property" + xmlAttribute("name", name) + xmlAttribute("value", value) + "/>\n";
}

std::string partText(const engine::Part& part) {
  std::string text = part.name;
  const auto add = [&](const char* what, const std::string& value) {
    if (!value.empty()) text += std::string(", ") + what + " " + value;
  };
  add("location", part.location);
  add("manufacturer", part.manufacturer);
  add("model", part.model);
  add("version", part.version);
  add("serial number", part.serial);
  return text;
}

std::string output(const char* element, const LongText& text) {
  if (text.isEmpty()) return "";
  const std::string name = element;
  return "<" + name + ">" + xmlText(text.text()) + "</" + name + ">\n";
}

constexpr std::size_t kMostFindings = 16 * 1024;
/// Where outputs are left out from then on. It is kept in memory, and dashboards refuse such ones.
constexpr std::size_t kLargeDocument = 64 * 1024 * 1024;

void addFinding(std::string& findings, const std::string& text) {
  if (findings.size() > kMostFindings) return;
  findings.append(text, 0, kMostFindings);
  findings += '\n';
}

}  // namespace

/// Called with what happened in a case.
class JUnitWriter::Collecting {
 public:
  explicit Collecting(Case& one) : m_case(one) {}

  void operator()(const engine::RunStarted&) const {}
  void operator()(const engine::TestStarted&) const {}
  void operator()(const engine::Progress&) const {}
  void operator()(const engine::Ended&) const {}
  void operator()(const engine::StepStarted& step) const { m_case.output.addLine(describe(step)); }
  void operator()(const engine::Measurement& measurement) const {
    m_case.output.addLine(describe(measurement));
  }
  void operator()(const engine::OutputLine& line) const {
    (line.stream == engine::Stream::kError ? m_case.errors : m_case.output).addLine(line.text);
  }
  void operator()(const engine::LogLine& line) const { m_case.errors.addLine(line.text); }
  void operator()(const engine::Message& message) const {
    const std::string text = describe(message);
    m_case.output.addLine(text);
    if (message.severity != engine::Severity::kInfo) addFinding(m_case.findings, text);
  }
  void operator()(const engine::Diagnosis& diagnosis) const {
    const std::string text = describe(diagnosis);
    m_case.output.addLine(text);
    if (diagnosis.verdict != engine::Verdict::kPass) addFinding(m_case.findings, text);
  }
  void operator()(const engine::Error& error) const {
    const std::string text = describe(error);
    m_case.errors.addLine(text);
    m_case.errorType = engine::nameOf(error.cause);
    m_case.errorText = error.text;
    addFinding(m_case.findings, text);
  }

 private:
  Case& m_case;
};

JUnitWriter::JUnitWriter(std::ostream& out, std::string file) : m_lines(out, std::move(file)) {}

void JUnitWriter::take(const engine::Event& event) {
  if (m_hasEnded) return;
  if (!std::exchange(m_hasBegun, true)) m_began = event.time;
  if (const auto* const run = std::get_if<engine::RunStarted>(&event.body)) m_run = *run;
  const auto* const end = std::get_if<engine::Ended>(&event.body);
  const bool isOfRun = event.test == 0 || m_ended.has(event.test);
  if (isOfRun) {
    if (end != nullptr && event.test == 0) return endRun(*end);
    return std::visit(Collecting(m_runItself), event.body);
  }
  Case& one = m_open[event.test];
  if (const auto* const test = std::get_if<engine::TestStarted>(&event.body)) one.test = *test;
  if (end != nullptr) return endCase(event.test, *end);
  std::visit(Collecting(one), event.body);
}

std::string JUnitWriter::uniqueName(const Case& one) {
  std::string name = one.test.name.empty() ? "test" : one.test.name;
  if (one.test.repetition > 1) {
    name += " (repetition " + std::to_string(one.test.repetition) + ")";
  }
  std::string unique = name;
  for (std::uint64_t count = 2; !m_names.insert(one.test.service + '\0' + unique).second; ++count) {
    unique = name + " [" + std::to_string(count) + "]";
  }
  return unique;
}

std::string JUnitWriter::verdictElement(const Case& one, const engine::Ended& end) {
  const std::string message = xmlAttribute("message", describe(end));
  const std::string text = xmlText(one.findings + end.record);
  switch (end.outcome) {
    case Outcome::kPassed:
    case Outcome::kWarned:
      return "";
    case Outcome::kFailed:
      ++m_counts.failures;
      return "<failure" + message + " type=\"fail\">" + text + "</failure>\n";
    case Outcome::kSkipped:
      ++m_counts.skipped;
      return "<skipped" + message + "/>\n";
    case Outcome::kAborted:
    case Outcome::kIncomplete:
    case Outcome::kBroken:
      break;
  }
  ++m_counts.errors;
  // Where the end itself does not say why, the error does.
  const bool isTold = !end.text.empty() || one.errorText.empty();
  const std::string why = xmlAttribute("message", isTold ? describe(end) : one.errorText);
  const std::string type = one.errorType.empty() ? engine::nameOf(end.outcome) : one.errorType;
  return "<error" + why + xmlAttribute("type", type) + ">" + text + "</error>\n";
}

std::string JUnitWriter::outputsOf(const Case& one) const {
  if (m_size > kLargeDocument) {
    return "<system-out>[left out: the document is very large]</system-out>\n";
  }
  return output("system-out", one.output) + output("system-err", one.errors);
}

void JUnitWriter::endCase(std::uint64_t test, const engine::Ended& end) {
  Case& one = m_open[test];
  const std::string className = one.test.service.empty() ? "diags" : one.test.service;
  std::string element = "<testcase" + xmlAttribute("name", uniqueName(one));
  element += xmlAttribute("classname", className);
  element += xmlAttribute("time", secondsText(end.seconds)) + ">\n";
  element += verdictElement(one, end);
  if (end.outcome == Outcome::kPassed || end.outcome == Outcome::kWarned) {
    one.output.addLine(describe(end));
    one.output.addLine(end.record);
  }
  element += outputsOf(one) + "</testcase>\n";
  m_size += element.size();
  ++m_counts.tests;
  m_done.emplace(test, std::move(element));
  m_open.erase(test);
  m_ended.add(test);
}

std::string JUnitWriter::properties() const {
  std::string text = "<properties>\n" + property("version", m_run.version);
  std::string command;
  for (const std::string& word : m_run.commandLine) command += (command.empty() ? "" : " ") + word;
  text += property("commandLine", command);
  if (!m_run.firmware.empty()) text += property("firmware", m_run.firmware);
  for (const auto& [name, value] : m_run.parameters) text += property("parameter." + name, value);
  for (const engine::Part& part : m_run.parts) text += property(part.kind, partText(part));
  return text + "</properties>\n";
}

std::string JUnitWriter::suiteAttributes(double seconds) const {
  return xmlAttribute("name", "diags") + xmlAttribute("tests", std::to_string(m_counts.tests)) +
         xmlAttribute("failures", std::to_string(m_counts.failures)) +
         xmlAttribute("errors", std::to_string(m_counts.errors)) +
         xmlAttribute("skipped", std::to_string(m_counts.skipped)) +
         xmlAttribute("time", secondsText(seconds));
}

/// A dashboard looks at cases alone. A run that came to no end and has none that says so gets one
/// of its own, behind all others.
void JUnitWriter::tellUnfinished(const engine::Ended& end) {
  const bool isFinished = end.outcome == Outcome::kPassed || end.outcome == Outcome::kWarned ||
                          end.outcome == Outcome::kFailed || end.outcome == Outcome::kSkipped;
  if (isFinished || m_counts.errors > 0 || m_counts.failures > 0) return;
  constexpr std::uint64_t kBehindAll = std::numeric_limits<std::uint64_t>::max();
  Case& one = m_open[kBehindAll];
  one.test.name = "the run as a whole";
  one.errorType = m_runItself.errorType;
  one.errorText = m_runItself.errorText;
  one.findings = m_runItself.findings;
  endCase(kBehindAll, engine::Ended{end.outcome, end.text, 0, "", "", ""});
}

void JUnitWriter::endRun(const engine::Ended& end) {
  while (!m_open.empty()) {
    endCase(m_open.begin()->first,
            engine::Ended{Outcome::kBroken, "The run ended before the test did.", 0, "", "", ""});
  }
  tellUnfinished(end);
  const std::string attributes = suiteAttributes(end.seconds);
  m_lines.writeAll("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites" + attributes +
                   ">\n<testsuite" + attributes + xmlAttribute("timestamp", suiteTime(m_began)) +
                   xmlAttribute("hostname", m_run.host.empty() ? "unknown" : m_run.host) + ">\n" +
                   properties());
  for (const auto& [test, element] : m_done) m_lines.writeAll(element);
  m_lines.writeAll(output("system-out", m_runItself.output) +
                   output("system-err", m_runItself.errors) + "</testsuite>\n</testsuites>\n");
  m_hasEnded = true;
}

}  // namespace reports
