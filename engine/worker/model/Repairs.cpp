#include "engine/worker/model/Repairs.h"

#include <sstream>
#include <utility>

namespace engine::worker {
namespace {

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (!line.empty()) lines.push_back(std::move(line));
  }
  return lines;
}

Verdict verdictOfState(std::uint64_t state) {
  constexpr std::uint64_t kOk = 2, kWarning = 3, kFailed = 5;
  if (state == kOk) return Verdict::kPass;
  if (state == kWarning) return Verdict::kWarning;
  return state == kFailed ? Verdict::kFail : Verdict::kUnknown;
}

Verdict verdictOfSeverity(std::uint64_t severity) {
  constexpr std::uint64_t kInformation = 2, kDegraded = 3, kMinor = 4, kMajor = 5, kFatal = 7;
  if (severity == kInformation) return Verdict::kPass;
  if (severity == kDegraded || severity == kMinor) return Verdict::kWarning;
  return severity >= kMajor && severity <= kFatal ? Verdict::kFail : Verdict::kUnknown;
}

/// A record of the whole run has a state, one beside it is as bad as it is severe.
Verdict verdictOf(const InstancePtr& record) {
  constexpr std::uint64_t kNone = 0;
  const std::uint64_t state = numberOf(record, "CompletionState", kNone);
  if (state != kNone) return verdictOfState(state);
  return verdictOfSeverity(numberOf(record, "PerceivedSeverity", kNone));
}

/// What was found, in one line.
std::string summaryOf(const InstancePtr& record) {
  const std::string caption = textOf(record, "Caption");
  if (!caption.empty()) return caption;
  const bool isProse = textOf(record, "RecordFormat").empty();
  const auto lines = isProse ? linesOf(textOf(record, "RecordData")) : std::vector<std::string>();
  return lines.empty() ? textOf(record, "ElementName") : lines.front();
}

}  // namespace

std::optional<Diagnosis> readRepair(const InstancePtr& record) {
  const std::string location = textOf(record, "FaultyPartLocation");
  const std::string serial = textOf(record, "FaultyPartSerialNumber");
  Diagnosis diagnosis;
  diagnosis.actions = linesOf(textOf(record, "CorrectiveAction"));
  diagnosis.part = textOf(record, "FaultyPart");
  if (diagnosis.actions.empty() && diagnosis.part.empty() && location.empty() && serial.empty())
    return std::nullopt;
  diagnosis.verdict = verdictOf(record);
  diagnosis.text = summaryOf(record);
  if (!location.empty()) diagnosis.text += "; location " + location;
  if (!serial.empty()) diagnosis.text += "; serial number " + serial;
  return diagnosis;
}

}  // namespace engine::worker
