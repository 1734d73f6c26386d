#include "integrations/slurm/Check.h"

#include <ctime>
#include <optional>

#include "integrations/slurm/Diagnostics.h"
#include "integrations/slurm/Jobs.h"
#include "integrations/slurm/Reason.h"
#include "integrations/slurm/StateFolder.h"

namespace slurm {
namespace {

using Grade = Log::Grade;

/// Within the interval, beside another one, or beside a job, there is none.
bool hasWork(Verb verb, const Settings& settings, StateFolder& state) {
  if (!state.lock()) return false;
  const std::optional<LastRun> last = state.last(verb);
  if (last && isRecent(*last, std::time(nullptr), settings.every)) return false;
  return settings.duringJobs || !isJobRunning("/proc");
}

bool speaksAgainst(const Answer& answer, const Settings& settings) {
  switch (answer.verdict) {
    case Verdict::kFaulty:
      return true;
    case Verdict::kWarned:
      return settings.drainWarned;
    case Verdict::kUnfinished:
      return settings.drainUnfinished;
    default:
      return false;
  }
}

void tell(const Answer& answer, const std::string& node, const Clock& clock, const Log& log) {
  const bool isGood = answer.verdict == Verdict::kSound || answer.verdict == Verdict::kCut;
  log.tell(isGood ? Grade::kInfo : Grade::kWarning, node + ": " + nameOf(answer.verdict) +
                                                        " after " + secondsText(clock.elapsed()) +
                                                        ": " + answer.text);
}

std::string reasonOf(const Answer& answer) {
  return asReason(answer.verdict == Verdict::kUnfinished ? "could not be tested: " + answer.text
                                                         : answer.text);
}

}  // namespace

int statusFor(Verb verb, Status status) {
  if (verb == Verb::kHealth || status == Status::kFaulty) return status;
  return Status::kGood;
}

Status check(Verb verb, const Settings& settings, const Surroundings& surroundings,
             const Clock& clock, const Log& log) {
  const std::string diags = findDiags(settings);
  StateFolder state(settings.state);
  if (!hasWork(verb, settings, state)) return Status::kGood;
  const Answer answer = runDiagnostics(settings, diags, clock, log);
  tell(answer, surroundings.node, clock, log);
  LastRun run{std::time(nullptr), nameOf(answer.verdict), answer.text, true};
  const bool isAgainst = speaksAgainst(answer, settings);
  if (isAgainst && settings.drain)
    run.isSettled = drain(settings, surroundings, reasonOf(answer), clock, log);
  state.keep(verb, run);
  if (isAgainst && settings.drain) return Status::kFaulty;
  if (answer.verdict == Verdict::kFaulty && verb == Verb::kHealth) return Status::kFaulty;
  return answer.verdict == Verdict::kUnfinished ? Status::kUnfinished : Status::kGood;
}

}  // namespace slurm
