#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "engine/events/EventLine.h"
#include "engine/events/EventNames.h"
#include "engine/events/Timestamp.h"
#include "text/SafeJson.h"

namespace engine {
namespace {

using Json = nlohmann::ordered_json;

/// What is empty is left out.
void add(Json& object, const char* name, const std::string& text) {
  if (!text.empty()) object[name] = text;
}
void add(Json& object, const char* name, const std::vector<std::string>& texts) {
  if (!texts.empty()) object[name] = texts;
}
void add(Json& object, const char* name, const std::optional<double>& number) {
  if (number && std::isfinite(*number)) object[name] = *number;
}

/// JSON has no numbers that are infinite or none; as text, they still show.
Json jsonOf(double number) {
  return std::isfinite(number) ? Json(number) : Json(std::to_string(number));
}
Json jsonOf(bool flag) { return Json(flag); }
Json jsonOf(const std::string& text) { return Json(text); }

/// A percentage or a duration.
double atLeastZero(double number) { return std::isfinite(number) && number > 0 ? number : 0; }

Json jsonOf(const Part& part) {
  Json json{{"kind", part.kind}, {"name", part.name}};
  add(json, "location", part.location);
  add(json, "manufacturer", part.manufacturer);
  add(json, "model", part.model);
  add(json, "version", part.version);
  add(json, "serial", part.serial);
  return json;
}

Json jsonOf(const RunStarted& run) {
  Json json{{"version", run.version}, {"commandLine", run.commandLine}};
  Json parameters = Json::object();
  for (const auto& parameter : run.parameters) parameters[parameter.first] = parameter.second;
  json["parameters"] = std::move(parameters);
  add(json, "host", run.host);
  add(json, "firmware", run.firmware);
  Json parts = Json::array();
  for (const Part& part : run.parts) parts.push_back(jsonOf(part));
  json["parts"] = std::move(parts);
  json["tests"] = run.tests;
  return json;
}

Json jsonOf(const TestStarted& test) {
  Json json{{"name", test.name},
            {"service", test.service},
            {"device", test.device},
            {"element", test.element},
            {"repetition", test.repetition}};
  if (atLeastZero(test.estimate) > 0) json["estimate"] = test.estimate;
  return json;
}

Json jsonOf(const StepStarted& step) { return Json{{"name", step.name}}; }

Json jsonOf(const Progress& progress) {
  return Json{{"percent", std::min(atLeastZero(progress.percent), 100.0)}};
}

Json jsonOf(const OutputLine& line) {
  Json json{{"stream", nameOf(line.stream)}, {"text", line.text}};
  if (line.isPart) json["part"] = true;
  return json;
}

Json jsonOf(const LogLine& line) { return Json{{"level", line.level}, {"text", line.text}}; }

Json jsonOf(const Message& message) {
  Json json{{"severity", nameOf(message.severity)}, {"text", message.text}};
  add(json, "actions", message.actions);
  return json;
}

Json jsonOf(const Measurement& measurement) {
  Json json{{"name", measurement.name}};
  std::visit([&](const auto& value) { json["value"] = jsonOf(value); }, measurement.value);
  add(json, "unit", measurement.unit);
  add(json, "minimum", measurement.minimum);
  add(json, "maximum", measurement.maximum);
  add(json, "part", measurement.part);
  return json;
}

Json jsonOf(const Diagnosis& diagnosis) {
  Json json{{"verdict", nameOf(diagnosis.verdict)}, {"text", diagnosis.text}};
  add(json, "part", diagnosis.part);
  add(json, "actions", diagnosis.actions);
  return json;
}

Json jsonOf(const Error& error) {
  Json json{{"cause", nameOf(error.cause)}, {"text", error.text}};
  if (error.code != 0) json["code"] = error.code;
  add(json, "provider", error.provider);
  add(json, "operation", error.operation);
  add(json, "libraries", error.libraries);
  if (error.processor) json["processor"] = *error.processor;
  return json;
}

Json jsonOf(const Ended& end) {
  Json json{{"outcome", nameOf(end.outcome)}};
  add(json, "text", end.text);
  json["seconds"] = atLeastZero(end.seconds);
  add(json, "brief", end.brief);
  add(json, "remark", end.remark);
  add(json, "record", end.record);
  return json;
}

}  // namespace

std::string lineOf(const Event& event) {
  Json json{{"sequence", event.sequence},
            {"time", timestampOf(event.time)},
            {"source", nameOf(event.source)}};
  if (event.test != 0) json["testId"] = event.test;
  std::visit([&](const auto& body) { json[kindOf(event.body)] = jsonOf(body); }, event.body);
  return text::safeJson(json.dump(-1, ' ', false, Json::error_handler_t::replace));
}

}  // namespace engine
