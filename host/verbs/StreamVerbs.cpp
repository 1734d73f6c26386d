#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include "host/Messages.h"
#include "host/Output.h"
#include "host/verbs/KeptVerbs.h"
#include "reports/recover/Recovery.h"
#include "reports/verify/OcpVerifier.h"

namespace host {
namespace {

constexpr std::uint64_t kMostFindings = 1000;  ///< that are shown of one file

std::filesystem::path fileNamed(const std::string& name) {
  std::error_code failure;
  std::filesystem::path path = std::filesystem::u8path(name);
  if (!std::filesystem::exists(path, failure)) throw UsageError(name + ": no such file");
  if (!std::filesystem::is_regular_file(path, failure)) {
    throw UsageError(name + ": is a folder, a pipe or a device, no file");
  }
  return path;
}

/// Whether the stream keeps every rule.
bool verifyOne(const std::string& name) {
  std::ifstream file(fileNamed(name), std::ios::binary);
  if (!file) throw UsageError(name + " cannot be read");
  std::uint64_t findings = 0;
  const std::uint64_t lines = reports::verifyOcp(file, name, [&](const reports::Finding& finding) {
    if (++findings > kMostFindings) return;
    printLine(name + ":" + std::to_string(finding.line) + ": " + reports::nameOf(finding.rule) +
              ": " + finding.text);
  });
  if (findings > kMostFindings) {
    printLine(name + ": " + std::to_string(findings - kMostFindings) + " findings more");
  }
  if (findings == 0) printLine(name + ": " + std::to_string(lines) + " lines, no faults found");
  return findings == 0;
}

void recoverOne(const std::string& name) {
  const reports::Recovery recovery = reports::recoverFile(fileNamed(name));
  if (recovery.closing.empty() && recovery.dropped == 0) {
    return printLine(name + ": is whole");
  }
  printLine(name + ": " + std::to_string(recovery.open) + " open tests closed, " +
            std::to_string(recovery.closing.size()) + " lines put behind, " +
            std::to_string(recovery.dropped) + " bytes of a line that was cut off dropped");
}

}  // namespace

ExitStatus verifyStreams(const Options& options) {
  bool isSound = true;
  for (const std::string& name : options.streams) isSound = verifyOne(name) && isSound;
  return isSound ? ExitStatus::kPassed : ExitStatus::kFailed;
}

ExitStatus recoverStreams(const Options& options) {
  for (const std::string& name : options.streams) recoverOne(name);
  return ExitStatus::kPassed;
}

}  // namespace host
