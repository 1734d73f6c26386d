#include "engine/worker/model/RunRecords.h"

#include <utility>

#include "engine/worker/model/Measurements.h"
#include "engine/worker/model/Repairs.h"
#include "framework/TVORException.h"

namespace engine::worker {
namespace {

constexpr const char* kRecordClass = "CIM_DiagnosticServiceRecord";

std::string identifierOf(const InstancePtr& record) {
  const std::string identifier = textOf(record, "InstanceID");
  return identifier.empty() ? record->GetObjectPath({}).GetPath() : identifier;
}

/// What could be had before somebody failed stays.
template <typename Take>
std::string readRecords(const Objects& objects, const Take& take) {
  try {
    forEach(objects, kRecordClass, take);
  } catch (const NZELVOR20::TVORException& error) {
    return std::string("the records of results: ") + error.what();
  }
  return {};
}

bool isOfResults(const InstancePtr& record) {
  constexpr std::uint64_t kResults = 2, kStatistics = 10;
  const std::uint64_t type = numberOf(record, "RecordType", kResults);
  return type == kResults || type == kStatistics;
}

/// Where a record names no service, it is taken for this one's.
bool isOf(const InstancePtr& record, const std::string& service) {
  const std::string name = textOf(record, "ServiceName");
  return name.empty() || name.find(service) != std::string::npos;
}

void addFindings(const InstancePtr& record, RunRecords::Findings& findings) {
  RecordReading reading =
      readMeasurements(textOf(record, "RecordFormat"), textOf(record, "RecordData"));
  for (Measurement& one : reading.measurements) findings.measurements.push_back(std::move(one));
  if (!reading.error.empty())
    findings.problems.push_back("record " + identifierOf(record) + ": " + reading.error);
}

}  // namespace

RunRecords::RunRecords(Objects objects) : m_objects(std::move(objects)) {
  readRecords(m_objects,
              [this](const InstancePtr& record) { m_former.insert(identifierOf(record)); });
}

RunRecords::Findings RunRecords::collect(const std::string& service) const {
  Findings findings;
  const std::string problem = readRecords(m_objects, [&](const InstancePtr& record) {
    if (!isOf(record, service) || m_former.count(identifierOf(record)) != 0) return;
    if (isOfResults(record)) addFindings(record, findings);
    if (auto diagnosis = readRepair(record)) findings.diagnoses.push_back(std::move(*diagnosis));
  });
  if (!problem.empty()) findings.problems.push_back(problem);
  return findings;
}

}  // namespace engine::worker
