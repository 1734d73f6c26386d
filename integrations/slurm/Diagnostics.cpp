#include "integrations/slurm/Diagnostics.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <filesystem>

#include "integrations/slurm/Budget.h"
#include "integrations/slurm/OwnFile.h"
#include "integrations/slurm/Reason.h"
#include "integrations/slurm/SettingError.h"

namespace slurm {
namespace {

/// The exit status of `diags` where the tests said all that they could.
constexpr int kAllPassed = 0;
constexpr int kNoVerdict = 3;

bool isNumber(const ChildResult& result, int code) {
  return result.end == ChildEnd::kExited && result.code == code;
}

std::string testsText(std::uint64_t count) {
  return std::to_string(count) + (count == 1 ? " test" : " tests");
}

std::string whyUnfinished(const Findings& findings, const ChildResult& result) {
  if (result.end == ChildEnd::kNotStarted) return "diags did not start: " + result.why;
  if (result.end == ChildEnd::kTimedOut) return "diags did not come to an end in its time";
  if (result.end == ChildEnd::kSignalled)
    return "diags was ended by signal " + std::to_string(result.code);
  if (findings.undecided() > 0) return testsText(findings.undecided()) + " ended without a verdict";
  return "diags ended with status " + std::to_string(result.code);
}

std::string countsText(const Findings& findings) {
  return testsText(findings.passed()) + " passed, " + std::to_string(findings.cut()) +
         " had no time";
}

std::vector<std::string> argumentsOf(const Settings& settings, const std::string& diags,
                                     const Clock& clock) {
  const Shares shares = sharesOf(settings.budget);
  const Duration left = std::max(Duration(1), shares.deadline - clock.elapsed());
  std::vector<std::string> arguments{diags};
  if (!settings.root.empty()) arguments.insert(arguments.end(), {"--root", settings.root});
  // In another order each time: what there is no time for is another test each time.
  const std::string seed = std::to_string(std::time(nullptr));
  arguments.insert(arguments.end(),
                   {"run", "--plan", settings.plan, "--events", "-", "--quiet", "--deadline",
                    millisecondsText(left), "--grace", millisecondsText(shares.grace), "--shuffle",
                    seed, "--state", settings.state + "/history"});
  return arguments;
}

/// Nothing of what this process was given.
std::vector<std::string> environmentOf(const Settings& settings) {
  return {"PATH=/usr/sbin:/usr/bin:/sbin:/bin", "LC_ALL=C.UTF-8", "HOME=" + settings.state,
          "XDG_CACHE_HOME=" + settings.state + "/cache", "XDG_STATE_HOME=" + settings.state};
}

/// What the command complains of; verdicts are in its events.
class Complaints {
 public:
  explicit Complaints(const Log& log) : m_log(log) {}

  void take(std::string_view line) {
    constexpr std::size_t kMost = 10;
    constexpr std::string_view kMark = "diags: ";
    if (line.substr(0, kMark.size()) != kMark || m_count >= kMost) return;
    ++m_count;
    m_log.tell(Log::Grade::kWarning, std::string(line));
  }

 private:
  const Log& m_log;
  std::size_t m_count = 0;
};

}  // namespace

std::string nameOf(Verdict verdict) {
  constexpr std::array<const char*, 5> kNames{"sound", "warned", "cut", "unfinished", "faulty"};
  return kNames.at(static_cast<std::size_t>(verdict));
}

Answer answerFrom(const Findings& findings, const ChildResult& result) {
  const std::string faults = reasonFrom(findings.all(), false);
  if (!faults.empty()) return {Verdict::kFaulty, faults};
  const bool isCut = findings.isWhole() && findings.undecided() == 0 && findings.cut() > 0;
  const bool isDone = isNumber(result, kAllPassed) || (isCut && isNumber(result, kNoVerdict));
  if (!isDone) return {Verdict::kUnfinished, whyUnfinished(findings, result)};
  const std::string warnings = reasonFrom(findings.all(), true);
  if (!warnings.empty()) return {Verdict::kWarned, warnings};
  if (findings.cut() > 0) return {Verdict::kCut, countsText(findings)};
  return {Verdict::kSound, countsText(findings)};
}

std::string findDiags(const Settings& settings) {
  if (!settings.diags.empty()) {
    needOwnFile(settings.diags);
    return settings.diags;
  }
  std::error_code failure;
  const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", failure);
  const std::filesystem::path folder = self.parent_path();
  // Beside it, as it is built; and where it is when this is in lib/diagsrunner/slurm.
  for (const std::filesystem::path& one :
       {folder / "diags", folder.parent_path().parent_path().parent_path() / "bin" / "diags"}) {
    if (!std::filesystem::exists(one, failure)) continue;
    needOwnFile(one.string());
    return one.string();
  }
  throw SettingError("there is no command diags that belongs to " + self.string() +
                     "; the key \"diags\" of the configuration tells where one is");
}

Answer runDiagnostics(const Settings& settings, const std::string& diags, const Clock& clock,
                      const Log& log) {
  const Shares shares = sharesOf(settings.budget);
  const Command command{argumentsOf(settings, diags, clock), environmentOf(settings)};
  Findings findings;
  Complaints complaints(log);
  const ChildResult result = runChild(
      command, clock, shares.terminate, shares.kill,
      [&findings](std::string_view line) { findings.take(line); },
      [&complaints](std::string_view line) { complaints.take(line); });
  return answerFrom(findings, result);
}

}  // namespace slurm
