#include "reports/html/Intake.h"

#include <algorithm>
#include <initializer_list>
#include <string>
#include <vector>

namespace reports::html {
namespace {

/// Longer names say no more.
constexpr std::size_t kNameBytes = 300;

void cut(std::size_t bytes, std::initializer_list<std::string*> texts) {
  for (std::string* const text : texts) {
    if (text->size() > bytes) *text = shortened(*text, bytes);
  }
}

void cut(std::size_t bytes, std::size_t items, std::vector<std::string>& texts) {
  if (texts.size() > items) texts.resize(items);
  for (std::string& text : texts) cut(bytes, {&text});
}

std::size_t sizeOf(const std::vector<std::string>& texts) {
  std::size_t size = 0;
  for (const std::string& text : texts) size += sizeof(std::string) + text.size();
  return size;
}

void cutPart(engine::Part& part) {
  cut(kNameBytes, {&part.kind, &part.name, &part.location, &part.manufacturer, &part.model,
                   &part.version, &part.serial});
}

}  // namespace

engine::RunStarted shortened(engine::RunStarted run, const HtmlLimits& limits) {
  cut(kNameBytes, {&run.version, &run.host, &run.firmware});
  cut(limits.textBytes, limits.items, run.commandLine);
  run.parameters.resize(std::min(run.parameters.size(), limits.items));
  for (auto& [name, value] : run.parameters) cut(kNameBytes, {&name, &value});
  run.parts.resize(std::min(run.parts.size(), 2 * limits.items));
  for (engine::Part& part : run.parts) cutPart(part);
  return run;
}

engine::TestStarted shortened(engine::TestStarted test, const HtmlLimits&) {
  cut(kNameBytes, {&test.name, &test.service, &test.device, &test.element});
  return test;
}

engine::Message shortened(engine::Message message, const HtmlLimits& limits) {
  cut(limits.textBytes, {&message.text});
  cut(limits.textBytes, limits.items, message.actions);
  return message;
}

engine::Diagnosis shortened(engine::Diagnosis finding, const HtmlLimits& limits) {
  cut(limits.textBytes, {&finding.text});
  cut(kNameBytes, {&finding.part});
  cut(limits.textBytes, limits.items, finding.actions);
  return finding;
}

engine::Error shortened(engine::Error error, const HtmlLimits& limits) {
  cut(limits.textBytes, {&error.text});
  cut(kNameBytes, {&error.provider, &error.operation});
  cut(kNameBytes, limits.items, error.libraries);
  return error;
}

engine::Measurement shortened(engine::Measurement measurement, const HtmlLimits& limits) {
  cut(kNameBytes, {&measurement.name, &measurement.unit, &measurement.part});
  if (auto* const text = std::get_if<std::string>(&measurement.value)) {
    cut(limits.lineBytes, {text});
  }
  return measurement;
}

engine::Ended shortened(engine::Ended end, const HtmlLimits& limits) {
  cut(limits.textBytes, {&end.text, &end.brief, &end.remark});
  cut(limits.recordBytes, {&end.record});
  return end;
}

std::size_t bytesOf(const engine::TestStarted& test) {
  return sizeof(TestPicture) + test.name.size() + test.service.size() + test.device.size() +
         test.element.size();
}

std::size_t bytesOf(const Step& step) { return sizeof step + step.name.size(); }

std::size_t bytesOf(const engine::Message& message) {
  return sizeof message + message.text.size() + sizeOf(message.actions);
}

std::size_t bytesOf(const engine::Diagnosis& finding) {
  return sizeof finding + finding.text.size() + finding.part.size() + sizeOf(finding.actions);
}

std::size_t bytesOf(const engine::Error& error) {
  return sizeof error + error.text.size() + error.provider.size() + error.operation.size() +
         sizeOf(error.libraries);
}

std::size_t bytesOf(const Series& series) {
  return sizeof series + series.name().size() + series.part().size() + series.unit().size();
}

std::size_t bytesOf(const engine::Ended& end) {
  return end.text.size() + end.brief.size() + end.remark.size() + end.record.size();
}

}  // namespace reports::html
