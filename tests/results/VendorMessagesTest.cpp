#include <gtest/gtest.h>

#include "results/VendorMessages.h"
#include "tests/results/Events.h"
#include "tests/support/ForeignCapital.h"
#include "tests/support/Outcome.h"
#include "tests/support/World.h"

namespace support {
namespace {

using NZELVOR20::TCIMValue;

TEST(VendorTest, IsRecognisedByItsIdentifier) {
  const std::pair<const char*, bool> rows[] = {{"BRCM: NIC,nic0,NIC", true},
                                               {"Link,BRCM0,NIC", true},
                                               {"Link,nic0,a BRCM card", true},
                                               {"Brocade HBA,hba0,HBA", true},
                                               {"DiskDefault,disk0,Disk", true},
                                               {"IANet,nic0,NIC", true},
                                               {"Nvidia,gpu0,GPU", true},
                                               {"NVIDIA,gpu0,GPU", true},
                                               {"nvidia,gpu0,GPU", false},
                                               {"xELXUCNA,nic0,NIC", true},
                                               {"Elx,nic0,NIC", false},
                                               {"brcm,nic0,NIC", false},
                                               {"BROCADE,hba0,HBA", false},
                                               {"Disk Default,disk0,Disk", false},
                                               {"Fusion-io diag service,d,D", true},
                                               {"diag service,FIO,D", true},
                                               {"diag service,d,ZEL", true},
                                               {"zel:x:diag service,d,D", false},
                                               {"ZEL:x,d,D", false},
                                               {"Fusion-io,d,D", false},
                                               {"ZEL:x:Diag Service,d,D", false},
                                               {"diag service,d,D", false},
                                               {"", false}};
  for (const auto& [id, isVendor] : rows) {
    EXPECT_EQ(diagsrunner::isVendorTest(id), isVendor) << id;
  }
}

VendorMessageRecord message(const std::string& state, const std::string& code,
                            const std::vector<std::string>& messages = {},
                            const std::vector<std::pair<std::string, std::string>>& actions = {}) {
  return {"", code, state, messages, actions};
}

VendorMessages table(const std::string& key, const std::vector<VendorMessageRecord>& records) {
  VendorMessages messages;
  for (const VendorMessageRecord& record : records) {
    messages.emplace(key, record);
  }
  return messages;
}

/// The record data after the messages were put in front of "former".
std::string explained(const std::string& testName, const std::string& state,
                      const VendorMessages& messages) {
  World world;
  const InstancePtr record = world.addRecord("service", "id", state, "former");
  diagsrunner::addVendorMessages(record->handle(), testName, messages);
  return record->value("RecordData").ToText();
}

TEST(VendorMessages, ReadTheStateAndThenTheDataAndWriteOnce) {
  World world;
  const InstancePtr record = world.addRecord("service", "id", "OK", "former");
  diagsrunner::addVendorMessages(record->handle(), "BRCM Test",
                                 table("brcm test", {message("ok", "0x1", {"Fine."})}));
  EXPECT_EQ(
      world.journal.all(),
      text(joined({renderingRead("record1", "CompletionState"),
                   {trace("testName :brcm test")},
                   renderingRead("record1", "RecordData"),
                   {"inst record1.SetProperty(\"RecordData\", \"0x1 : Fine.\\nformer\", {})"}})));
}

TEST(VendorMessages, TheDiagServiceFamilySharesOneKeyAndLogsWhatItLooksFor) {
  World world;
  const InstancePtr record = world.addRecord("service", "id", "Warning", "former");
  diagsrunner::addVendorMessages(
      record->handle(), "ZEL:ethernet:Diag Service",
      table("fusion-io:diag service", {message("ok", "0x0001", {"First line", "Second line"},
                                               {{"1", "Check cable"}, {"2", "Replace card"}})}));
  EXPECT_EQ(world.journal.log(), lines({trace("testName :zel:ethernet:diag service"),
                                        trace("update test name for :fusion-io:diag service"),
                                        trace("testStatus :warning")}));
  EXPECT_EQ(record->value("RecordData").ToText(),
            "0x0001 : Second line\n1. Check cable\n2. Replace card\nformer");
}

TEST(VendorMessages, AreChosenByTheWholeStateInLowerCase) {
  const VendorMessages messages =
      table("brcm", {message("ok", "1"), message("warning", "2"), message("aborted", "3"),
                     message("failed", "4"), message("", "5"), message("user aborted", "6")});
  const std::pair<const char*, const char*> rows[] = {
      {"OK", "1 : former"},       {"Warning", "2 : former"}, {"ABORTED", "3 : former"},
      {"Failed", "4 : former"},   {"", "5 : former"},        {"User Aborted", "6 : former"},
      {"Completed OK", "former"}, {"Incomplete", "former"},  {"ok ", "former"}};
  for (const auto& [state, data] : rows) {
    EXPECT_EQ(explained("BRCM", state, messages), data) << quoted(state);
  }
}

// Catches a state that the host's language turns into one that no file has; names are lowered by
// it, here and where the file is read.
TEST(VendorMessages, AreChosenByTheSameStateInEveryLocale) {
  const ForeignCapital turkish('I');
  EXPECT_EQ(
      explained("BRCM DISK", "Incomplete", table("brcm d\xFDsk", {message("incomplete", "1")})),
      "1 : former");
}

TEST(VendorMessages, TheOutcomeOfTheFamilyIsOneOfThree) {
  const VendorMessages messages =
      table("fusion-io:diag service",
            {message("ok", "1"), message("warning", "2"), message("aborted", "3"),
             message("failed", "4"), message("incomplete", "5")});
  const std::pair<const char*, const char*> rows[] = {{"OK", "1 : former"},
                                                      {"Completed OK", "1 : former"},
                                                      {"ok", "1 : former"},
                                                      {"Warning", "1 : former"},
                                                      {"A WARNING", "1 : former"},
                                                      {"booked", "1 : former"},
                                                      {"Aborted", "3 : former"},
                                                      {"Aborted, Warning", "1 : former"},
                                                      {"Incomplete", "4 : former"},
                                                      {"Failed", "4 : former"},
                                                      {"", "4 : former"}};
  for (const auto& [state, data] : rows) {
    EXPECT_EQ(explained("FIO:drive:diag service", state, messages), data) << quoted(state);
  }
}

TEST(VendorMessages, TheFamilyFindsNothingUnderItsOwnName) {
  EXPECT_EQ(explained("FIO:drive:diag service", "OK",
                      table("fio:drive:diag service", {message("ok", "1")})),
            "former");
}

TEST(VendorMessages, ATestOfTheVendorOutsideTheFamilyKeepsItsName) {
  EXPECT_EQ(explained("ZEL:memory", "OK", table("zel:memory", {message("ok", "1")})), "1 : former");
}

TEST(VendorMessages, OnlyTheLastMessageLineSurvivesAndEveryActionFollows) {
  const std::pair<VendorMessageRecord, const char*> rows[] = {
      {message("ok", "E"), "E : former"},
      {message("ok", ""), " : former"},
      {message("ok", "E", {"one"}), "E : one\nformer"},
      {message("ok", "E", {"one", "two", "three"}), "E : three\nformer"},
      {message("ok", "E", {"one", ""}), "E : \nformer"},
      {message("ok", "E", {}, {{"1", "do"}}), "E : 1. do\nformer"},
      {message("ok", "E", {"m"}, {{"2", "do"}, {"1", "then"}}), "E : m\n2. do\n1. then\nformer"},
      {message("ok", "E", {}, {{"", ""}}), "E : . \nformer"}};
  for (const auto& [record, data] : rows) {
    EXPECT_EQ(explained("BRCM", "OK", table("brcm", {record})), data);
  }
}

TEST(VendorMessages, EveryEntryOfTheStateContributesInTableOrder) {
  const VendorMessages messages =
      table("brcm", {message("ok", "2", {"two"}), message("failed", "9"), message("ok", "1"),
                     message("ok", "3", {"three"})});
  EXPECT_EQ(explained("BRCM", "OK", messages), "2 : two\n1 : 3 : three\nformer");
}

TEST(VendorMessages, NeighbouringKeysAreLeftAlone) {
  VendorMessages messages = table("brc", {message("ok", "1")});
  messages.merge(table("brcm test", {message("ok", "2")}));
  messages.merge(table("", {message("ok", "3")}));
  EXPECT_EQ(explained("BRCM", "OK", messages), "former");
}

TEST(VendorMessages, WithoutAMessageTheDataIsRewrittenToItsOwnText) {
  World world;
  const InstancePtr record = world.addRecord("service", "id", "OK");
  record->set("RecordData", TCIMValue::Uint16(7), "rendered");
  diagsrunner::addVendorMessages(record->handle(), "BRCM", {});
  EXPECT_EQ(world.journal.countOf("inst record1.SetProperty(\"RecordData\", \"rendered\", {})"), 1);
}

TEST(VendorMessages, TwiceForOneRunStandTwiceInFront) {
  World world;
  const InstancePtr record = world.addRecord("service", "id", "OK", "former");
  const VendorMessages messages = table("brcm", {message("ok", "1", {"m"})});
  diagsrunner::addVendorMessages(record->handle(), "BRCM", messages);
  diagsrunner::addVendorMessages(record->handle(), "BRCM", messages);
  EXPECT_EQ(record->value("RecordData").ToText(), "1 : m\n1 : m\nformer");
}

TEST(VendorMessages, ARecordWithoutStateOrDataIsAnException) {
  for (const char* property : {"CompletionState", "RecordData"}) {
    World world;
    const InstancePtr record = world.addRecord("service", "id", "OK");
    record->setEmpty(property);
    const Outcome outcome = outcomeOf([&] {
      diagsrunner::addVendorMessages(record->handle(), "BRCM", {});
      return std::string();
    });
    EXPECT_EQ(outcome.kind, Outcome::Kind::standardException);
    EXPECT_EQ(outcome.text, std::string("diagsrunner: no property ") + property);
  }
}

}  // namespace
}  // namespace support
