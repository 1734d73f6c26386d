#include "reports/verify/OcpShapes.h"

namespace reports {
namespace {

constexpr bool kRequired = true;

Field text(const char* name, bool isRequired = false) {
  return {name, ValueKind::kText, isRequired};
}
Field required(const char* name, ValueKind kind) { return {name, kind, kRequired}; }
Field optional(const char* name, ValueKind kind) { return {name, kind}; }
Field word(const char* name, const Words& words, bool isRequired = kRequired) {
  return {name, ValueKind::kWord, isRequired, nullptr, &words};
}
Field inside(const char* name, const Shape& shape, bool isRequired = false) {
  return {name, ValueKind::kShape, isRequired, &shape};
}
Field listOf(const char* name, const Shape& shape) {
  return {name, ValueKind::kShapes, false, &shape};
}
Field choice(const char* name, const Shape& shape, ValueKind kind = ValueKind::kShape) {
  return {name, kind, false, &shape, nullptr, true};
}

struct Vocabulary {
  const Words statuses{"COMPLETE", "ERROR", "SKIP"};
  const Words results{"NOT_APPLICABLE", "PASS", "FAIL"};
  const Words severities{"INFO", "DEBUG", "WARNING", "ERROR", "FATAL"};
  const Words verdictTypes{"PASS", "FAIL", "UNKNOWN"};
  const Words softwareTypes{"UNSPECIFIED", "FIRMWARE", "SYSTEM", "APPLICATION"};
  const Words subcomponentTypes{"UNSPECIFIED", "ASIC",     "ASIC-SUBSYSTEM",
                                "BUS",         "FUNCTION", "CONNECTOR"};
  const Words validatorTypes{"EQUAL",        "NOT_EQUAL",
                             "LESS_THAN",    "LESS_THAN_OR_EQUAL",
                             "GREATER_THAN", "GREATER_THAN_OR_EQUAL",
                             "REGEX_MATCH",  "REGEX_NO_MATCH",
                             "IN_SET",       "NOT_IN_SET"};
};

/// What artifacts share. An object comes after those that it contains.
struct Pieces : Vocabulary {
  const Shape location{{text("file", kRequired), required("line", ValueKind::kNumber)}};
  const Shape subcomponent{{word("type", subcomponentTypes, false), text("name", kRequired),
                            text("location"), text("version"), text("revision")}};
  const Shape validator{{text("name"), word("type", validatorTypes),
                         required("value", ValueKind::kScalar),
                         optional("metadata", ValueKind::kObject)}};
  const Shape platform{{text("info", kRequired)}};
  const Shape software{{text("name", kRequired), text("version"), text("revision"),
                        word("softwareType", softwareTypes, false),
                        text("softwareInfoId", kRequired), text("computerSystem")}};
  const Shape hardware{{text("name", kRequired), text("version"), text("revision"),
                        text("location"), text("hardwareInfoId", kRequired), text("serialNumber"),
                        text("partNumber"), text("partType"), text("manufacturer"),
                        text("manufacturerPartNumber"), text("odataId"), text("computerSystem"),
                        text("manager")}};
  const Shape device{{text("dutInfoId", kRequired), text("name"), listOf("platformInfos", platform),
                      listOf("softwareInfos", software), listOf("hardwareInfos", hardware),
                      optional("metadata", ValueKind::kObject)}};
  const Shape log{{word("severity", severities), text("message", kRequired),
                   inside("sourceLocation", location)}};
  const Shape error{{text("symptom", kRequired), text("message"),
                     optional("softwareInfoIds", ValueKind::kTexts),
                     inside("sourceLocation", location)}};
};

struct RunArtifacts : Pieces {
  const Shape start{{text("name", kRequired), text("version", kRequired),
                     text("commandLine", kRequired), required("parameters", ValueKind::kObject),
                     inside("dutInfo", device, kRequired),
                     optional("metadata", ValueKind::kObject)}};
  const Shape end{{word("status", statuses), word("result", results)}};
  const Shape runArtifact{{choice("testRunStart", start), choice("testRunEnd", end),
                           choice("log", log), choice("error", error)}};
};

struct StepArtifacts : RunArtifacts {
  const Shape stepStart{{text("name", kRequired)}};
  const Shape stepEnd{{word("status", statuses)}};
  const Shape measurement{{text("name", kRequired), required("value", ValueKind::kScalar),
                           text("unit"), listOf("validators", validator), text("hardwareInfoId"),
                           inside("subcomponent", subcomponent),
                           optional("metadata", ValueKind::kObject)}};
  const Shape seriesStart{{text("name", kRequired), text("unit"),
                           text("measurementSeriesId", kRequired), listOf("validators", validator),
                           text("hardwareInfoId"), inside("subcomponent", subcomponent),
                           optional("metadata", ValueKind::kObject)}};
  const Shape seriesElement{{required("index", ValueKind::kCount),
                             required("value", ValueKind::kScalar), text("timestamp", kRequired),
                             text("measurementSeriesId", kRequired),
                             optional("metadata", ValueKind::kObject)}};
  const Shape seriesEnd{
      {text("measurementSeriesId", kRequired), required("totalCount", ValueKind::kCount)}};
  const Shape diagnosis{{text("verdict", kRequired), word("type", verdictTypes), text("message"),
                         text("hardwareInfoId"), inside("subcomponent", subcomponent),
                         inside("sourceLocation", location)}};
  const Shape file{{text("displayName", kRequired), text("uri", kRequired), text("description"),
                    text("contentType"), required("isSnapshot", ValueKind::kFlag),
                    optional("metadata", ValueKind::kObject)},
                   true};
  const Shape extension{{text("name", kRequired), required("content", ValueKind::kObject)}, true};
  const Shape stepArtifact{
      {text("testStepId", kRequired), choice("testStepStart", stepStart),
       choice("testStepEnd", stepEnd), choice("measurement", measurement),
       choice("measurementSeriesStart", seriesStart), choice("measurementSeriesEnd", seriesEnd),
       choice("measurementSeriesElement", seriesElement), choice("error", error),
       choice("log", log), choice("diagnosis", diagnosis), choice("file", file),
       choice("extension", extension)}};
};

struct Line : StepArtifacts {
  const Shape version{{required("major", ValueKind::kTwo), required("minor", ValueKind::kZero)},
                      true};
  const Shape line{{required("sequenceNumber", ValueKind::kCount), text("timestamp", kRequired),
                    choice("schemaVersion", version),
                    choice("testRunArtifact", runArtifact, ValueKind::kChoice),
                    choice("testStepArtifact", stepArtifact, ValueKind::kChoice)}};
};

}  // namespace

const Shape& ocpLineShape() {
  static const Line shapes;
  return shapes.line;
}

}  // namespace reports
