#include "providers/common/model/DiagnosticModel.h"
#include "tests/providers/common/ShowValue.h"
#include "tests/providers/common/model/ProviderFixture.h"

namespace providers {
namespace {

class DiagnosticModelTest : public ProviderFixture {};

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

// What the machine lacks is not offered: lists are made of these instances.
TEST_F(DiagnosticModelTest, WithoutADeviceATestIsAvailableToNobody) {
  diagnostic.removeDevices();
  EXPECT_TRUE(model.instances("DIAGS_FanTestForElement").empty());
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
  EXPECT_EQ(asBoolean(onlyRecord("DIAGS_FanTest").get("Started")), true);
  services.runWork();
  EXPECT_EQ(number(onlyRecord("DIAGS_Fan"), "EnabledState"), 2U);
  EXPECT_EQ(asBoolean(onlyRecord("DIAGS_FanTest").get("Started")), false);
}

TEST_F(DiagnosticModelTest, TheCompletionRecordSaysHowTheRunEnded) {
  runToEnd(onFan());
  const Properties record = onlyRecord("DIAGS_FanDiagnosticCompletionRecord");
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
  const Properties record = onlyRecord("DIAGS_FanDiagnosticCompletionRecord");
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

/// After a run of 2.5 seconds that found three errors, with the job submitted at 1 second.
class EveryProperty : public DiagnosticModelTest {
 protected:
  EveryProperty() {
    diagnostic.removeDevices();
    diagnostic.addDevice("fan0", "Front Fan", {{"Speed", std::uint16_t{900}, false}});
    DiagnosticDescription& description = diagnostic.describe();
    description.text = "Turns fans.";
    description.testProperties = {{"TestTypes", std::vector<std::uint16_t>{2}, false}};
    description.capabilities = {{"Seed", true, false}};
    description.defaultSettings = {{"QuickMode", false, false}};
  }
  void runWithErrors() {
    Outcome outcome = failureWith(3);
    outcome.summary = "3 errors";
    outcome.notes.push_back({RecordType::DeviceErrors, "blade 2\n", {{"E1", 3}}});
    diagnostic.script({outcome});
    diagnostic.onRun([this](RunControl& control) {
      control.status("Turning");
      now += 2'500'000;
    });
    start(onFan());
    now += 500'000;
    services.runWork();
    now += 1'000'000;
  }
  std::string shown(const std::string& className) {
    return show(onlyRecord("DIAGS_Fan" + className));
  }
  const std::string system =
      "SystemCreationClassName*=\"DIAGS_ComputerSystem\"\n"
      "SystemName*=\"host1\"\n";
  const std::string devicePath =
      "DIAGS_Fan.SystemCreationClassName*=\"DIAGS_ComputerSystem\";SystemName*=\"host1\";"
      "CreationClassName*=\"DIAGS_Fan\";DeviceID*=\"fan0\";\n";
  const std::string servicePath =
      "DIAGS_FanTest.SystemCreationClassName*=\"DIAGS_ComputerSystem\";SystemName*=\"host1\";"
      "CreationClassName*=\"DIAGS_FanTest\";Name*=\"DIAGS: Fan Test\";\n";
  const std::string systemPath =
      "DIAGS_ComputerSystem.CreationClassName*=\"DIAGS_ComputerSystem\";Name*=\"host1\";\n";
};

TEST_F(EveryProperty, OfTheComputer) {
  EXPECT_EQ(show(onlyRecord("DIAGS_ComputerSystem")),
            "CreationClassName*=\"DIAGS_ComputerSystem\"\nName*=\"host1\"\nElementName=\"host1\"\n"
            "NameFormat=\"Other\"\nOperationalStatus=[uint16 2]\nEnabledState=uint16 2\n");
}

TEST_F(EveryProperty, OfADevice) {
  EXPECT_EQ(shown(""), system +
                           "CreationClassName*=\"DIAGS_Fan\"\nDeviceID*=\"fan0\"\n"
                           "ElementName=\"Front Fan\"\nOperationalStatus=[uint16 2]\n"
                           "HealthState=uint16 5\nEnabledState=uint16 2\nSpeed=uint16 900\n");
}

TEST_F(EveryProperty, OfTheTest) {
  EXPECT_EQ(shown("Test"),
            system +
                "CreationClassName*=\"DIAGS_FanTest\"\nName*=\"DIAGS: Fan Test\"\n"
                "ElementName=\"Fan Test\"\nCaption=\"Fan Test\"\nDescription=\"Turns fans.\"\n"
                "Started=false\nEnabledState=uint16 2\nOperationalStatus=[uint16 2]\n"
                "TestTypes=[uint16 2]\n");
}

TEST_F(EveryProperty, OfSettingsAndCapabilities) {
  EXPECT_EQ(
      shown("TestSettings"),
      "InstanceID*=\"DIAGS:DIAGS_FanTestSettings:DIAGS: Fan Test:default\"\n"
      "ElementName=\"Defaults of the Fan Test\"\nLoopControl=null\nLoopControlParameter=null\n"
      "ResultPersistence=null\nLoops=uint32 1\nSeconds=uint32 0\nQuickMode=false\n");
  EXPECT_EQ(shown("TestCapabilities"),
            "InstanceID*=\"DIAGS:DIAGS_FanTestCapabilities:DIAGS: Fan Test\"\n"
            "ElementName=\"Capabilities of the Fan Test\"\nSeed=true\n");
}

TEST_F(EveryProperty, OfAJobThatHasEnded) {
  runWithErrors();
  EXPECT_EQ(shown("TestJob"),
            "InstanceID*=\"DIAGS:job1\"\nName=\"Fan Test on Front Fan\"\n"
            "ElementName=\"Fan Test on Front Fan\"\nJobState=uint16 7\n"
            "PercentComplete=uint16 100\nJobStatus=\"Turning\"\n"
            "OperationalStatus=[uint16 17, uint16 2]\nTimeSubmitted=time 1000000\n"
            "StartTime=time 1000000\nTimeOfLastStateChange=time 4000000\n"
            "ElapsedTime=interval 3000000\nTimeBeforeRemoval=interval 300000000\n"
            "DeleteOnCompletion=true\nLocalOrUtcTime=uint16 2\nJobRunTimes=uint32 1\n"
            "ErrorCode=uint16 0\n");
}

TEST_F(EveryProperty, OfACompletionRecord) {
  runWithErrors();
  EXPECT_EQ(shown("DiagnosticCompletionRecord"),
            "InstanceID*=\"DIAGS:job1:1\"\nElementName=\"DIAGS: Fan Test on Front Fan\"\n"
            "ServiceName=\"DIAGS: Fan Test\"\nManagedElementName=\"Front Fan\"\n"
            "CreationTimeStamp=time 4000000\nExpirationDate=time 86404000000\n"
            "RecordType=uint16 2\nRecordFormat=\"\"\nRecordData=\"broken\n\"\n"
            "PerceivedSeverity=uint16 5\nErrorCode=[\"E1\"]\nErrorCount=[uint32 3]\n"
            "Caption=\"3 errors\"\nCompletionState=uint16 5\nLoopsPassed=uint32 0\n"
            "LoopsFailed=uint32 1\n");
}

TEST_F(EveryProperty, OfARecordBesideIt) {
  runWithErrors();
  EXPECT_EQ(shown("TestRecord"),
            "InstanceID*=\"DIAGS:job1:0\"\nElementName=\"DIAGS: Fan Test on Front Fan\"\n"
            "ServiceName=\"DIAGS: Fan Test\"\nManagedElementName=\"Front Fan\"\n"
            "CreationTimeStamp=time 4000000\nExpirationDate=time 86404000000\n"
            "RecordType=uint16 7\nRecordFormat=\"\"\nRecordData=\"blade 2\n\"\n"
            "PerceivedSeverity=uint16 5\nErrorCode=[\"E1\"]\nErrorCount=[uint32 3]\n");
}

TEST_F(EveryProperty, OfTheAssociationsOfAnIdleTest) {
  EXPECT_EQ(shown("TestForElement"),
            "ServiceProvided*=" + servicePath + "UserOfService*=" + devicePath +
                "EstimatedDurationOfService=uint16 3\nEstimatedDurationQualifier=uint32 8\n"
                "IsExclusiveForME=true\n");
  EXPECT_EQ(shown("TestElementCapabilities"),
            "ManagedElement*=" + servicePath +
                "Capabilities*=DIAGS_FanTestCapabilities.InstanceID*="
                "\"DIAGS:DIAGS_FanTestCapabilities:DIAGS: Fan Test\";\n");
  EXPECT_EQ(shown("TestElementSettingData"),
            "ManagedElement*=" + servicePath +
                "SettingData*=DIAGS_FanTestSettings.InstanceID*="
                "\"DIAGS:DIAGS_FanTestSettings:DIAGS: Fan Test:default\";\nIsDefault=uint16 1\n");
  EXPECT_EQ(shown("TestHostedService"), "Antecedent*=" + systemPath + "Dependent*=" + servicePath);
  EXPECT_EQ(shown("SystemDevice"),
            "GroupComponent*=" + systemPath + "PartComponent*=" + devicePath);
}

TEST_F(EveryProperty, OfTheAssociationsOfARun) {
  runToEnd(onFan());
  EXPECT_EQ(shown("TestOwningJobElement"),
            "OwningElement*=" + servicePath +
                "OwnedElement*=DIAGS_FanTestJob.InstanceID*=\"DIAGS:job1\";\n");
  EXPECT_EQ(shown("TestAffectedJobElement"),
            "AffectedElement*=" + devicePath +
                "AffectingElement*=DIAGS_FanTestJob.InstanceID*=\"DIAGS:job1\";\n"
                "ElementEffects=[uint16 3]\n");
  EXPECT_EQ(shown("TestRecordAppliesToElement"),
            "Antecedent*=DIAGS_FanDiagnosticCompletionRecord.InstanceID*=\"DIAGS:job1:0\";\n"
            "Dependent*=" +
                devicePath);
}

TEST_F(DiagnosticModelTest, ARecordThatIsKeptForEverHasNoDateOfExpiration) {
  start(withSettings(onFan(), "DiagSetting", {{"ResultPersistence", ~std::uint32_t{0}, false}}));
  services.runWork();
  EXPECT_TRUE(isNull(onlyRecord("DIAGS_FanDiagnosticCompletionRecord").get("ExpirationDate")));
}

TEST_F(DiagnosticModelTest, AnIdleJobHasNotStarted) {
  JobRequest request;
  request.name = "Fan Test on Front Fan";
  const std::string id = registry.open(request).value();
  EXPECT_EQ(number(job(), "JobState"), 2U);
  EXPECT_TRUE(isNull(job().get("StartTime")));
  EXPECT_EQ(std::get<DateTime>(job().get("ElapsedTime")), (DateTime{0, true}));
}

struct StatusRow {
  const char* name;
  std::function<void(JobRegistry&, const std::string&)> change;
  const char* status;
};

TEST_F(DiagnosticModelTest, TheOperationalStatusOfAJobFollowsItsState) {
  using Id = const std::string&;
  for (const StatusRow& row :
       {StatusRow{"new", [](JobRegistry&, Id) {}, "[uint16 15]"},
        StatusRow{"starting", [](JobRegistry&jobs, Id id) { jobs.launch(id); }, "[uint16 2]"},
        StatusRow{"shutting down", [](JobRegistry&jobs, Id id) { jobs.requestState(id, 4); },
                  "[uint16 2]"},
        StatusRow{"completed",
                  [](JobRegistry&jobs, Id id) { jobs.finish(id, outcomeOf(CompletionState::Ok)); },
                  "[uint16 17, uint16 2]"},
        StatusRow{"incomplete",
                  [](JobRegistry&jobs, Id id) {
                    jobs.finish(id, outcomeOf(CompletionState::Incomplete));
                  },
                  "[uint16 17, uint16 6]"},
        StatusRow{
            "stopped",
            [](JobRegistry&jobs, Id id) { jobs.finish(id, outcomeOf(CompletionState::Stopped)); },
            "[uint16 10]"},
        StatusRow{"killed", [](JobRegistry&jobs, Id id) { jobs.kill(id, {}); }, "[uint16 10]"},
        StatusRow{"exception", [](JobRegistry&jobs, Id id) { jobs.fail(id, "no fan"); },
                  "[uint16 17, uint16 6]"}}) {
    const std::string id = registry.open(JobRequest()).value();
    row.change(registry, id);
    const Properties shown = model.job(*registry.job(id)).properties;
    EXPECT_EQ(show(shown.get("OperationalStatus")), row.status) << row.name;
    registry.clear();
  }
}

TEST_F(DiagnosticModelTest, AJobThatWentWrongSaysWhy) {
  registry.fail(registry.open(JobRequest()).value(), "no fan");
  EXPECT_EQ(number(job(), "ErrorCode"), 1U);
  EXPECT_EQ(text(job(), "ErrorDescription"), "no fan");
}

TEST_F(DiagnosticModelTest, ARecordIsAsSevereAsWhatItTells) {
  struct Row {
    CompletionState state;
    std::uint64_t severity;
  };
  for (const Row& row : {Row{CompletionState::Ok, 2}, Row{CompletionState::Warning, 3},
                         Row{CompletionState::Incomplete, 3}, Row{CompletionState::Failed, 5},
                         Row{CompletionState::Aborted, 3}, Row{CompletionState::Stopped, 3}}) {
    registry.finish(registry.open(JobRequest()).value(), outcomeOf(row.state));
    EXPECT_EQ(number(onlyRecord("DIAGS_FanDiagnosticCompletionRecord"), "PerceivedSeverity"),
              row.severity)
        << static_cast<int>(row.state);
    registry.clear();
  }
}

TEST_F(DiagnosticModelTest, ARecordOfATroubleOfTheTestItselfIsDegraded) {
  registry.fail(registry.open(JobRequest()).value(), "no fan");
  const Properties record = onlyRecord("DIAGS_FanTestRecord");
  EXPECT_EQ(number(record, "RecordType"), 8U);
  EXPECT_EQ(number(record, "PerceivedSeverity"), 3U);
}

TEST_F(DiagnosticModelTest, ARunOnOneDeviceIsNotOneOnTheOther) {
  diagnostic.addDevice("fan1", "Rear Fan");
  start(onFan());
  const auto devices = model.instances("DIAGS_Fan");
  EXPECT_EQ(number(devices[0].properties, "EnabledState"), 7U);
  EXPECT_EQ(number(devices[1].properties, "EnabledState"), 2U);
}

TEST_F(DiagnosticModelTest, AClassThatIsNotOursHasNoInstances) {
  EXPECT_TRUE(model.instances("CIM_Fan").empty());
}

TEST_F(DiagnosticModelTest, WhatToDoAboutAFaultIsInItsRecord) {
  Outcome outcome = failureWith(3);
  outcome.correctiveAction = "Replace the fan.\n";
  outcome.part = {"Blade 2", "front, left", "B-17"};
  Note note{RecordType::Warnings, "blade 3 wobbles\n", {}};
  note.correctiveAction = "Tighten blade 3.\n";
  outcome.notes.push_back(note);
  diagnostic.script({outcome});
  runToEnd(onFan());
  const Properties completion = onlyRecord("DIAGS_FanDiagnosticCompletionRecord");
  EXPECT_EQ(text(completion, "CorrectiveAction"), "Replace the fan.\n");
  EXPECT_EQ(text(completion, "FaultyPart"), "Blade 2");
  EXPECT_EQ(text(completion, "FaultyPartLocation"), "front, left");
  EXPECT_EQ(text(completion, "FaultyPartSerialNumber"), "B-17");
  const Properties beside = onlyRecord("DIAGS_FanTestRecord");
  EXPECT_EQ(text(beside, "CorrectiveAction"), "Tighten blade 3.\n");
  EXPECT_TRUE(isNull(beside.get("FaultyPart"))) << "what is not known is null";
  EXPECT_EQ(number(beside, "RecordType"), 5U);
  EXPECT_EQ(number(beside, "PerceivedSeverity"), 3U);
}

}  // namespace
}  // namespace providers
