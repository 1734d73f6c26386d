#include <nlohmann/json.hpp>

#include "engine/events/EventNames.h"
#include "engine/events/Timestamp.h"
#include "history/show/Tables.h"
#include "text/SafeJson.h"

namespace history {
namespace {

using Json = nlohmann::ordered_json;

std::string written(const Json& json) {
  return text::safeJson(json.dump(-1, ' ', false, Json::error_handler_t::replace));
}

const char* nameOf(RunState state) {
  switch (state) {
    case RunState::kEnded:
      return "ended";
    case RunState::kRunning:
      return "running";
    case RunState::kCutOff:
      return "cutOff";
  }
  return "";
}

void add(Json& json, const char* name, const std::string& text) {
  if (!text.empty()) json[name] = text;
}

void add(Json& json, const char* name, const std::optional<engine::Outcome>& outcome) {
  if (outcome) json[name] = engine::nameOf(*outcome);
}

void add(Json& json, const char* name, const std::optional<double>& number) {
  if (number) json[name] = *number;
}

Json valueOf(const RunRecord& run);
Json valueOf(const MeasurementDifference& difference);
Json valueOf(const TestDifference& difference);
Json valueOf(const TrendPoint& point);
Json valueOf(const Trend& trend);

template <typename Records>
Json listOf(const Records& records) {
  Json list = Json::array();
  for (const auto& record : records) list.push_back(valueOf(record));
  return list;
}

Json valueOf(const RunRecord& run) {
  Json json{{"id", run.id}, {"state", nameOf(run.state)}};
  json["started"] = engine::timestampOf(run.started);
  if (run.ended) json["ended"] = engine::timestampOf(*run.ended);
  add(json, "outcome", run.outcome);
  add(json, "host", run.host);
  add(json, "version", run.version);
  add(json, "commandLine", run.command);
  json["tests"] = Json{{"passed", run.tests.passed},
                       {"warned", run.tests.warned},
                       {"failed", run.tests.failed},
                       {"unfinished", run.tests.unfinished},
                       {"skipped", run.tests.skipped}};
  json["bytes"] = run.bytes;
  json["leftOut"] = run.leftOut;
  return json;
}

Json valueOf(const TestVerdict& verdict) {
  Json json{{"repetitions", verdict.repetitions}};
  add(json, "outcome", verdict.worst);
  return json;
}

Json valueOf(const Measured& measured) {
  Json json{{"times", measured.times}};
  add(json, "mean", measured.mean);
  add(json, "text", measured.text);
  return json;
}

/// Both sides of a difference, where they are.
template <typename Side>
void addSides(Json& json, const Side& before, const Side& after) {
  if (before) json["before"] = valueOf(*before);
  if (after) json["after"] = valueOf(*after);
}

Json valueOf(const MeasurementDifference& difference) {
  Json json{{"name", difference.name}};
  add(json, "part", difference.part);
  add(json, "unit", difference.unit);
  json["changed"] = !difference.isSame();
  addSides(json, difference.before, difference.after);
  return json;
}

Json valueOf(const TestDifference& difference) {
  Json json{{"name", difference.name}, {"changed", !difference.isSame()}};
  addSides(json, difference.before, difference.after);
  json["measurements"] = listOf(difference.measurements);
  return json;
}

Json valueOf(const TrendPoint& point) {
  return Json{{"run", point.run},     {"started", engine::timestampOf(point.started)},
              {"times", point.times}, {"mean", point.mean},
              {"least", point.least}, {"greatest", point.greatest}};
}

Json valueOf(const Trend& trend) {
  Json json{{"test", trend.test}, {"name", trend.name}};
  add(json, "part", trend.part);
  add(json, "unit", trend.unit);
  add(json, "minimum", trend.minimum);
  add(json, "maximum", trend.maximum);
  json["points"] = listOf(trend.points);
  return json;
}

}  // namespace

std::string jsonOf(const std::vector<RunRecord>& runs) { return written(listOf(runs)); }

std::string jsonOf(const Difference& difference) {
  Json json;
  json["before"] = valueOf(difference.before);
  json["after"] = valueOf(difference.after);
  json["tests"] = listOf(difference.tests);
  return written(json);
}

std::string jsonOf(const std::vector<Trend>& trends) { return written(listOf(trends)); }

}  // namespace history
