#include "tests/results/ResultCourse.h"

namespace support {

namespace {

const char kNoResults[] = "No Results.\n";

/// A framework exception is answered; others pass.
Recovery answer(const FaultPoint& point) {
  return point.fault == Fault::vorException ? Recovery{{}, "exception of the results"}
                                            : passOn(point);
}

void addWait(Course& course) {
  course.push_back({"enumeration", {recordEnumeration("{}")}, answer});
  course.push_back(detour("one more enumeration", {recordEnumeration("{}"), sleptFor(5000)}));
  course.push_back(
      {"sign", valueRead("record1", "ServiceName"), emptyGoesOnAt("one more enumeration", answer)});
}

void addVerdict(Course& course, const ImmediateRun& run) {
  course.push_back({"verdict", renderingRead("record1", "CompletionState"), answer});
  if (run.isFamily) {
    course.push_back({"state", {trace("tempResult :" + run.state)}, {}});
  }
}

void addExplanation(Course& course, const ImmediateRun& run) {
  Events events = joined(
      {renderingRead("record1", "CompletionState"), {trace("testName :" + run.loweredName)}});
  if (run.isFamily) {
    events = joined({events,
                     {trace("update test name for :fusion-io:diag service"),
                      trace("testStatus :" + run.loweredState)}});
  }
  const std::string setter =
      "inst record1.SetProperty(\"RecordData\", " + quoted(run.newData) + ", {})";
  course.push_back(
      {"explanation", joined({events, renderingRead("record1", "RecordData"), {setter}}), answer});
}

}  // namespace

void addSelection(Course& course, const std::string& label, const std::string& next,
                  const Recover& recover) {
  course.push_back(
      {"nulls of " + label,
       joined({valueRead(label, "ManagedElementName"), valueRead(label, "ServiceName")}),
       emptyGoesOnAt(next, recover)});
  course.push_back({"texts of " + label,
                    joined({valueRead(label, "ServiceName"), valueRead(label, "InstanceID")}),
                    recover});
}

void addImmediateResults(Course& course, const ImmediateRun& run) {
  course.push_back({"results",
                    {trace("Entering DiagsRunner::ImmediateResults, testID is: " + run.testID),
                     trace("testID in ImmediateResults:" + run.testID)},
                    {}});
  course.push_back(
      {"record class", {recordClassCall("root", run.options)}, emptyGoesOnAt("no record", answer)});
  addWait(course);
  addSelection(course, "record1", "no record", answer);
  addVerdict(course, run);
  if (run.isVendor) {
    addExplanation(course, run);
  }
  course.push_back(
      {"copy", {"TCIMCopy.CopyInstance(inst record1, ns host)"}, emptyGoesOnAt("answer", answer)});
  course.push_back({"answer", {}, {}, run.verdict});
  course.push_back(detour("no record",
                          {trace("DiagsRunner::ImmediateResults  - No Valid Instance Found"),
                           trace("DiagsRunner::ImmediateResults - Returning: No extended results")},
                          kNoResults));
  course.push_back(detour("exception of the results",
                          {trace("DiagsRunner::ImmediateResults caught Exception")}, kNoResults));
}

}  // namespace support
