#include <gtest/gtest.h>

#include "engine/worker/model/Repairs.h"
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

struct RepairRow {
  const char* name;
  std::uint16_t state;  ///< CompletionState, 0 for none
  std::uint16_t severity;
  Verdict verdict;
};

/// Records that say what to do.
class Repairs : public RunRecordsTest {
 protected:
  support::InstancePtr addRepair(const std::string& actions, std::uint16_t severity = 5) {
    const auto record = addRecord("job:1", "", "Blade 2 is loose.\nBlade 3 is not.\n");
    record->set("RecordType", TCIMValue::Uint16(7));
    record->set("PerceivedSeverity", TCIMValue::Uint16(severity));
    record->set("CorrectiveAction", TCIMValue(actions));
    return record;
  }
  std::vector<Diagnosis> diagnoses() {
    return RunRecords(world.root->handle()).collect("ACME: Fan Test").diagnoses;
  }
};

TEST_F(Repairs, AreADiagnosisOfThePartWithItsStepsInTheirOrder) {
  const auto record = addRepair("Tighten blade 2.\r\n\nReplace the fan.\n");
  record->set("FaultyPart", TCIMValue("Blade 2"));
  record->set("FaultyPartLocation", TCIMValue("front, left"));
  record->set("FaultyPartSerialNumber", TCIMValue("B-17"));
  const std::vector<Diagnosis> found = diagnoses();
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].verdict, Verdict::kFail);
  EXPECT_EQ(found[0].text, "Blade 2 is loose.; location front, left; serial number B-17");
  EXPECT_EQ(found[0].part, "Blade 2");
  EXPECT_EQ(found[0].actions, (std::vector<std::string>{"Tighten blade 2.", "Replace the fan."}));
}

TEST_F(Repairs, AreAsBadAsTheStateOfTheRunOrTheSeverityOfTheRecord) {
  for (const RepairRow& row :
       {RepairRow{"passed", 2, 5, Verdict::kPass}, RepairRow{"warned", 3, 5, Verdict::kWarning},
        RepairRow{"failed", 5, 2, Verdict::kFail}, RepairRow{"incomplete", 4, 5, Verdict::kUnknown},
        RepairRow{"information", 0, 2, Verdict::kPass},
        RepairRow{"degraded", 0, 3, Verdict::kWarning}, RepairRow{"minor", 0, 4, Verdict::kWarning},
        RepairRow{"fatal", 0, 7, Verdict::kFail},
        RepairRow{"of no severity", 0, 0, Verdict::kUnknown}}) {
    const auto record =
        support::ScriptedInstance::makePlain("r", {kRecords, "InstanceID", "r", records});
    record->set("CorrectiveAction", TCIMValue("Replace the fan."));
    record->set("PerceivedSeverity", TCIMValue::Uint16(row.severity));
    if (row.state != 0) record->set("CompletionState", TCIMValue::Uint16(row.state));
    const auto found = readRepair(record->handle());
    ASSERT_TRUE(found) << row.name;
    EXPECT_EQ(found->verdict, row.verdict) << row.name;
  }
}

TEST_F(Repairs, AreNoneWithoutAStepAndAPart) {
  addRepair("");
  EXPECT_TRUE(diagnoses().empty());
}

TEST_F(Repairs, OfAFormerRunOrAnotherServiceAreLeftOut) {
  addRecord("job:0", "", "old", 1)->set("CorrectiveAction", TCIMValue("Replace the fan."));
  addRepair("Replace the pump.")->set("ServiceName", TCIMValue("ACME: Pump Test"));
  EXPECT_TRUE(diagnoses().empty());
}

TEST_F(Repairs, AreToldInTheOneLineOfTheRecordWhereItHasOne) {
  addRepair("Replace the fan.")->set("Caption", TCIMValue("3 errors"));
  const std::vector<Diagnosis> found = diagnoses();
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].text, "3 errors");
}

}  // namespace
}  // namespace engine::worker
