#include "engine/worker/tasks/ThreadedRun.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <iterator>
#include <string>
#include <thread>

#include "engine/worker/tasks/Objects.h"
#include "engine/worker/tasks/ProgressFilter.h"
#include "engine/worker/tasks/RunAnswer.h"
#include "engine/worker/tasks/Stopping.h"
#include "engine/worker/wire/Wire.h"
#include "framework/TRootObject.h"

namespace engine::tasks {
namespace {

constexpr std::chrono::milliseconds kInterval(100);
/// In so many steps the display counts up to the end.
constexpr int kDisplayPauses = 10;

/// From the best to the worst.
constexpr Outcome kGoodToBad[] = {Outcome::kPassed,  Outcome::kWarned, Outcome::kIncomplete,
                                  Outcome::kAborted, Outcome::kBroken, Outcome::kFailed};

bool isWorse(Outcome one, Outcome other) {
  const auto* const end = std::end(kGoodToBad);
  return std::find(kGoodToBad, end, one) > std::find(kGoodToBad, end, other);
}

/// The runner's own reading of a record's state, but for the warnings of our own tests.
Outcome outcomeOf(const std::string& state, const std::string& recordClass) {
  const auto has = [&](const char* word) { return state.find(word) != std::string::npos; };
  if (has("OK")) return Outcome::kPassed;
  if (has("Aborted")) return Outcome::kAborted;
  if (has("Warning") && isOurs(recordClass)) return Outcome::kWarned;
  return has("Incomplete") ? Outcome::kIncomplete : Outcome::kFailed;
}

const char* wordFor(Outcome outcome) {
  switch (outcome) {
    case Outcome::kPassed:
      return "Pass";
    case Outcome::kAborted:
      return "Aborted";
    case Outcome::kIncomplete:
      return "Incomplete";
    case Outcome::kWarned:
      return "Warning";
    case Outcome::kFailed:
      return "Fail";
    default:
      return "none";
  }
}

void tellError(Cause cause, const std::string& text) {
  Error error;
  error.cause = cause;
  error.text = text;
  wire::send(Happened{Source::kWorker, error});
}

/// An error in the core log reaches its file at once, with all that was logged before.
[[noreturn]] void endProcess(const std::string& why) {
  if (NZELVOR20::ILogger* const log = NZELVOR20::TRootObject::GetCoreLogger()) log->Log(0, why);
  tellError(Cause::kException, why);
  Ended ended;
  ended.outcome = Stopping::isOrdered() ? Outcome::kAborted : Outcome::kBroken;
  wire::send(Happened{Source::kWorker, ended});
  wire::send(Done());
  std::fflush(nullptr);
  std::_Exit(EXIT_SUCCESS);
}

void runOrEndProcess() noexcept {
  try {
    DiagsRunner::ExecuteInThread(nullptr);
  } catch (...) {
    endProcess("the threaded run ended by an exception: " + currentExceptionText());
  }
}

void followJobs(Session& session, const std::set<std::string>& former) {
  for (;;) {
    const Instances jobs = newInstancesOf(session.objects(), kJobClass, former);
    if (std::all_of(jobs.begin(), jobs.end(), [](const auto& job) { return isOver(*job); })) return;
    std::this_thread::sleep_for(kInterval);
  }
}

/// What came of the run, and the record that says so.
struct Answer {
  Outcome outcome = Outcome::kPassed;
  std::string record;
};

Answer answerWithoutRecord() {
  if (Stopping::isOrdered()) return {Outcome::kAborted, {}};
  tellError(Cause::kOther, "the threaded run left no record");
  return {Outcome::kBroken, {}};
}

/// The worst of the records that came since.
Answer answerSince(Session& session, const std::set<std::string>& former) {
  const Instances records = newInstancesOf(session.objects(), kRecordClass, former);
  if (records.empty()) return answerWithoutRecord();
  Answer worst;
  for (const auto& record : records) {
    const Outcome outcome =
        outcomeOf(textOf(*record, "CompletionState"), record->GetObjectPath({}).GetClassName());
    if (isWorse(outcome, worst.outcome)) worst = {outcome, textOf(*record, "RecordData")};
  }
  // What a job says that was told to end is no verdict on the hardware.
  const bool isInDoubt = Stopping::isOrdered() && worst.outcome == Outcome::kFailed;
  if (isInDoubt) worst.outcome = Outcome::kAborted;
  return worst;
}

void runBehindDisplay(DiagsRunner& runner, unsigned minutes) {
  const ProgressFilter filter(std::cout);
  std::thread worker(runOrEndProcess);
  runner.printStatus(minutes);
  worker.join();
}

/// An order to end comes through to its job, too, and one that came before keeps it from beginning.
Answer runOnceMore(Session& session, unsigned minutes) {
  const Stopping run(session, kDisplayPauses);
  if (Stopping::isOrdered()) return {Outcome::kAborted, {}};
  const std::set<std::string> jobs = pathsOf(instancesOf(session.objects(), kJobClass));
  const std::set<std::string> records = pathsOf(instancesOf(session.objects(), kRecordClass));
  wire::send(Happened{Source::kWorker, StepStarted{"threaded run"}});
  runBehindDisplay(session.runner(), minutes);
  followJobs(session, jobs);
  return answerSince(session, records);
}

}  // namespace

void runAgain(Session& session, unsigned minutes, Ended& ended) {
  const Answer answer = runOnceMore(session, minutes);
  if (!isWorse(answer.outcome, ended.outcome)) return;
  ended.outcome = answer.outcome;
  ended.text = wordFor(answer.outcome);
  ended.brief = "(" + ended.text + ")";
  ended.remark = "the threaded run";
  if (!answer.record.empty()) ended.record = answer.record;
}

}  // namespace engine::tasks
