#include <gtest/gtest.h>

#include "execution/RecordAssociation.h"
#include "tests/results/Events.h"
#include "tests/support/Outcome.h"
#include "tests/support/World.h"

namespace support {
namespace {

using NZELVOR20::TCIMValue;

const NZELVOR20::TOptionsMap kOptions{{"nspID", TCIMValue("cmpi")}};
const std::string kNotFound =
    trace("DiagsRunner::HandleConcrete concreteJobID not found for Fusion-io diags.");

std::string find(World& world, const std::string& deviceID = "dev") {
  return diagsrunner::findRecordKey(world.root->handle(), deviceID, kOptions);
}

/// What one association logs.
Events logged(const std::string& antecedent, const std::string& dependent) {
  return {trace("DiagsRunner::HandleConcrete Antecedent = " + antecedent),
          trace("DiagsRunner::HandleConcrete Dependent = " + dependent)};
}

const std::string kRecord = "CIM_DiagnosticCompletionRecord.InstanceID=\"rec-1\"";
const std::string kElement = "CIM_X.DeviceID=\"dev\"";

TEST(RecordAssociation, ReadsBothEndsAndTakesTheRecordsKey) {
  World world;
  world.addApplies(kRecord, kElement);
  world.journal.clear();
  EXPECT_EQ(find(world), "rec-1");
  EXPECT_EQ(world.journal.all(),
            text(joined({{"ns root.GetClass(\"CIM_RecordAppliesToElement\", {nspID=\"cmpi\"})",
                          "class CIM_RecordAppliesToElement.EnumerateInstances(deep=true, "
                          "{nspID=\"cmpi\"})"},
                         valueRead("applies1", "Antecedent"),
                         valueRead("applies1", "Dependent"),
                         logged(kRecord, kElement),
                         {trace("matchDeviceID: \"dev\"")}})));
}

TEST(RecordAssociation, ReferencesAreReadAsTheirPaths) {
  World world;
  const InstancePtr record = world.addRecord("service", "rec-7", "OK");
  world.addApplies(record, world.addInstance("disk", "CIM_Disk", "DeviceID", "dev"));
  EXPECT_EQ(find(world), "rec-7");
}

struct Candidate {
  const char* name;
  std::string antecedent;
  std::string dependent;
  const char* key;  ///< empty when there is none
};

TEST(RecordAssociation, TheKeyIsTheFirstQuotedTextOfARecordOfTheElement) {
  const Candidate candidates[] = {
      {"as it should be", kRecord, kElement, "rec-1"},
      {"antecedent of another class", "CIM_Record.InstanceID=\"rec-1\"", kElement, ""},
      {"class name in another case", "cim_diagnosticcompletionrecord.ID=\"rec-1\"", kElement, ""},
      {"subclass", "X_DiagnosticCompletionRecordX.ID=\"rec-1\"", kElement, "rec-1"},
      {"other element", kRecord, "CIM_X.DeviceID=\"other\"", ""},
      {"element whose name only begins so", kRecord, "CIM_X.DeviceID=\"dev1\"", ""},
      {"element without quotes", kRecord, "CIM_X.DeviceID=dev", ""},
      {"element in another case", kRecord, "CIM_X.DeviceID=\"DEV\"", ""},
      {"quoted element anywhere", kRecord, "CIM_X.A=\"b\",DeviceID=\"dev\",C=\"d\"", "rec-1"},
      {"several keys", "DiagnosticCompletionRecord.A=\"a\",B=\"b\"", kElement, "a"},
      {"no quote", "DiagnosticCompletionRecord.A=a", kElement, ""},
      {"one quote", "DiagnosticCompletionRecord.A=\"a", kElement, ""},
      {"nothing between the quotes", "DiagnosticCompletionRecord.A=\"\"", kElement, ""},
      {"nothing between the first two of several", "DiagnosticCompletionRecord.A=\"\",B=\"b\"",
       kElement, ""},
      {"empty ends", "", "", ""}};
  for (const Candidate& candidate : candidates) {
    World world;
    world.addApplies(candidate.antecedent, candidate.dependent);
    EXPECT_EQ(find(world), candidate.key) << candidate.name;
    EXPECT_EQ(world.journal.countOf(kNotFound), *candidate.key == '\0' ? 1 : 0) << candidate.name;
  }
}

TEST(RecordAssociation, TheLastMatchCountsAndEachIsLogged) {
  World world;
  const std::string second = "CIM_DiagnosticCompletionRecord.InstanceID=\"rec-2\"";
  world.addApplies(kRecord, kElement);
  world.addApplies(second, kElement);
  world.addApplies("CIM_Log.Name=\"log\"", kElement);
  world.addApplies(kRecord, "CIM_X.DeviceID=\"other\"");
  world.journal.clear();
  EXPECT_EQ(find(world), "rec-2");
  const Events matching = {trace("matchDeviceID: \"dev\"")};
  EXPECT_EQ(world.journal.log(),
            text(joined({logged(kRecord, kElement), matching, logged(second, kElement), matching,
                         logged("CIM_Log.Name=\"log\"", kElement),
                         logged(kRecord, "CIM_X.DeviceID=\"other\""), matching})));
}

TEST(RecordAssociation, AMatchWithoutAKeyDoesNotTakeAnEarlierOneAway) {
  World world;
  world.addApplies(kRecord, kElement);
  world.addApplies("DiagnosticCompletionRecord without quotes", kElement);
  EXPECT_EQ(find(world), "rec-1");
}

// Catches an empty key that counts as none: the last match decides, and it has no name.
TEST(RecordAssociation, AMatchWithAnEmptyKeyTakesAnEarlierOneAway) {
  World world;
  world.addApplies(kRecord, kElement);
  world.addApplies("DiagnosticCompletionRecord.A=\"\",B=\"b\"", kElement);
  EXPECT_EQ(find(world), "");
  EXPECT_EQ(world.journal.countOf(kNotFound), 1);
}

TEST(RecordAssociation, AnEmptyDeviceIDIsSoughtBetweenQuotes) {
  World world;
  world.addApplies(kRecord, "CIM_X.DeviceID=\"\"");
  EXPECT_EQ(find(world, ""), "rec-1");
  EXPECT_EQ(world.journal.countOf(trace("matchDeviceID: \"\"")), 1);
}

TEST(RecordAssociation, WithoutAssociationsTheMissingKeyIsLogged) {
  World world;
  world.theClass(kRecordApplies);
  EXPECT_EQ(find(world), "");
  EXPECT_EQ(world.journal.log(), lines({kNotFound}));
}

TEST(RecordAssociation, AnEmptyClassCountsAsOneWithoutInstances) {
  World world;
  world.root->setEmptyClass(kRecordApplies);
  EXPECT_EQ(find(world), "");
  EXPECT_EQ(world.journal.log(), lines({kNotFound}));
}

TEST(RecordAssociation, AnEmptyHandleAmongTheAssociationsIsSkipped) {
  World world;
  world.theClass(kRecordApplies)->add({});
  world.addApplies(kRecord, kElement);
  EXPECT_EQ(find(world), "rec-1");
}

TEST(RecordAssociation, AnEmptyEndIsNamedInTheException) {
  for (const char* end : {"Antecedent", "Dependent"}) {
    World world;
    world.addApplies(kRecord, kElement)->setEmpty(end);
    const Outcome outcome = outcomeOf([&] { return find(world); });
    EXPECT_EQ(outcome.kind, Outcome::Kind::standardException) << end;
    EXPECT_EQ(outcome.text, std::string("diagsrunner: no property ") + end);
  }
}

TEST(RecordAssociation, TheVendorsAreRecognisedByTheName) {
  struct Name {
    const char* name;
    bool hasVendor;
    bool hasAssociation;
  };
  for (const Name& row : {Name{"Fusion-io:drive:diag service", true, true},
                          {"FIO:drive:diag service", true, true},
                          {"ZEL:drive:diag service", true, true},
                          {"a ZEL:drive:diag service b", true, true},
                          {":diag service FIO:", true, true},
                          {"Fusion-io:", true, false},
                          {"ZEL:drive", true, false},
                          {"ZEL:Diag Service", true, false},
                          {"ZEL:drive diag service", true, false},
                          {"Fusion-io", false, false},
                          {"fusion-io:drive:diag service", false, false},
                          {"zel:drive:diag service", false, false},
                          {"drive:diag service", false, false},
                          {"", false, false}}) {
    EXPECT_EQ(diagsrunner::hasRecordVendor(row.name), row.hasVendor) << row.name;
    EXPECT_EQ(diagsrunner::hasRecordAssociation(row.name), row.hasAssociation) << row.name;
  }
}

}  // namespace
}  // namespace support
