#include "reports/common/Describe.h"

#include <charconv>

#include "engine/events/EventNames.h"

namespace reports {
namespace {

std::string numberText(double number) {
  char digits[40];
  const std::to_chars_result end = std::to_chars(std::begin(digits), std::end(digits), number);
  return std::string(digits, end.ptr);
}

std::string valueText(const engine::MeasuredValue& value) {
  if (const auto* flag = std::get_if<bool>(&value)) return *flag ? "true" : "false";
  if (const auto* number = std::get_if<double>(&value)) return numberText(*number);
  return std::get<std::string>(value);
}

}  // namespace

std::string withActions(std::string text, const std::vector<std::string>& actions) {
  for (const std::string& action : actions) text += "\nRecommended: " + action;
  return text;
}

std::string describe(const engine::RunStarted& /*run*/) { return "A run began."; }

std::string describe(const engine::TestStarted& test) { return "Test: " + test.name; }

std::string describe(const engine::StepStarted& step) { return "Step: " + step.name; }

std::string describe(const engine::Progress& progress) {
  return "Progress: " + numberText(progress.percent) + " %";
}

std::string describe(const engine::OutputLine& line) {
  return (line.stream == engine::Stream::kError ? "[stderr] " : "[stdout] ") + line.text;
}

std::string describe(const engine::LogLine& line) { return line.text; }

std::string describe(const engine::Message& message) {
  return withActions(message.text, message.actions);
}

std::string describe(const engine::Measurement& measurement) {
  std::string text = measurement.name + " = " + valueText(measurement.value);
  if (!measurement.unit.empty()) text += " " + measurement.unit;
  if (measurement.minimum) text += ", at least " + numberText(*measurement.minimum);
  if (measurement.maximum) text += ", at most " + numberText(*measurement.maximum);
  return measurement.part.empty() ? text : measurement.part + ": " + text;
}

std::string describe(const engine::Diagnosis& diagnosis) {
  std::string text = engine::nameOf(diagnosis.verdict);
  if (!diagnosis.part.empty()) text += ": " + diagnosis.part;
  return withActions(diagnosis.text.empty() ? text : text + ": " + diagnosis.text,
                     diagnosis.actions);
}

std::string describe(const engine::Error& error) {
  std::string text = error.text;
  if (error.code != 0) text += "\nCode: " + std::to_string(error.code);
  if (!error.provider.empty()) text += "\nProvider: " + error.provider;
  if (!error.operation.empty()) text += "\nOperation: " + error.operation;
  for (const std::string& library : error.libraries) text += "\nLibrary: " + library;
  return text;
}

std::string describe(const engine::Ended& end) {
  std::string text = end.text.empty() ? engine::nameOf(end.outcome) : end.text;
  if (!end.remark.empty()) text += ": " + end.remark;
  return text;
}

std::string describe(const engine::Body& body) {
  return std::visit([](const auto& what) { return describe(what); }, body);
}

}  // namespace reports
