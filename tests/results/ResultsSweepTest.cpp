#include <gtest/gtest.h>

#include <memory>

#include "tests/results/FinishedRun.h"
#include "tests/results/ResultCourse.h"

/// Each framework call of the three levels of results fails in each way; each time the journal and
/// the answer are as the course says, and no handle is kept.
namespace support {
namespace {

using Access = DiagsRunnerAccess;

void checkNothingElse(const FaultPoint&, const Outcome&, FinishedRun&) {}

/// A record of another run, that of this run, and one more, which counts when the first is passed
/// over.
std::unique_ptr<FinishedRun> withThreeRecords(const std::string& name) {
  auto run = std::make_unique<FinishedRun>(name);
  run->addRecord(name, "record for job-0", "Aborted", "zeroth");
  run->addOwnRecord("Warning", "first");
  run->addOwnRecord("Incomplete", "second");
  return run;
}

/// The course of the lookup and of the choice of the record.
Course lookupCourse(const std::string& operation, const std::string& options) {
  Course course = {
      {"begin", {trace("Entering DiagsRunner::" + operation)}, {}},
      {"class", {recordClassCall("host", "{nspID=\"cmpi\"}")}, emptyGoesOnAt("no record")},
      {"enumeration", {recordEnumeration(options)}, passOn}};
  // The record of another run is passed over in any case.
  addSelection(course, "record1", "nulls of record2", passOn);
  addSelection(course, "record2", "record3", passOn);
  return course;
}

/// The section in which the third record counts, which `property` of is shown as `answer`.
Section thirdRecord(const std::string& property, const Events& log, const std::string& answer) {
  return detour("record3",
                joined({selectionRead("record3"), renderingRead("record3", property), log}),
                answer);
}

Section noRecord(const std::string& operation, const std::string& answer) {
  const std::string name = "DiagsRunner::" + operation;
  return detour("no record",
                {trace(name + "  - No Valid Instance Found"),
                 trace(name + " - Returning: No extended results"), trace("Exiting " + name)},
                answer);
}

TEST(ResultsSweep, SimpleResultsLeaveEveryExceptionToTheHost) {
  for (const bool isFamily : {false, true}) {
    const auto logged = [&](const char* state) {
      return isFamily ? Events{trace(std::string("tempResult :") + state)} : Events{};
    };
    Course course = lookupCourse("SimpleResults", "{}");
    course.push_back({"verdict", renderingRead("record2", "CompletionState"), passOn});
    course.push_back({"answer", logged("Warning"), {}, isFamily ? "(Pass)" : "(Fail)"});
    course.push_back(thirdRecord("CompletionState", logged("Incomplete"), "(Incomplete)"));
    course.push_back(noRecord("SimpleResults", ""));
    sweepAlong(
        course, [&] { return withThreeRecords(isFamily ? "zel:ssd:diag service" : "Disk Test"); },
        [](FinishedRun& run) { return run.simple(); }, checkNothingElse);
  }
}

TEST(ResultsSweep, ExtendedResultsLeaveEveryExceptionToTheHost) {
  Course course = lookupCourse("ExtendedResults", "{nspID=\"cmpi\"}");
  course.push_back({"data", renderingRead("record2", "RecordData"), passOn, "first"});
  course.push_back(thirdRecord("RecordData", {}, "second"));
  course.push_back(noRecord("ExtendedResults", "No extended results.\n"));
  sweepAlong(
      course, [] { return withThreeRecords("Disk Test"); },
      [](FinishedRun& run) { return run.extended(); }, checkNothingElse);
}

/// A test with one record, whose data are "former", and a vendor's message for it.
std::unique_ptr<FinishedRun> withOneRecord(const std::string& name, const std::string& state) {
  auto run = std::make_unique<FinishedRun>(name);
  run->addOwnRecord(state, "former");
  for (const char* key : {"brcm test", "fusion-io:diag service"}) {
    Access::vendorMessages(run->runner())
        .emplace(key, VendorMessageRecord{key, "0x1", "ok", {"Fine."}, {{"1", "Go on."}}});
  }
  return run;
}

void sweepImmediateResults(const std::string& name, const ImmediateRun& run) {
  Course course;
  addImmediateResults(course, run);
  sweepAlong(
      course, [&] { return withOneRecord(name, run.state); },
      [](FinishedRun& world) { return world.immediate(); }, checkNothingElse);
}

TEST(ResultsSweep, ImmediateResultsAnswerFrameworkExceptionsAlone) {
  sweepImmediateResults("Disk Test",
                        {"Disk Test,disk0,Disk", "{nspID=\"cmpi\"}", "Aborted", "Aborted"});
}

TEST(ResultsSweep, ImmediateResultsOfAVendorsTestDoSoToo) {
  ImmediateRun run{"BRCM Test,disk0,Disk", "{nspID=\"cmpi\"}"};
  run.isVendor = true;
  run.loweredName = "brcm test";
  run.newData = "0x1 : Fine.\n1. Go on.\nformer";
  sweepImmediateResults("BRCM Test", run);
}

TEST(ResultsSweep, ImmediateResultsOfTheDiagServiceFamilyDoSoToo) {
  ImmediateRun run{"ZEL:ssd:diag service,disk0,Disk", "{nspID=\"cmpi\"}", "Warning"};
  run.isFamily = true;
  run.isVendor = true;
  run.loweredState = "warning";
  run.loweredName = "zel:ssd:diag service";
  run.newData = "0x1 : Fine.\n1. Go on.\nformer";
  sweepImmediateResults("ZEL:ssd:diag service", run);
}

}  // namespace
}  // namespace support
