#include <gtest/gtest.h>

#include "engine/worker/model/RunRecords.h"
#include "framework/ICIMNamespace.h"
#include "tests/support/World.h"

namespace engine::worker {
namespace {

using NZELVOR20::TCIMValue;

constexpr const char* kRecords = "CIM_DiagnosticServiceRecord";

class RunRecordsTest : public ::testing::Test {
 protected:
  /// A record that the second enumeration is the first to hand out, unless `from` says otherwise.
  support::InstancePtr addRecord(const std::string& id, const std::string& format,
                                 const std::string& data, int from = 2) {
    const auto record =
        support::ScriptedInstance::makePlain(id, {kRecords, "InstanceID", id, records});
    record->set("InstanceID", TCIMValue(id));
    record->set("ServiceName", TCIMValue("ACME: Fan Test"));
    record->set("RecordType", TCIMValue::Uint16(2));
    record->set("RecordFormat", TCIMValue(format));
    record->set("RecordData", TCIMValue(data));
    records->add(record, from);
    return record;
  }
  /// What a run left between the first and the second enumeration.
  std::string found(const std::string& service = "ACME: Fan Test") {
    const RunRecords::Findings findings = RunRecords(world.root->handle()).collect(service);
    std::string text;
    for (const Measurement& one : findings.measurements) text += one.name + " ";
    for (const std::string& problem : findings.problems) text += "! " + problem;
    return text;
  }

  support::World world;
  support::ClassPtr records = world.theClass(kRecords);
};

TEST_F(RunRecordsTest, ThoseThatCameAreReadInTheirOrder) {
  addRecord("job:0", "|uint8 Former", "|1", 1);
  addRecord("job:1", "|uint8 Speed|uint8 Turns", "|1|2");
  addRecord("job:2", "*uint8 Errors", "*0");
  EXPECT_EQ(found(), "Speed Turns Errors ");
}

TEST_F(RunRecordsTest, FreeTextIsNoMeasurement) {
  addRecord("job:1", "", "blade 2 is loose");
  EXPECT_EQ(found(), "");
}

TEST_F(RunRecordsTest, OneThatCannotBeReadIsNamedAndTheOthersAreRead) {
  addRecord("job:1", "|uint8 Speed", "|fast");
  addRecord("job:2", "|uint8 Turns", "|2");
  EXPECT_EQ(found(), "Turns ! record job:1: value 1, of Speed, is no uint8: fast");
}

TEST_F(RunRecordsTest, OnlyResultsAndStatisticsAreRead) {
  struct Row {
    std::uint16_t type;
    const char* found;
  };
  std::string wanted;
  for (const Row& row : {Row{2, "Results "}, Row{3, ""}, Row{7, ""}, Row{8, ""}, Row{9, ""},
                         Row{10, "Statistics "}, Row{14, ""}}) {
    const auto record = addRecord("job:" + std::to_string(row.type),
                                  row.type == 10 ? "|uint8 Statistics" : "|uint8 Results", "|1");
    record->set("RecordType", TCIMValue::Uint16(row.type));
    wanted += row.found;
  }
  EXPECT_EQ(found(), wanted);
}

TEST_F(RunRecordsTest, ThoseOfOtherServicesAreLeftOut) {
  addRecord("job:1", "|uint8 Speed", "|1")->set("ServiceName", TCIMValue("ACME: Pump Test"));
  addRecord("job:2", "|uint8 Turns", "|2")->setEmpty("ServiceName");
  EXPECT_EQ(found(), "Turns ");
}

TEST_F(RunRecordsTest, ARecordThatLacksItsTypeOrDataIsNoTrouble) {
  const auto record = addRecord("job:1", "|uint8 Speed", "|1");
  record->remove("RecordType");
  record->remove("RecordData");
  EXPECT_EQ(found(), "");
}

TEST_F(RunRecordsTest, WithoutTheClassThereAreNone) {
  world.root->removeClass(kRecords);
  EXPECT_EQ(found(), "");
}

TEST_F(RunRecordsTest, AFailingEnumerationIsAProblemInWords) {
  addRecord("job:1", "|uint8 Speed", "|1");
  world.script.failOn("EnumerateInstances", support::Fault::vorException, 1, 1);
  EXPECT_EQ(found().rfind("! the records of results: ", 0), 0U);
}

// What cannot be told from before is better told twice than not at all.
TEST_F(RunRecordsTest, AFailureBeforeTheRunHidesNothingAfterIt) {
  addRecord("job:1", "|uint8 Speed", "|1", 1);
  world.script.failOn("EnumerateInstances", support::Fault::vorException, 1);
  EXPECT_EQ(found(), "Speed ");
}

}  // namespace
}  // namespace engine::worker
