#include "providers/common/DiagnosticModel.h"
#include "tests/providers/common/ProviderFixture.h"

namespace providers {
namespace {

using DiagnosticModelTest = ProviderFixture;

PathPtr end(const Instance& association, const std::string& role) {
  const auto* path = std::get_if<PathPtr>(&association.properties.get(role));
  return path ? *path : PathPtr();
}

TEST_F(DiagnosticModelTest, EachDeviceIsAvailableToTheTest) {
  diagnostic.addDevice("fan1", "Rear Fan");
  const auto available = model.instances("DIAGS_FanTestForElement");
  ASSERT_EQ(available.size(), 2U);
  EXPECT_TRUE(*end(available[1], "ServiceProvided") == testPath());
  EXPECT_TRUE(*end(available[1], "UserOfService") == *std::get<PathPtr>(fan(1)));
}

TEST_F(DiagnosticModelTest, WhatAReferenceNamesCanBeFetched) {
  runToEnd(onFan());
  for (const std::string& name : model.associationNames()) {
    const auto associations = model.instances(name);
    EXPECT_FALSE(associations.empty()) << name;
    for (const Instance& association : associations) {
      for (const Property& property : association.properties.all()) {
        if (!property.key) continue;
        EXPECT_TRUE(model.find(*end(association, property.name))) << name << property.name;
      }
    }
  }
}

TEST_F(DiagnosticModelTest, EveryInstanceIsFoundByItsOwnPath) {
  runToEnd(onFan());
  for (const std::string& name : model.classNames()) {
    for (const Instance& instance : model.instances(name)) {
      EXPECT_FALSE(instance.path().keys.empty()) << name;
      EXPECT_TRUE(model.find(instance.path())) << name;
    }
  }
}

TEST_F(DiagnosticModelTest, ADeviceHasItsIdentifierAndItsName) {
  const Properties device = onlyRecord("DIAGS_Fan");
  EXPECT_EQ(text(device, "DeviceID"), "fan0");
  EXPECT_EQ(text(device, "ElementName"), "Front Fan");
  EXPECT_EQ(text(device, "SystemName"), "host1");
  EXPECT_EQ(text(device, "CreationClassName"), "DIAGS_Fan");
}

TEST_F(DiagnosticModelTest, DeviceAndTestShowThatATestIsUnderWay) {
  EXPECT_EQ(number(onlyRecord("DIAGS_Fan"), "EnabledState"), 2U);
  start(onFan());
  EXPECT_EQ(number(onlyRecord("DIAGS_Fan"), "EnabledState"), 7U);
  EXPECT_EQ(asBoolean(model.test().properties.get("Started")), true);
  services.runWork();
  EXPECT_EQ(number(onlyRecord("DIAGS_Fan"), "EnabledState"), 2U);
  EXPECT_EQ(asBoolean(model.test().properties.get("Started")), false);
}

TEST_F(DiagnosticModelTest, TheCompletionRecordSaysHowTheRunEnded) {
  runToEnd(onFan());
  const Properties record = onlyRecord("DIAGS_FanTestCompletionRecord");
  EXPECT_EQ(text(record, "InstanceID"), "DIAGS:job1:0");
  EXPECT_EQ(text(record, "ServiceName"), "DIAGS: Fan Test");
  EXPECT_EQ(text(record, "ManagedElementName"), "Front Fan");
  EXPECT_EQ(number(record, "CompletionState"), 2U);
  EXPECT_EQ(number(record, "RecordType"), 2U);
  EXPECT_EQ(text(record, "RecordFormat"), "");
  EXPECT_EQ(text(record, "RecordData"), "done\n");
  EXPECT_EQ(number(record, "LoopsPassed"), 1U);
}

TEST_F(DiagnosticModelTest, ErrorsAreCountedInParallelLists) {
  diagnostic.script({failureWith(3)});
  runToEnd(onFan());
  const Properties record = onlyRecord("DIAGS_FanTestCompletionRecord");
  EXPECT_EQ(std::get<std::vector<std::string>>(record.get("ErrorCode")),
            std::vector<std::string>{"E1"});
  EXPECT_EQ(std::get<std::vector<std::uint32_t>>(record.get("ErrorCount")),
            std::vector<std::uint32_t>{3});
}

TEST_F(DiagnosticModelTest, AJobOfAFailedDeviceIsAGoodJob) {
  diagnostic.script({failureWith(3)});
  runToEnd(onFan());
  EXPECT_EQ(std::get<std::vector<std::uint16_t>>(job().get("OperationalStatus")),
            (std::vector<std::uint16_t>{17, 2}));
  EXPECT_EQ(number(job(), "ErrorCode"), 0U);
}

TEST_F(DiagnosticModelTest, AJobHasNoErrorCodeBeforeItsEnd) {
  start(onFan());
  EXPECT_TRUE(isNull(job().get("ErrorCode")));
  EXPECT_EQ(number(job(), "JobState"), 3U);
}

TEST_F(DiagnosticModelTest, AClassThatIsNotOursHasNoInstances) {
  EXPECT_TRUE(model.instances("CIM_Fan").empty());
}

}  // namespace
}  // namespace providers
