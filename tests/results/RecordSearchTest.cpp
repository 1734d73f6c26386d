#include <gtest/gtest.h>

#include <functional>

#include "results/RecordSearch.h"
#include "tests/results/Events.h"
#include "tests/support/Outcome.h"
#include "tests/support/World.h"

namespace support {
namespace {

using NZELVOR20::TCIMValue;

const diagsrunner::RunKey kRun{"Disk Test", "job-1"};

diagsrunner::Records recordsOf(World& world) {
  return diagsrunner::enumerateRecords(world.theClass(kCompletionRecord), {});
}

std::string labelOfFound(World& world, const diagsrunner::RunKey& run = kRun) {
  return describe(diagsrunner::findRecord(recordsOf(world), run));
}

struct Candidate {
  const char* name;
  std::function<void(ScriptedInstance&)> change;
  bool belongs;
};

std::function<void(ScriptedInstance&)> setting(const char* name, const TCIMValue& value) {
  return [=](ScriptedInstance& record) { record.set(name, value); };
}

std::function<void(ScriptedInstance&)> emptying(const char* name) {
  return [=](ScriptedInstance& record) { record.setEmpty(name); };
}

const Candidate kCandidates[] = {
    {"as it should be", [](ScriptedInstance&) {}, true},
    {"null element name", setting("ManagedElementName", TCIMValue()), false},
    {"empty handle of the element name", emptying("ManagedElementName"), false},
    {"element name without text", setting("ManagedElementName", ""), true},
    {"null service name", setting("ServiceName", TCIMValue()), false},
    {"empty handle of the service name", emptying("ServiceName"), false},
    {"service name around the test name", setting("ServiceName", "a Disk Test!"), true},
    {"service name in another case", setting("ServiceName", "disk test"), false},
    {"part of the test name", setting("ServiceName", "Disk Tes"), false},
    {"identifier that is the job's", setting("InstanceID", "job-1"), true},
    {"identifier around the job's", setting("InstanceID", "xjob-12"), true},
    {"identifier in another case", setting("InstanceID", "Job-1"), false},
    {"identifier of another job", setting("InstanceID", "job-2"), false},
    {"null identifier", setting("InstanceID", TCIMValue()), false},
    {"number as the identifier", setting("InstanceID", TCIMValue::Uint16(1)), false}};

TEST(RecordSearch, ARecordBelongsToTheRunByItsServiceAndItsIdentifier) {
  for (const Candidate& candidate : kCandidates) {
    World world;
    candidate.change(*world.addRecord("Disk Test", "record for job-1", "OK"));
    EXPECT_EQ(labelOfFound(world), candidate.belongs ? "inst record1" : "inst (empty)")
        << candidate.name;
  }
}

TEST(RecordSearch, EachTestReadsItsPropertyAfreshAndInItsOrder) {
  World world;
  world.addRecord("Disk Test", "record for job-1", "OK");
  labelOfFound(world);
  EXPECT_EQ(world.journal.all(),
            text(joined({{recordEnumeration("{}")}, selectionRead("record1")})));
}

TEST(RecordSearch, ATestThatFailsIsTheLastOfItsRecord) {
  World world;
  world.addRecord("Disk Test", "record for job-1", "OK")->set("ManagedElementName", TCIMValue());
  world.addRecord("Disk Test", "record for job-1", "OK")->set("ServiceName", TCIMValue());
  world.addRecord("Other Test", "record for job-1", "OK");
  world.addRecord("Disk Test", "record for job-2", "OK");
  EXPECT_EQ(labelOfFound(world), "inst (empty)");
  EXPECT_EQ(world.journal.all(), text(joined({{recordEnumeration("{}")},
                                              valueRead("record1", "ManagedElementName"),
                                              valueRead("record2", "ManagedElementName"),
                                              valueRead("record2", "ServiceName"),
                                              valueRead("record3", "ManagedElementName"),
                                              valueRead("record3", "ServiceName"),
                                              valueRead("record3", "ServiceName"),
                                              selectionRead("record4")})));
}

TEST(RecordSearch, TheFirstThatBelongsEndsTheSearch) {
  World world;
  world.addRecord("Disk Test", "record for job-2", "OK");
  world.addRecord("Disk Test", "record for job-1", "OK");
  world.addRecord("Disk Test", "record for job-1", "OK");
  EXPECT_EQ(labelOfFound(world), "inst record2");
  EXPECT_EQ(world.journal.calls().find("record3"), std::string::npos);
}

TEST(RecordSearch, EmptyTextsAreContainedInEveryText) {
  World world;
  world.addRecord("", "", "OK");
  EXPECT_EQ(labelOfFound(world, {"", ""}), "inst record1");
}

TEST(RecordSearch, AnEmptyHandleAmongTheRecordsIsSkipped) {
  World world;
  world.theClass(kCompletionRecord)->add({});
  world.addRecord("Disk Test", "record for job-1", "OK");
  EXPECT_EQ(labelOfFound(world), "inst record1");
}

TEST(RecordSearch, AnEmptyIdentifierPropertyIsAnException) {
  World world;
  world.addRecord("Disk Test", "record for job-1", "OK")->setEmpty("InstanceID");
  const Outcome outcome = outcomeOf([&] { return labelOfFound(world); });
  EXPECT_EQ(outcome.kind, Outcome::Kind::standardException);
  EXPECT_EQ(outcome.text, "diagsrunner: no property InstanceID");
}

TEST(RecordSearch, AnEmptyClassHasNoRecords) {
  World world;
  EXPECT_TRUE(diagsrunner::enumerateRecords({}, {}).empty());
  EXPECT_EQ(world.journal.all(), "");
}

TEST(RecordSearch, EnumeratesWithTheOptionsThatItIsGiven) {
  World world;
  diagsrunner::enumerateRecords(world.theClass(kCompletionRecord), {{"nspID", TCIMValue("x")}});
  EXPECT_EQ(world.journal.all(), lines({recordEnumeration("{nspID=\"x\"}")}));
}

TEST(RecordSearch, TheClassIsAskedForWithTheOptionsAndWantsANamespace) {
  World world;
  world.theClass(kCompletionRecord);
  const NZELVOR20::TOptionsMap options{{"nspID", TCIMValue("x")}};
  EXPECT_TRUE(diagsrunner::completionRecordClass(world.hostHandle, options));
  EXPECT_EQ(world.journal.all(), lines({recordClassCall("host", "{nspID=\"x\"}")}));
  EXPECT_THROW(diagsrunner::completionRecordClass({}, options), std::runtime_error);
}

}  // namespace
}  // namespace support
