#include "providers/disk/services/HealthDiagnostic.h"

#include <algorithm>
#include <utility>

#include "providers/common/Findings.h"

namespace providers::disk {

namespace {

DiskTest testOf(HealthQuestion question) {
  constexpr std::uint16_t kStatus = 10, kGrownDefects = 11, kHealthCheck = 4;
  const bool status = question == HealthQuestion::Status;
  DiskTest test;
  test.type = status ? kStatus : kGrownDefects;
  test.name = status ? "Status" : "Grown Defects";
  test.text = status ? "Asks the drive whether it is well, and how much it has been used."
                     : "Asks the drive how many of its blocks were replaced or cannot be read.";
  test.testTypes = {kHealthCheck};
  test.seconds = 1;
  test.looks = true;
  return test;
}

CompletionState stateOf(const Health& health) {
  CompletionState state = CompletionState::Ok;
  for (const HealthFinding& finding : health.findings) {
    if (finding.failing) return CompletionState::Failed;
    state = CompletionState::Warning;
  }
  return state;
}

std::string valueLine(const Measured& value) {
  const bool beyond = (value.maximum && value.value > *value.maximum) ||
                      (value.minimum && value.value < *value.minimum);
  return value.name + formatted(": %.0f", value.value) +
         (value.unit.empty() ? "" : " " + value.unit) + (beyond ? ", beyond its limit\n" : "\n");
}

std::string whatToDo(CompletionState state, const Disk& disk) {
  if (state == CompletionState::Failed)
    return "save the data at once and replace " + describe(disk);
  if (state == CompletionState::Warning)
    return "save the data, run the Sequential Read and Extended Self-Test tests of " +
           describe(disk) + ", and replace it if they fail or these figures rise";
  return {};
}

std::string summaryOf(const Health& health, HealthQuestion question) {
  if (!health.findings.empty()) return countText(health.findings.size(), "finding");
  return question == HealthQuestion::Status ? "The drive says that it is well"
                                            : "No defects were counted";
}

Outcome healthOutcome(const Health& health, const Disk& disk, HealthQuestion question) {
  Outcome outcome;
  outcome.state = stateOf(health);
  outcome.summary = summaryOf(health, question);
  outcome.text = outcome.summary + ": " + describe(disk) + "\n";
  outcome.measured = health.measured;
  std::string lines;
  std::uint32_t failing = 0;
  for (const HealthFinding& finding : health.findings) {
    lines += finding.text + "\n";
    failing += finding.failing ? 1 : 0;
  }
  if (failing > 0) outcome.errors.push_back({"Drive health", failing});
  addFinding(outcome, disk, lines, whatToDo(outcome.state, disk));
  for (const Measured& value : health.measured) outcome.text += valueLine(value);
  return outcome;
}

}  // namespace

bool hasHealth(const Disk& disk) {
  return disk.bus == Bus::Nvme || disk.bus == Bus::Ata || disk.bus == Bus::Scsi ||
         disk.bus == Bus::Usb;
}

HealthDiagnostic::HealthDiagnostic(FindDisks findDisks, OpenDrive openDrive,
                                   HealthQuestion question)
    : DiskDiagnostic(std::move(findDisks), testOf(question)),
      m_openDrive(std::move(openDrive)),
      m_question(question) {}

bool HealthDiagnostic::suits(const Disk& disk) const { return hasHealth(disk); }

Outcome HealthDiagnostic::runOn(const Disk& disk, const RunSettings&, RunControl& control) {
  const OpenedDrive drive = m_openDrive(disk);
  if (!drive.commands) return notOpened(drive.problem);
  const Health health = m_question == HealthQuestion::Status ? readHealth(disk, *drive.commands)
                                                             : readDefects(disk, *drive.commands);
  control.progress(1);
  if (!health.unknown.empty())
    return notTested("Not tested: the drive does not tell", health.unknown,
                     "run the test as root or administrator; where a bridge or controller keeps "
                     "the drive's answers back, connect the drive without it");
  return healthOutcome(health, disk, m_question);
}

}  // namespace providers::disk
