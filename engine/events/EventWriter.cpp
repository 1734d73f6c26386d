#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "engine/events/EventLine.h"
#include "engine/events/EventNames.h"
#include "engine/events/Timestamp.h"
#include "text/JsonText.h"

namespace engine {
namespace {

using text::JsonText;

/// As most lines are, with room for a longer text.
constexpr std::size_t kUsualLength = 256;

/// A percentage or a duration.
double atLeastZero(double number) { return std::isfinite(number) && number > 0 ? number : 0; }

/// With a fraction always, so that a reader sees a real number in it.
void addReal(JsonText& json, const char* name, double number) {
  constexpr double kExact = 1e15;  // from here on with an exponent
  if (std::abs(number) < kExact && std::trunc(number) == number && !std::signbit(number)) {
    json.addNumeral(name, std::to_string(static_cast<std::int64_t>(number)) + ".0");
  } else {
    json.addNumeral(name, nlohmann::json(number).dump());
  }
}

void addIfAny(JsonText& json, const char* name, const std::optional<double>& number) {
  if (number && std::isfinite(*number)) addReal(json, name, *number);
}

void addTexts(JsonText& json, const char* name, const std::vector<std::string>& texts) {
  json.list(name);
  for (const std::string& text : texts) json.add({}, text);
  json.endList();
}
void addIfAny(JsonText& json, const char* name, const std::vector<std::string>& texts) {
  if (!texts.empty()) addTexts(json, name, texts);
}

/// JSON has no numbers that are infinite or none; as text, they still show.
void addValue(JsonText& json, double number) {
  if (std::isfinite(number)) {
    addReal(json, "value", number);
  } else {
    json.add("value", std::to_string(number));
  }
}
void addValue(JsonText& json, bool flag) { json.add("value", flag); }
void addValue(JsonText& json, const std::string& text) { json.add("value", text); }

void addParameters(JsonText& json,
                   const std::vector<std::pair<std::string, std::string>>& parameters) {
  // Of a name that is there twice, the first place and the last value.
  const auto isNamed = [](const std::string& name) {
    return [&name](const auto& parameter) { return parameter.first == name; };
  };
  json.object("parameters");
  for (auto one = parameters.begin(); one != parameters.end(); ++one) {
    if (std::any_of(parameters.begin(), one, isNamed(one->first))) continue;
    const auto last = std::find_if(parameters.rbegin(), parameters.rend(), isNamed(one->first));
    json.add(one->first, last->second);
  }
  json.endObject();
}

void addPart(JsonText& json, const Part& part) {
  json.object().add("kind", part.kind).add("name", part.name);
  json.addIfAny("location", part.location).addIfAny("manufacturer", part.manufacturer);
  json.addIfAny("model", part.model).addIfAny("version", part.version);
  json.addIfAny("serial", part.serial).endObject();
}

void add(JsonText& json, const RunStarted& run) {
  json.add("version", run.version);
  addTexts(json, "commandLine", run.commandLine);
  addParameters(json, run.parameters);
  json.addIfAny("host", run.host).addIfAny("firmware", run.firmware).list("parts");
  for (const Part& part : run.parts) addPart(json, part);
  json.endList().add("tests", run.tests);
}

void add(JsonText& json, const TestStarted& test) {
  json.add("name", test.name).add("service", test.service).add("device", test.device);
  json.add("element", test.element).add("repetition", test.repetition);
  if (atLeastZero(test.estimate) > 0) addReal(json, "estimate", test.estimate);
}

void add(JsonText& json, const StepStarted& step) { json.add("name", step.name); }

void add(JsonText& json, const Progress& progress) {
  addReal(json, "percent", std::min(atLeastZero(progress.percent), 100.0));
}

void add(JsonText& json, const OutputLine& line) {
  json.add("stream", nameOf(line.stream)).add("text", line.text);
  if (line.isPart) json.add("part", true);
}

void add(JsonText& json, const LogLine& line) {
  json.add("level", std::int64_t{line.level}).add("text", line.text);
}

void add(JsonText& json, const Message& message) {
  json.add("severity", nameOf(message.severity)).add("text", message.text);
  addIfAny(json, "actions", message.actions);
}

void add(JsonText& json, const Measurement& measurement) {
  json.add("name", measurement.name);
  std::visit([&](const auto& value) { addValue(json, value); }, measurement.value);
  json.addIfAny("unit", measurement.unit);
  addIfAny(json, "minimum", measurement.minimum);
  addIfAny(json, "maximum", measurement.maximum);
  json.addIfAny("part", measurement.part);
}

void add(JsonText& json, const Diagnosis& diagnosis) {
  json.add("verdict", nameOf(diagnosis.verdict)).add("text", diagnosis.text);
  json.addIfAny("part", diagnosis.part);
  addIfAny(json, "actions", diagnosis.actions);
}

void add(JsonText& json, const Error& error) {
  json.add("cause", nameOf(error.cause)).add("text", error.text);
  if (error.code != 0) json.add("code", error.code);
  json.addIfAny("provider", error.provider).addIfAny("operation", error.operation);
  addIfAny(json, "libraries", error.libraries);
  if (error.processor) json.add("processor", *error.processor);
}

void add(JsonText& json, const Ended& end) {
  json.add("outcome", nameOf(end.outcome)).addIfAny("text", end.text);
  addReal(json, "seconds", atLeastZero(end.seconds));
  json.addIfAny("brief", end.brief).addIfAny("remark", end.remark).addIfAny("record", end.record);
}

}  // namespace

std::string lineOf(const Event& event) {
  JsonText json(kUsualLength);
  json.object().add("sequence", event.sequence).add("time", timestampOf(event.time));
  json.add("source", nameOf(event.source));
  if (event.test != 0) json.add("testId", event.test);
  json.object(kindOf(event.body));
  std::visit([&](const auto& body) { add(json, body); }, event.body);
  return json.endObject().endObject().take();
}

}  // namespace engine
