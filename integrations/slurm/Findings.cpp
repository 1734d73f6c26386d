#include "integrations/slurm/Findings.h"

#include <cmath>
#include <nlohmann/json.hpp>
#include <utility>

namespace slurm {
namespace {

using Json = nlohmann::json;

/// Empty where there is no such text.
std::string textAt(const Json& object, const char* name) {
  const auto member = object.find(name);
  return member != object.end() && member->is_string() ? member->get<std::string>() : "";
}

std::uint64_t countAt(const Json& object, const char* name) {
  constexpr double kMost = 1e15;
  const auto member = object.find(name);
  if (member == object.end() || !member->is_number()) return 0;
  const double number = member->get<double>();
  return number >= 1 && number < kMost ? static_cast<std::uint64_t>(number) : 0;
}

Diagnosis diagnosisFrom(const Json& body, bool isOfLimit) {
  Diagnosis diagnosis;
  diagnosis.isFailure = textAt(body, "verdict") == "fail";
  diagnosis.isOfLimit = isOfLimit;
  diagnosis.text = textAt(body, "text");
  diagnosis.part = textAt(body, "part");
  const auto actions = body.find("actions");
  if (actions == body.end() || !actions->is_array()) return diagnosis;
  for (const Json& action : *actions)
    if (action.is_string()) diagnosis.actions.push_back(action.get<std::string>());
  return diagnosis;
}

bool isBad(const Json& body) {
  const std::string verdict = textAt(body, "verdict");
  return verdict == "fail" || verdict == "warning";
}

}  // namespace

struct Findings::Reader {
  Findings& findings;
  const Json& event;

  void begin(const Json& body) const {
    Finding finding;
    finding.service = textAt(body, "service");
    finding.device = textAt(body, "device");
    finding.element = textAt(body, "element");
    findings.m_running[test()] = std::move(finding);
  }

  void measure(const Json& body) const {
    const auto finding = findings.m_running.find(test());
    if (finding == findings.m_running.end() || textAt(body, "name") != "Errors") return;
    finding->second.errors += countAt(body, "value");
  }

  void diagnose(const Json& body) const {
    const auto finding = findings.m_running.find(test());
    if (finding == findings.m_running.end() || !isBad(body)) return;
    finding->second.diagnoses.push_back(diagnosisFrom(body, textAt(event, "source") == "engine"));
  }

  void end(const Json& body) const {
    if (event.find("testId") == event.end()) {
      findings.m_isWhole = true;
      return;
    }
    auto finding = findings.m_running.extract(test());
    const std::string outcome = textAt(body, "outcome");
    if (outcome == "passed") ++findings.m_passed;
    if (outcome == "aborted" || outcome == "skipped") ++findings.m_cut;
    if (outcome == "incomplete" || outcome == "broken") ++findings.m_undecided;
    if (finding.empty() || (outcome != "failed" && outcome != "warned")) return;
    finding.mapped().isFailure = outcome == "failed";
    finding.mapped().remark = textAt(body, "remark");
    finding.mapped().record = textAt(body, "record");
    findings.m_ended.push_back(std::move(finding.mapped()));
  }

  void read() const {
    if (const auto body = event.find("test"); isObject(body)) begin(*body);
    if (const auto body = event.find("measurement"); isObject(body)) measure(*body);
    if (const auto body = event.find("diagnosis"); isObject(body)) diagnose(*body);
    if (const auto body = event.find("end"); isObject(body)) end(*body);
  }

 private:
  bool isObject(const Json::const_iterator& body) const {
    return body != event.end() && body->is_object();
  }

  std::uint64_t test() const { return countAt(event, "testId"); }
};

void Findings::take(std::string_view line) {
  const Json event = Json::parse(line, nullptr, false);
  if (event.is_object()) Reader{*this, event}.read();
}

}  // namespace slurm
