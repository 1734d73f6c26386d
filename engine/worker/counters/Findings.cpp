#include "engine/worker/counters/Findings.h"

#include <string>

namespace engine::counters {
namespace {

/// The files that need other words than their names.
struct Wording {
  const char* file;
  const char* words;
};
const Wording kWordings[] = {
    {"ce_count", "corrected errors"},
    {"ue_count", "uncorrected errors"},
    {"ce_noinfo_count", "corrected errors of an unknown module"},
    {"ue_noinfo_count", "uncorrected errors of an unknown module"},
    {"dimm_ce_count", "corrected errors"},
    {"dimm_ue_count", "uncorrected errors"},
    {"aer_dev_correctable", "correctable errors"},
    {"aer_dev_nonfatal", "nonfatal errors"},
    {"aer_dev_fatal", "fatal errors"},
    {"ioerr_cnt", "commands that ended with an error"},
    {"iotmo_cnt", "commands that timed out"},
    {"MCE", "machine check exceptions"},
    {"THR", "interrupts of corrected errors"},
    {"DFR", "interrupts of deferred errors"},
};

std::string wordsFor(const std::string& file) {
  for (const Wording& one : kWordings) {
    if (file == one.file) return one.words;
  }
  return file;
}

std::string textOf(const Rise& rise) {
  const std::string name = rise.name == rise.file ? "" : " " + rise.name;
  return wordsFor(rise.file) + name + " rose from " + std::to_string(rise.from) + " to " +
         std::to_string(rise.to);
}

/// A machine check of all processors has as many rises as there are processors.
std::string textOf(const std::vector<Rise>& rises) {
  constexpr std::size_t kMostRises = 16;
  std::string text;
  for (std::size_t i = 0; i < rises.size() && i < kMostRises; ++i) {
    text += (i == 0 ? "" : ", ") + textOf(rises[i]);
  }
  return rises.size() <= kMostRises
             ? text
             : text + " and " + std::to_string(rises.size() - kMostRises) + " more";
}

bool has(const RisenPart& risen, const char* text) {
  for (const Rise& rise : risen.rises) {
    if (rise.file.find(text) != std::string::npos) return true;
  }
  return false;
}

Diagnosis ofMemory(const SystemFolder& root, const RisenPart& risen) {
  const SystemFolder folder = root / "sys/devices/system/edac/mc" / risen.part;
  const std::string& file = risen.rises.front().file;
  const std::string channel = file.rfind("ch", 0) == 0 ? file.substr(0, file.find('_')) : "";
  const std::string label = folder.text(channel.empty() ? "dimm_label" : channel + "_dimm_label");
  const std::string location = folder.text("dimm_location");
  const bool isModule = risen.part.find('/') != std::string::npos;
  Diagnosis diagnosis;
  diagnosis.part = label.empty() ? "memory " + risen.part : label;
  diagnosis.text = (isModule ? "memory module " : "memory controller ") + risen.part;
  if (!location.empty()) diagnosis.text += " (" + location + ")";
  diagnosis.text += ": " + textOf(risen.rises);
  diagnosis.actions.push_back(has(risen, "ue_") ? "Replace " + diagnosis.part + "."
                                                : "Replace " + diagnosis.part +
                                                      " where its corrected errors go on rising.");
  return diagnosis;
}

Diagnosis ofMachineChecks(const SystemFolder&, const RisenPart& risen) {
  return {Verdict::kWarning,
          textOf(risen.rises),
          "processors",
          {"Look into the kernel's log for bank and address of the error."}};
}

Diagnosis ofPci(const SystemFolder& root, const RisenPart& risen) {
  const SystemFolder device = root / "sys/bus/pci/devices" / risen.part;
  const std::string driver = device.targetOf("driver");
  std::string what = "PCI Express device " + device.text("vendor") + ":" + device.text("device");
  if (!driver.empty()) what += ", driver " + driver;
  return {Verdict::kWarning,
          what + ": " + textOf(risen.rises),
          risen.part,
          {"Reseat the card of " + risen.part + "; replace it or its slot where errors go on."}};
}

Diagnosis ofDisk(const SystemFolder&, const RisenPart& risen) {
  return {Verdict::kWarning,
          textOf(risen.rises),
          risen.part,
          {"Check the cable of " + risen.part + " and the drive's health."}};
}

Diagnosis ofPort(const SystemFolder&, const RisenPart& risen) {
  return {Verdict::kWarning,
          textOf(risen.rises),
          risen.part,
          {"Check the cable of " + risen.part + " and what is at its other end."}};
}

}  // namespace

Finding findingOf(const SystemFolder& root, const RisenPart& risen, bool hasKernelLog) {
  using Describe = Diagnosis (*)(const SystemFolder&, const RisenPart&);
  static const Describe kDescriptions[] = {ofMemory, ofMachineChecks, ofPci, ofDisk, ofPort};
  Finding finding;
  finding.diagnosis = kDescriptions[static_cast<std::size_t>(risen.place)](root, risen);
  finding.isSure = risen.place != Place::kDisk || has(risen, "iotmo_cnt") || !hasKernelLog;
  finding.diagnosis.verdict = finding.isSure ? Verdict::kWarning : Verdict::kUnknown;
  return finding;
}

}  // namespace engine::counters
