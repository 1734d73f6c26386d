#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <exception>
#include <iostream>
#include <new>
#include <string>
#include <vector>

#include "engine/worker/counters/ErrorCounters.h"
#include "engine/worker/guard/MemoryWatch.h"
#include "engine/worker/model/RunRecords.h"
#include "engine/worker/model/SettingsWriter.h"
#include "engine/worker/tasks/Objects.h"
#include "engine/worker/tasks/ProgressFilter.h"
#include "engine/worker/tasks/RunAnswer.h"
#include "engine/worker/tasks/Stopping.h"
#include "engine/worker/tasks/Tasks.h"
#include "engine/worker/tasks/ThreadedRun.h"
#include "engine/worker/tasks/Thrown.h"
#include "engine/worker/wire/Wire.h"
#include "framework/TVORException.h"

namespace engine::tasks {
namespace {

using Report = boost::shared_ptr<NZELVOR20::ICIMNamespace>;

/// The runner sees a job's end behind one pause, and makes another one before it goes on.
constexpr int kPausesToTheEnd = 2;

std::string withoutLineEnd(std::string text) {
  if (!text.empty() && text.back() == '\n') text.pop_back();
  if (!text.empty() && text.back() == '\r') text.pop_back();
  return text;
}

/// What the one record of a report says of itself; nothing where there is none, or several.
void readRecord(NZELVOR20::ICIMNamespace& report, RunAnswer& answer) {
  try {
    const Instances records = instancesOf(report, kRecordClass);
    if (records.size() != 1) return;
    answer.remark = textOf(*records.front(), "Caption");
    answer.state = textOf(*records.front(), "CompletionState");
    answer.recordClass = records.front()->GetObjectPath({}).GetClassName();
  } catch (const NZELVOR20::TVORException&) {
    return;  // a record of a class without these
  }
}

std::string execute(DiagsRunner& runner, const std::string& test, Report& report) {
  const ProgressFilter filter(std::cout);
  return runner.Execute(test, std::string(), report);
}

void readResults(DiagsRunner& runner, const std::string& test, Report& report, RunAnswer& answer) {
  if (!isVerdict(answer.text)) return;
  answer.brief = runner.SimpleResults(test, report);
  answer.record = withoutLineEnd(runner.ExtendedResults(test, report));
  readRecord(*report, answer);
}

/// The runner picks a record by parts of its texts; in a report of its own, no other run's record
/// can be taken for this one's.
RunAnswer runOnce(Session& session, const std::string& test) {
  Report report = session.framework().makeReportNamespace();
  RunAnswer answer;
  try {
    answer.text = execute(session.runner(), test, report);
    readResults(session.runner(), test, report, answer);
  } catch (const std::bad_alloc&) {
    throw;
  } catch (...) {
    answer.exception = currentExceptionText();
  }
  if (!isVerdict(answer.text) && guard::hasMemoryRunOut()) throw std::bad_alloc();
  return answer;
}

RunAnswer runUnlessStopped(Session& session, const std::string& test) {
  const Stopping run(session, kPausesToTheEnd);
  RunAnswer answer;
  if (!Stopping::isOrdered()) answer = runOnce(session, test);
  answer.wasStopped = Stopping::isOrdered();
  return answer;
}

/// What the run measured and what is to be done about it, and why some of it could not be had.
void tellFindings(const worker::RunRecords& records, const std::string& service) {
  worker::RunRecords::Findings findings = records.collect(service);
  for (const Measurement& one : findings.measurements) {
    wire::send(Happened{Source::kProvider, one});
  }
  for (const Diagnosis& one : findings.diagnoses) {
    wire::send(Happened{Source::kProvider, one});
  }
  for (const std::string& problem : findings.problems) {
    wire::send(Happened{Source::kWorker, Message{Severity::kWarning, problem, {}}});
  }
}

/// What the machine's own counters say of the time of the run. Whatever keeps them from it, the
/// run's answer stands. Whether it is to be doubted.
bool tellErrorCounters(const counters::ErrorCounters& errors) {
  bool isDoubtful = false;
  try {
    for (const counters::Finding& finding : errors.findings()) {
      isDoubtful = isDoubtful || finding.isSure;
      wire::send(Happened{Source::kWorker, finding.diagnosis});
    }
  } catch (const std::exception& failure) {
    const std::string text = std::string("the machine's error counters: ") + failure.what();
    wire::send(Happened{Source::kWorker, Message{Severity::kWarning, text, {}}});
  }
  return isDoubtful;
}

std::string serviceOf(DiagsRunner& runner, const std::string& test) {
  std::string service;
  std::string device;
  std::string element;
  return runner.GetTestName(test, service, device, element) ? service : std::string();
}

Done refuse(const std::string& why) {
  Error error;
  error.cause = Cause::kRefused;
  error.text = why;
  wire::send(Happened{Source::kWorker, error});
  wire::send(Happened{Source::kWorker, Ended()});
  return {};
}

}  // namespace

Done run(Session& session, const Request& request) {
  session.listing();
  wire::send(Listing());  // no provider of another test is asked from here on
  const auto objects = session.framework().objectManager();
  const std::string service = serviceOf(session.runner(), request.test);
  try {
    if (!request.settings.empty()) worker::writeSettings(objects, service, request.settings);
  } catch (const worker::SettingRefused& refusal) {
    return refuse(refusal.what());
  }
  const worker::RunRecords records(objects);
  const counters::ErrorCounters errors("");
  const std::size_t before = allThrown().size();
  RunAnswer answer = runUnlessStopped(session, request.test);
  const std::vector<Thrown> thrown = allThrown();
  if (thrown.size() > before) answer.thrown = thrown.back();
  Ended ended = endOf(answer);
  if (const auto error = errorOf(answer)) wire::send(Happened{Source::kWorker, *error});
  const bool goesOn = request.threadedMinutes && isVerdict(answer.text);
  if (goesOn) runAgain(session, static_cast<unsigned>(*request.threadedMinutes), ended);
  tellFindings(records, service);
  if (tellErrorCounters(errors)) doubt(ended, answer);
  wire::send(Happened{Source::kWorker, ended});
  return {};
}

}  // namespace engine::tasks
