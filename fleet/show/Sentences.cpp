#include "fleet/show/Sentences.h"

#include <cmath>
#include <cstdio>

namespace fleet {
namespace {

std::string counted(std::uint64_t count, const std::string& one, const std::string& many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

std::string figure(double value, const char* format) {
  char text[64];
  std::snprintf(text, sizeof(text), format, value);
  return text;
}

std::string partOf(const Finding& finding) {
  std::string part = finding.part;
  if (!finding.partPlace.empty() && finding.partPlace != part) part += " in " + finding.partPlace;
  if (!finding.partSerial.empty()) part += " (serial number " + finding.partSerial + ")";
  return part;
}

std::string byVerdict(const Answer& answer) {
  std::string text;
  for (const Verdict verdict : {Verdict::kPassed, Verdict::kWarned, Verdict::kSkipped,
                                Verdict::kUnfinished, Verdict::kFailed, Verdict::kNone}) {
    const std::uint64_t count = answer.totals.machines[static_cast<std::size_t>(verdict)];
    if (count == 0) continue;
    text += (text.empty() ? "" : ", ") + std::to_string(count) + " " +
            (verdict == Verdict::kNone ? "without a test" : nameOf(verdict));
  }
  return text;
}

std::uint64_t absentFrom(const Answer& answer) {
  std::uint64_t count = 0;
  for (const Silent& silent : answer.silent) count += silent.machine == kNowhere ? 1U : 0U;
  return count;
}

/// "20.0 % slower", "31.0 % more".
std::string distanceOf(const Slow& slow) {
  const double percent = std::abs(slow.ratio - 1) * 100;
  const char* const slower = slow.measurements > 1 ? " % slower" : " % less";
  const char* const word = slow.ratio < 1 ? slower : " % more";
  return figure(percent, "%.0f") + word + " than its peers";
}

}  // namespace

std::vector<std::string> headlines(const Answer& answer) {
  std::string machines = counted(answer.machines.size(), "machine", "machines");
  if (!answer.machines.empty()) machines += ": " + byVerdict(answer);
  const std::uint64_t absent = absentFrom(answer);
  if (absent > 0) machines += "; " + std::to_string(absent) + " did not answer";
  const Totals& totals = answer.totals;
  std::string read = counted(answer.tests.size(), "test", "tests") + ", " +
                     counted(totals.measurements, "measurement", "measurements") + " in " +
                     counted(totals.streams, "stream", "streams");
  if (totals.leftOut > 0) read += " (" + std::to_string(totals.leftOut) + " left out)";
  return {machines, read};
}

std::string whyOf(const Answer& answer, std::uint32_t machine, Verdict verdict) {
  std::size_t tests = 0;
  for (const Verdict one : answer.machines[machine].verdicts) tests += one == verdict ? 1U : 0U;
  if (tests == 0) return "its run did not end";
  std::string text = counted(tests, "test", "tests");
  for (const Finding& finding : answer.findings) {
    if (finding.machine != machine || finding.verdict != verdict) continue;
    if (finding.test != kNowhere) text += "; " + answer.tests[finding.test].name;
    const std::string part = partOf(finding);
    if (!part.empty()) text += ": " + part;
    if (!finding.text.empty()) text += ": " + finding.text.substr(0, finding.text.find('\n'));
    return text;
  }
  return text;
}

std::string sentenceOf(const Answer& answer, const Silent& silent) {
  std::string text = silent.why;
  if (silent.machine != kNowhere) {
    text += "; " + counted(silent.answered, "test", "tests") + " answered, in " +
            answer.machines[silent.machine].source;
  }
  return text;
}

std::string sentenceOf(const Answer& answer, const Slow& slow) {
  std::string text = answer.tests[slow.test].name;
  if (!slow.device.empty()) text += ", " + slow.device;
  if (!slow.model.empty()) text += " (" + slow.model;
  if (!slow.model.empty() && !slow.serial.empty()) text += ", serial number " + slow.serial;
  if (!slow.model.empty()) text += ")";
  text += ": " + distanceOf(slow);
  if (slow.measurements > 1) {
    text += " on average of " + std::to_string(slow.measurements) + " measurements";
  }
  const std::string unit = slow.unit.empty() ? "" : " " + slow.unit;
  return text + "; " + slow.measurement + " " + figure(slow.value, "%.4g") + unit + ", median " +
         figure(slow.median, "%.4g") + unit + " (" + figure(slow.score, "%.1f") + " deviations, " +
         counted(slow.peers, "peer", "peers") + ")";
}

std::string sentenceOf(const Group& group) {
  std::string text;
  switch (group.kind) {
    case GroupKind::kPart:
      text = (group.of.empty() ? "part" : group.of) + " " + group.key;
      break;
    case GroupKind::kModel:
      text = "machines " + group.key;
      break;
    case GroupKind::kFirmware:
      text = "firmware " + group.key;
      break;
    case GroupKind::kBatch:
      text = (group.of.empty() ? "" : group.of + ", ") + "serial numbers " + group.key + "...";
      break;
    case GroupKind::kTest:
      text = group.key;
      break;
  }
  text += ": " + std::to_string(group.failing) + " of " + std::to_string(group.all) + " fail";
  if (group.kind == GroupKind::kTest) return text;
  return text + ", of the others " + std::to_string(group.restFailing) + " of " +
         std::to_string(group.rest) + " (by chance: " + figure(group.chance, "%.1g") + ")";
}

std::string sentenceOf(const Complaint& complaint) {
  std::string where = complaint.file;
  if (complaint.line != 0) where += ", line " + std::to_string(complaint.line);
  return where.empty() ? complaint.text : where + ": " + complaint.text;
}

}  // namespace fleet
