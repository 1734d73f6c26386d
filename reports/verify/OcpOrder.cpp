#include "reports/verify/OcpOrder.h"

#include <utility>

#include "reports/common/Excerpt.h"

namespace reports {
namespace {

using Json = nlohmann::json;

const Json& memberOf(const Json& object, const char* name) {
  static const Json none;
  if (!object.is_object()) return none;
  const auto found = object.find(name);
  return found == object.end() ? none : *found;
}

const std::string* textOf(const Json& object, const char* name) {
  const Json& member = memberOf(object, name);
  return member.is_string() ? member.get_ptr<const std::string*>() : nullptr;
}

bool has(const Json& object, const char* name) { return !memberOf(object, name).is_null(); }

bool isText(const Json& object, const char* name, const char* text) {
  const std::string* const found = textOf(object, name);
  return found != nullptr && *found == text;
}

std::string idText(const std::string& id) { return "\"" + excerpt(id) + "\""; }

/// Whether it is that number; what is no number is told by others.
bool isCount(const Json& value, std::uint64_t count) {
  return !value.is_number() || value.get<double>() == static_cast<double>(count);
}

/// A series is known in its step alone. No step's identifier is the beginning of this one.
std::string seriesKey(const std::string& step, const std::string& series) {
  return std::to_string(step.size()) + ":" + step + series;
}

}  // namespace

OcpOrder::OcpOrder(TellRule tell) : m_tell(std::move(tell)) {}

void OcpOrder::take(const Json& line) {
  if (m_hasEnded) m_tell(Rule::kOrder, "the line stands behind the run's end");
  if (has(line, "schemaVersion")) return takeVersion();
  if (!m_hasVersion) m_tell(Rule::kOrder, "the schema version does not come first");
  m_hasVersion = true;  // told once
  const Json& ofRun = memberOf(line, "testRunArtifact");
  const Json& ofStep = memberOf(line, "testStepArtifact");
  if (ofRun.is_object()) takeOfRun(ofRun);
  if (ofStep.is_object()) takeOfStep(ofStep);
}

void OcpOrder::takeVersion() {
  if (m_hasVersion) m_tell(Rule::kOrder, "the schema version comes again");
  m_hasVersion = true;
}

/// The run may say that it cannot begin.
void OcpOrder::takeOfRun(const Json& artifact) {
  if (has(artifact, "testRunStart")) start(memberOf(artifact, "testRunStart"));
  if (has(artifact, "testRunEnd")) endRun(memberOf(artifact, "testRunEnd"));
  if (has(artifact, "error")) takeReferences(memberOf(artifact, "error"));
}

void OcpOrder::start(const Json& start) {
  if (m_hasStarted) m_tell(Rule::kOrder, "the run starts again");
  m_hasStarted = true;
  const Json& device = memberOf(start, "dutInfo");
  learn(device, "hardwareInfos", "hardwareInfoId", m_hardware);
  learn(device, "softwareInfos", "softwareInfoId", m_software);
}

void OcpOrder::learn(const Json& device, const char* list, const char* idName,
                     std::set<std::string>& known) {
  const Json& infos = memberOf(device, list);
  if (!infos.is_array()) return;
  for (const Json& info : infos) {
    const std::string* const id = textOf(info, idName);
    if (id == nullptr || known.insert(*id).second) continue;
    m_tell(Rule::kUnique, std::string("the ") + idName + " " + idText(*id) + " is given twice");
  }
}

void OcpOrder::endRun(const Json& end) {
  if (!m_hasStarted) m_tell(Rule::kOrder, "the run ends before its start");
  const std::string* const status = textOf(end, "status");
  const std::string* const result = textOf(end, "result");
  if (status != nullptr && result != nullptr) {
    const bool isResult = *result == "PASS" || *result == "FAIL";
    if (isResult != (*status == "COMPLETE")) {
      m_tell(Rule::kPair, "a run with the status " + idText(*status) + " cannot have the result " +
                              idText(*result));
    }
  }
  tellOpenSteps();
  m_hasEnded = true;
}

void OcpOrder::takeOfStep(const Json& artifact) {
  if (!m_hasStarted) m_tell(Rule::kOrder, "a step comes before the run's start");
  const std::string* const step = textOf(artifact, "testStepId");
  if (step == nullptr) return;
  if (has(artifact, "testStepStart")) return startStep(*step);
  const auto open = m_open.find(*step);
  if (open == m_open.end()) {
    const bool isOver = m_steps.count(*step) != 0;
    const char* const what = isOver ? " has ended before" : " has not been started";
    return m_tell(Rule::kUnknown, "the step " + idText(*step) + what);
  }
  startSeries(open->second, *step, memberOf(artifact, "measurementSeriesStart"));
  takeElement(open->second, memberOf(artifact, "measurementSeriesElement"));
  endSeries(open->second, memberOf(artifact, "measurementSeriesEnd"));
  for (const char* kind : {"measurement", "measurementSeriesStart", "diagnosis", "error"}) {
    takeReferences(memberOf(artifact, kind));
  }
  if (isText(memberOf(artifact, "diagnosis"), "type", "FAIL")) m_hasFailure = true;
  if (has(artifact, "testStepEnd")) endStep(*step);
}

void OcpOrder::startStep(const std::string& step) {
  if (!m_steps.insert(step).second) {
    m_tell(Rule::kUnique, "the testStepId " + idText(step) + " is given twice");
  }
  m_open[step];
}

void OcpOrder::endStep(const std::string& step) {
  const auto open = m_open.find(step);
  for (const auto& series : open->second) {
    m_tell(Rule::kOpen, "the step " + idText(step) + " ends, and its series " +
                            idText(series.first) + " does not");
  }
  // Behind the step's end nothing can be of a series of it.
  const std::string first = seriesKey(step, "");
  auto series = m_series.lower_bound(first);
  while (series != m_series.end() && series->compare(0, first.size(), first) == 0) {
    series = m_series.erase(series);
  }
  m_open.erase(open);
}

void OcpOrder::startSeries(OpenSeries& open, const std::string& step, const Json& start) {
  const std::string* const id = textOf(start, "measurementSeriesId");
  if (id == nullptr) return;
  if (!m_series.insert(seriesKey(step, *id)).second) {
    m_tell(Rule::kUnique, "the measurementSeriesId " + idText(*id) + " is given twice");
  }
  open[*id] = 0;
}

void OcpOrder::takeElement(OpenSeries& open, const Json& element) {
  const std::string* const id = textOf(element, "measurementSeriesId");
  if (id == nullptr) return;
  const auto series = open.find(*id);
  if (series == open.end()) {
    return m_tell(Rule::kUnknown, "the series " + idText(*id) + " is not open");
  }
  if (!isCount(memberOf(element, "index"), series->second)) {
    m_tell(Rule::kSeries, "the element of the series " + idText(*id) + " has not the index " +
                              std::to_string(series->second));
  }
  ++series->second;
}

void OcpOrder::endSeries(OpenSeries& open, const Json& end) {
  const std::string* const id = textOf(end, "measurementSeriesId");
  if (id == nullptr) return;
  const auto series = open.find(*id);
  if (series == open.end()) {
    return m_tell(Rule::kUnknown, "the series " + idText(*id) + " is not open");
  }
  if (!isCount(memberOf(end, "totalCount"), series->second)) {
    m_tell(Rule::kSeries, "the series " + idText(*id) + " has " + std::to_string(series->second) +
                              " elements, and its end says something else");
  }
  open.erase(series);
}

void OcpOrder::takeReferences(const Json& content) {
  requireKnown(memberOf(content, "hardwareInfoId"), "hardwareInfoId", m_hardware);
  const Json& software = memberOf(content, "softwareInfoIds");
  if (!software.is_array()) return;
  for (const Json& id : software) requireKnown(id, "softwareInfoId", m_software);
}

/// Before the run's start, there is nothing to be known.
void OcpOrder::requireKnown(const Json& id, const char* what, const std::set<std::string>& known) {
  if (!m_hasStarted || !id.is_string()) return;
  const auto& text = id.get_ref<const std::string&>();
  if (known.count(text) != 0) return;
  m_tell(Rule::kUnknown, std::string("the run's start has no ") + what + " " + idText(text));
}

void OcpOrder::tellOpenSteps() {
  for (const auto& step : m_open) {
    m_tell(Rule::kOpen, "the step " + idText(step.first) + " has no end");
  }
}

void OcpOrder::end() {
  if (m_hasEnded) return;
  if (!m_hasStarted) m_tell(Rule::kOrder, "the run has no start");
  tellOpenSteps();
  m_tell(Rule::kOpen, "the run has no end");
}

}  // namespace reports
