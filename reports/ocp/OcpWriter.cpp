#include "reports/ocp/OcpWriter.h"

#include <cmath>
#include <utility>

#include "engine/events/EventNames.h"
#include "engine/events/Timestamp.h"
#include "reports/common/Describe.h"
#include "reports/ocp/OcpWords.h"
#include "text/Utf8.h"

namespace reports {
namespace {

using engine::Outcome;
using engine::Verdict;

unsigned bitOf(Verdict verdict) { return 1U << static_cast<unsigned>(verdict); }

/// As JSON names: clean, and each once; the last value counts.
std::map<std::string, std::string> parametersOf(const engine::RunStarted& run) {
  std::map<std::string, std::string> parameters;
  for (const auto& [name, value] : run.parameters) parameters[text::asUtf8(name)] = value;
  return parameters;
}

void addLimit(text::JsonText& json, const char* name, const char* type,
              std::optional<double> limit) {
  if (!limit || !std::isfinite(*limit)) return;
  json.object().add("name", name).add("type", type).add("value", *limit).endObject();
}

void addLimits(text::JsonText& json, const engine::Measurement& measurement) {
  if (!std::holds_alternative<double>(measurement.value)) return;
  json.list("validators");
  addLimit(json, "minimum", "GREATER_THAN_OR_EQUAL", measurement.minimum);
  addLimit(json, "maximum", "LESS_THAN_OR_EQUAL", measurement.maximum);
  json.endList();
}

void addEnd(text::JsonText& json, const engine::Ended& end) {
  json.add("name", "end").object("content").add("outcome", engine::nameOf(end.outcome));
  json.addIfAny("text", end.text).add("seconds", end.seconds).addIfAny("brief", end.brief);
  json.addIfAny("remark", end.remark).addIfAny("record", end.record).endObject();
}

void addTest(text::JsonText& json, const engine::TestStarted& test) {
  json.add("name", "test").object("content").add("service", test.service);
  json.add("device", test.device).add("element", test.element);
  json.add("repetition", test.repetition);
  if (test.estimate > 0) json.add("estimate", test.estimate);
  json.endObject();
}

/// The verdict about the machine that a test's end is, if it is one.
std::optional<Verdict> verdictOf(Outcome outcome) {
  if (outcome == Outcome::kPassed) return Verdict::kPass;
  if (outcome == Outcome::kWarned) return Verdict::kWarning;
  if (outcome == Outcome::kFailed) return Verdict::kFail;
  return std::nullopt;
}

bool isUnfinished(Outcome outcome) {
  return outcome == Outcome::kAborted || outcome == Outcome::kIncomplete ||
         outcome == Outcome::kBroken;
}

}  // namespace

/// Called with what happened in a test; what begins and ends is not its matter.
class OcpWriter::Writing {
 public:
  Writing(OcpWriter& writer, Step& step) : m_writer(writer), m_step(step) {}

  template <typename Other>
  void operator()(const Other& what) const {
    m_writer.log(&m_step, "INFO", describe(what));
  }
  void operator()(const engine::LogLine& line) const {
    m_writer.log(&m_step, severityOf(line), line.text);
  }
  void operator()(const engine::Message& message) const {
    m_writer.log(&m_step, severityOf(message), describe(message));
  }
  void operator()(const engine::Progress& progress) const {
    m_writer.write(&m_step, "extension", [&](text::JsonText& json) {
      json.add("name", "progress").object("content").add("percent", progress.percent).endObject();
    });
  }
  void operator()(const engine::Measurement& measurement) const {
    m_writer.write(&m_step, "measurement", [&](text::JsonText& json) {
      json.add("name", measurement.name);
      std::visit([&](const auto& value) { json.add("value", value); }, measurement.value);
      json.addIfAny("unit", measurement.unit);
      addLimits(json, measurement);
      m_writer.m_device.refer(json, measurement.part);
    });
  }
  void operator()(const engine::Diagnosis& diagnosis) const {
    m_step.verdicts |= bitOf(diagnosis.verdict);
    m_writer.write(&m_step, "diagnosis", [&](text::JsonText& json) {
      json.add("verdict", reports::verdictOf(m_step.label, diagnosis.verdict));
      json.add("type", typeOf(diagnosis.verdict));
      json.addIfAny("message", withActions(diagnosis.text, diagnosis.actions));
      m_writer.m_device.refer(json, diagnosis.part);
    });
  }
  /// Trouble behind a verdict does not take it back.
  void operator()(const engine::Error& error) const {
    const std::string symptom = engine::nameOf(error.cause);
    if (m_step.verdicts != 0) {
      m_step.symptom = symptom;
      return m_writer.log(&m_step, "ERROR", describe(error));
    }
    m_step.hasError = true;
    m_writer.error(&m_step, symptom, describe(error));
  }

 private:
  OcpWriter& m_writer;
  Step& m_step;
};

OcpWriter::OcpWriter(std::ostream& out, std::string file) : m_lines(out, std::move(file)) {}

template <typename Fill>
void OcpWriter::write(const Step* step, const char* artifact, const Fill& fill) {
  OcpLine line(m_sequence, m_timestamp);
  fill(step != nullptr ? line.ofStep(step->id, artifact) : line.ofRun(artifact));
  m_lines.write(line.finish());
  ++m_sequence;
}

void OcpWriter::log(const Step* step, const char* severity, const std::string& text) {
  write(step, "log",
        [&](text::JsonText& json) { json.add("severity", severity).add("message", text); });
}

void OcpWriter::error(const Step* step, const std::string& symptom, const std::string& text) {
  write(step, "error",
        [&](text::JsonText& json) { json.add("symptom", symptom).addIfAny("message", text); });
}

void OcpWriter::begin(const engine::RunStarted& run) {
  m_hasBegun = true;
  m_lines.write(OcpLine::schemaVersion(m_timestamp));
  m_sequence = 1;
  write(nullptr, "testRunStart", [&](text::JsonText& json) {
    json.add("name", "diags").add("version", run.version);
    json.add("commandLine", shellWords(run.commandLine)).object("parameters");
    for (const auto& [name, value] : parametersOf(run)) json.add(name, value);
    json.endObject();
    m_device.describe(json, run);
    json.object("metadata").add("tests", run.tests).endObject();
  });
}

OcpWriter::Step& OcpWriter::begin(std::uint64_t test, const engine::TestStarted& start) {
  Step& step = m_open[test];
  step.id = std::to_string(test);
  step.label = labelOf(start.service);
  const std::string name = start.name.empty() ? "test " + step.id : start.name;
  const std::string repetition =
      start.repetition > 1 ? " (repetition " + std::to_string(start.repetition) + ")" : "";
  write(&step, "testStepStart", [&](text::JsonText& json) { json.add("name", name + repetition); });
  write(&step, "extension", [&](text::JsonText& json) { addTest(json, start); });
  return step;
}

void OcpWriter::take(const engine::Event& event) {
  m_timestamp = engine::timestampOf(event.time);
  if (m_hasEnded) return;
  if (!m_hasBegun) {
    const auto* const run = std::get_if<engine::RunStarted>(&event.body);
    begin(run != nullptr ? *run : engine::RunStarted{});
    if (run != nullptr) return;
  }
  if (event.test == 0) return takeOfRun(event);
  takeOfTest(event);
}

void OcpWriter::takeOfRun(const engine::Event& event) {
  if (const auto* const end = std::get_if<engine::Ended>(&event.body)) return endRun(*end);
  if (const auto* const failure = std::get_if<engine::Error>(&event.body)) {
    return error(nullptr, engine::nameOf(failure->cause), describe(*failure));
  }
  const auto* const line = std::get_if<engine::LogLine>(&event.body);
  const auto* const message = std::get_if<engine::Message>(&event.body);
  const char* const severity = line != nullptr      ? severityOf(*line)
                               : message != nullptr ? severityOf(*message)
                                                    : "INFO";
  log(nullptr, severity, describe(event.body));
}

void OcpWriter::takeOfTest(const engine::Event& event) {
  if (m_ended.has(event.test)) return log(nullptr, "INFO", describe(event.body));
  auto open = m_open.find(event.test);
  if (open == m_open.end()) {
    const auto* const start = std::get_if<engine::TestStarted>(&event.body);
    begin(event.test, start != nullptr ? *start : engine::TestStarted{});
    if (start != nullptr) return;
    open = m_open.find(event.test);
  }
  if (const auto* const end = std::get_if<engine::Ended>(&event.body)) {
    return endTest(event.test, *end);
  }
  std::visit(Writing(*this, open->second), event.body);
}

void OcpWriter::endTest(std::uint64_t test, const engine::Ended& end) {
  Step& step = m_open.at(test);
  const std::optional<Verdict> verdict = verdictOf(end.outcome);
  if (verdict && (step.verdicts & bitOf(*verdict)) == 0) {
    Writing(*this, step)(engine::Diagnosis{*verdict, describe(end), "", {}});
  }
  if (isUnfinished(end.outcome) && !step.hasError) {
    error(&step, step.symptom.empty() ? engine::nameOf(end.outcome) : step.symptom, describe(end));
  }
  write(&step, "extension", [&](text::JsonText& json) { addEnd(json, end); });
  write(&step, "testStepEnd",
        [&](text::JsonText& json) { json.add("status", endOf(end.outcome).status); });
  m_open.erase(test);
  m_ended.add(test);
}

void OcpWriter::endRun(const engine::Ended& end) {
  while (!m_open.empty()) {
    endTest(m_open.begin()->first,
            engine::Ended{Outcome::kBroken, "The run ended before the test did.", 0, "", "", ""});
  }
  if (!end.text.empty()) log(nullptr, "INFO", describe(end));
  write(nullptr, "testRunEnd", [&](text::JsonText& json) {
    json.add("status", endOf(end.outcome).status).add("result", endOf(end.outcome).result);
  });
  m_hasEnded = true;
}

}  // namespace reports
