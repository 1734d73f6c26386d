#include "providers/common/model/DiagnosticProvider.h"
#include "tests/providers/common/ShowValue.h"
#include "tests/providers/common/model/ProviderFixture.h"

namespace providers {
namespace {

class DiagnosticProviderTest : public ProviderFixture {};

int errorOf(const std::function<void()>& operation) {
  try {
    operation();
  } catch (const ProviderError& error) {
    return error.code();
  }
  return 0;
}

TEST_F(DiagnosticProviderTest, ARunReturnsZeroAndTheJobAlone) {
  const MethodResult result = start(onFan());
  EXPECT_EQ(result.returnValue, 0U);
  ASSERT_EQ(result.out.all().size(), 1U);
  EXPECT_EQ(result.out.all()[0].name, "Job");
  EXPECT_TRUE(*std::get<PathPtr>(result.out.get("Job")) == model.jobPath("DIAGS:job1"));
}

TEST_F(DiagnosticProviderTest, TheRunGoesOnAfterTheCallReturned) {
  start(onFan());
  EXPECT_EQ(diagnostic.runs(), 0U);
  services.runWork();
  EXPECT_EQ(diagnostic.runs(), 1U);
  EXPECT_EQ(number(job(), "JobState"), 7U);
}

TEST_F(DiagnosticProviderTest, BothMethodsStartARunInAnyCase) {
  for (const char* method : {"RunDiagnostic", "rundiagnosticservice"}) {
    EXPECT_EQ(provider.invoke(testPath(), method, onFan(), services).returnValue, 0U) << method;
    services.runWork();
  }
  EXPECT_EQ(diagnostic.runs(), 2U);
}

TEST_F(DiagnosticProviderTest, WithoutAnElementTheOnlyDeviceIsTested) {
  Properties in;
  in.set("Job", fan());
  EXPECT_EQ(runToEnd(in).returnValue, 0U);
  EXPECT_EQ(text(job(), "Name"), "Fan Test on Front Fan");
}

TEST_F(DiagnosticProviderTest, WithoutAnElementSeveralDevicesAreAmbiguous) {
  diagnostic.addDevice("fan1", "Rear Fan");
  const MethodResult result = start({});
  EXPECT_EQ(result.returnValue, 5U);
  EXPECT_TRUE(result.out.empty());
  EXPECT_EQ(services.remarks,
            std::vector<std::string>{
                "DIAGS: Fan Test is refused: no element is named, and it is for 2 of them"});
}

TEST_F(DiagnosticProviderTest, WithoutADeviceThereIsNothingToTest) {
  diagnostic.removeDevices();
  EXPECT_EQ(start({}).returnValue, 5U);
  EXPECT_EQ(services.remarks,
            std::vector<std::string>{
                "DIAGS: Fan Test is refused: there is nothing here that it can test"});
}

TEST_F(DiagnosticProviderTest, AnElementThatIsNotOursIsRefusedWithoutOutput) {
  ObjectPath other = *std::get<PathPtr>(fan());
  other.keys.setKey("DeviceID", std::string("fan9"));
  const MethodResult result =
      start({{"ManagedElement", std::make_shared<const ObjectPath>(other), false}});
  EXPECT_EQ(result.returnValue, 5U);
  EXPECT_TRUE(result.out.empty());
}

TEST_F(DiagnosticProviderTest, AnElementThatIsNoReferenceIsRefused) {
  EXPECT_EQ(start({{"ManagedElement", std::string("fan0"), false}}).returnValue, 5U);
}

TEST_F(DiagnosticProviderTest, ASecondRunOnTheSameDeviceIsBusyWithoutOutput) {
  start(onFan());
  const MethodResult second = start(onFan());
  EXPECT_EQ(second.returnValue, 6U);
  EXPECT_TRUE(second.out.empty());
  EXPECT_EQ(
      services.remarks,
      std::vector<std::string>{"DIAGS: Fan Test is refused: Fan Test on Front Fan is under way"});
}

// Who asks may not look at the number.
TEST_F(DiagnosticProviderTest, EveryRefusalIsRemarkedWithItsReason) {
  start(withSettings(onFan(), "DiagSetting", {{"HaltOnError", std::string("yes"), false}}));
  start({{"ManagedElement", std::string("fan0"), false}});
  diagnostic.refuseWith("the fan is too hot");
  start(onFan());
  EXPECT_EQ(services.remarks,
            (std::vector<std::string>{"DIAGS: Fan Test is refused: HaltOnError is no boolean",
                                      "DIAGS: Fan Test is refused: it is not for that element",
                                      "DIAGS: Fan Test is refused: the fan is too hot"}));
}

TEST_F(DiagnosticProviderTest, TheDefaultsThatAClientChangedHoldForARunWithoutSettings) {
  const ObjectPath defaults = model.instances("DIAGS_FanTestSettings").at(0).path();
  const Properties changed{{"Loops", std::uint32_t{2}, false}};
  provider.modify(defaults, changed, nullptr);
  EXPECT_EQ(asNumber(provider.get(defaults).properties.get("Loops")), 2U);
  runToEnd(onFan());
  EXPECT_EQ(diagnostic.runs(), 2U);
  provider.reset();
  runToEnd(onFan());
  EXPECT_EQ(diagnostic.runs(), 3U);
}

TEST_F(DiagnosticProviderTest, WhatARunIsGivenOutweighsTheDefaults) {
  provider.modify(model.instances("DIAGS_FanTestSettings").at(0).path(),
                  {{"Loops", std::uint32_t{2}, false}}, nullptr);
  runToEnd(withSettings(onFan(), "DiagSetting", {{"Loops", std::uint32_t{1}, false}}));
  EXPECT_EQ(diagnostic.runs(), 1U);
}

TEST_F(DiagnosticProviderTest, OnlyTheSettingsCanBeModified) {
  EXPECT_EQ(errorOf([&] { provider.modify(testPath(), {}, nullptr); }), kErrorNotSupported);
  ObjectPath other = model.instances("DIAGS_FanTestSettings").at(0).path();
  other.keys.setKey("InstanceID", std::string("DIAGS:other"));
  EXPECT_EQ(errorOf([&] { provider.modify(other, {}, nullptr); }), kErrorNotFound);
  EXPECT_EQ(errorOf([&] {
              provider.modify(model.instances("DIAGS_FanTestSettings").at(0).path(),
                              {{"Spin", std::uint32_t{2}, false}}, nullptr);
            }),
            kErrorInvalidParameter);
}

// A stopped run is no failure of the fan.
TEST_F(DiagnosticProviderTest, ATerminatedRunIsRecordedAsAborted) {
  diagnostic.script({outcomeOf(CompletionState::Stopped)});
  start(onFan());
  onJob("RequestStateChange", {{"RequestedState", std::uint16_t{4}, false}});
  services.runWork();
  EXPECT_EQ(number(onlyRecord("DIAGS_FanDiagnosticCompletionRecord"), "CompletionState"), 6U);
}

TEST_F(DiagnosticProviderTest, WithoutAThreadTheRunFailsAndLeavesNoJob) {
  services.haveNoThreads();
  const MethodResult result = start(onFan());
  EXPECT_EQ(result.returnValue, 4U);
  EXPECT_TRUE(result.out.empty());
  EXPECT_TRUE(registry.jobs().empty());
  EXPECT_EQ(services.remarks,
            std::vector<std::string>{"DIAGS: Fan Test is refused: there is no thread for it"});
}

TEST_F(DiagnosticProviderTest, AThreadThatTroubleKeptFromStartingRefusesTheRunAndLeavesNoJob) {
  services.throwOnLaunch();
  const MethodResult result = start(onFan());
  EXPECT_EQ(result.returnValue, 4U);
  EXPECT_TRUE(result.out.empty());
  EXPECT_TRUE(registry.jobs().empty());
}

TEST_F(DiagnosticProviderTest, SettingsAreHonouredUnderBothNames) {
  const Properties halt{{"HaltOnError", true, false}};
  for (const char* parameter : {"DiagnosticSettings", "DiagSetting"}) {
    runToEnd(withSettings(onFan(), parameter, halt));
    EXPECT_TRUE(diagnostic.lastSettings().haltOnError) << parameter;
  }
}

TEST_F(DiagnosticProviderTest, JobSettingsDecideHowLongTheJobIsKept) {
  runToEnd(withSettings(onFan(), "JobSettings", {{"DeleteOnCompletion", false, false}}));
  EXPECT_EQ(asBoolean(job().get("DeleteOnCompletion")), false);
}

TEST_F(DiagnosticProviderTest, SettingsThatMakeNoSenseAreRefused) {
  const Properties none{{"PercentOfTestCoverage", std::uint8_t{0}, false}};
  EXPECT_EQ(start(withSettings(onFan(), "DiagnosticSettings", none)).returnValue, 5U);
  EXPECT_TRUE(registry.jobs().empty());
}

TEST_F(DiagnosticProviderTest, SettingsThatAreNoInstanceAreRefused) {
  for (const char* name : {"DiagnosticSettings", "DiagSetting", "JobSettings", "JobSetting"}) {
    Properties in = onFan();
    in.set(name, std::string("fast"));
    EXPECT_EQ(start(in).returnValue, 5U) << name;
    EXPECT_NE(services.remarks.back().find(" is no instance"), std::string::npos) << name;
  }
}

TEST_F(DiagnosticProviderTest, TheNewerNameOfSettingsOutweighsTheOlder) {
  Properties in = withSettings(onFan(), "DiagnosticSettings", {{"HaltOnError", true, false}});
  in = withSettings(in, "DiagSetting", {{"HaltOnError", false, false}, {"QuickMode", true, false}});
  runToEnd(in);
  EXPECT_TRUE(diagnostic.lastSettings().haltOnError);
  EXPECT_TRUE(diagnostic.lastSettings().quick) << "what only the older has stays";
}

TEST_F(DiagnosticProviderTest, SettingsThatTheDiagnosticRefusesAreRefused) {
  diagnostic.refuseWith("no");
  EXPECT_EQ(start(onFan()).returnValue, 5U);
}

TEST_F(DiagnosticProviderTest, AnExceptionOfTheDiagnosticEndsTheJobWithIt) {
  diagnostic.onRun([](RunControl&) { throw std::runtime_error("fan on fire"); });
  runToEnd(onFan());
  EXPECT_EQ(number(job(), "JobState"), 10U);
  EXPECT_EQ(number(job(), "PercentComplete"), 100U);
  const MethodResult errors = onJob("GetErrors");
  EXPECT_EQ(errors.returnValue, 0U);
  const auto& list = std::get<std::vector<InstancePtr>>(errors.out.get("Errors"));
  ASSERT_EQ(list.size(), 1U);
  EXPECT_EQ(text(list[0]->properties, "Message"), "fan on fire");
}

TEST_F(DiagnosticProviderTest, TheErrorOfAJobIsToldWhole) {
  diagnostic.onRun([](RunControl&) { throw std::runtime_error("fan on fire"); });
  runToEnd(onFan());
  const std::string error =
      "CIM_Error{ErrorType=uint16 4;OwningEntity=\"DIAGS\";MessageID=\"DIAGS1\";"
      "Message=\"fan on fire\";PerceivedSeverity=uint16 5;CIMStatusCode=uint32 1;}";
  EXPECT_EQ(show(onJob("GetError").out), "Error=" + error + "\n");
  EXPECT_EQ(show(onJob("GetErrors").out), "Errors=[" + error + "]\n");
  EXPECT_EQ(onJob("GetError").returnValue, 0U);
}

TEST_F(DiagnosticProviderTest, WhatARunTellsGoesToItsJob) {
  diagnostic.onRun([this](RunControl& control) {
    control.progress(0.25);
    control.status("Turning");
    EXPECT_FALSE(control.stopRequested());
    EXPECT_EQ(number(job(), "PercentComplete"), 25U);
    EXPECT_EQ(number(job(), "JobState"), 4U);
    registry.stopAll();
    EXPECT_TRUE(control.stopRequested());
  });
  runToEnd(onFan());
  EXPECT_EQ(text(job(), "JobStatus"), "Turning");
  EXPECT_EQ(diagnostic.runs(), 1U);
}

TEST_F(DiagnosticProviderTest, AKilledJobIsForgottenWhenThatIsWished) {
  start(withSettings(onFan(), "JobSettings", {{"DeleteOnCompletion", false, false}}));
  onJob("KillJob", {{"DeleteOnKill", true, false}});
  EXPECT_EQ(asBoolean(job().get("DeleteOnCompletion")), true);
}

TEST_F(DiagnosticProviderTest, AnExceptionOfNoStandardTypeEndsTheJob) {
  diagnostic.onRun([](RunControl&) { throw 7; });
  runToEnd(onFan());
  EXPECT_EQ(number(job(), "JobState"), 10U);
  const MethodResult errors = onJob("GetErrors");
  const auto& list = std::get<std::vector<InstancePtr>>(errors.out.get("Errors"));
  ASSERT_EQ(list.size(), 1U);
  EXPECT_EQ(text(list[0]->properties, "Message"), "an exception of no standard type");
}

TEST_F(DiagnosticProviderTest, AGoodJobHasNoErrors) {
  runToEnd(onFan());
  EXPECT_TRUE(onJob("GetErrors").out.empty());
  EXPECT_TRUE(onJob("GetError").out.empty());
}

TEST_F(DiagnosticProviderTest, AJobCanBeTerminatedByItsMethod) {
  diagnostic.script({outcomeOf(CompletionState::Stopped)});
  start(onFan());
  EXPECT_EQ(onJob("RequestStateChange", {{"RequestedState", std::uint16_t{4}, false}}).returnValue,
            4096U);
  services.runWork();
  EXPECT_EQ(number(job(), "JobState"), 8U);
}

TEST_F(DiagnosticProviderTest, AJobCanBeKilledOnce) {
  start(onFan());
  EXPECT_EQ(onJob("KillJob").returnValue, 0U);
  EXPECT_EQ(onJob("KillJob").returnValue, 7U);
  EXPECT_EQ(number(job(), "JobState"), 9U);
}

TEST_F(DiagnosticProviderTest, AWishWithoutAStateIsInvalid) {
  start(onFan());
  EXPECT_EQ(onJob("RequestStateChange").returnValue, 5U);
}

TEST_F(DiagnosticProviderTest, AJobNeverWaitsForAnAnswer) {
  start(onFan());
  EXPECT_EQ(onJob("ResumeWithAction").returnValue, 6U);
  EXPECT_EQ(onJob("resumewithinput").returnValue, 6U);
}

TEST_F(DiagnosticProviderTest, TheStateOfATestCannotBeChanged) {
  EXPECT_EQ(provider.invoke(testPath(), "requeststatechange", {}, services).returnValue, 1U);
}

std::string textOfError(const std::function<void()>& operation) {
  try {
    operation();
  } catch (const ProviderError& error) {
    return error.what();
  }
  return "none";
}

TEST_F(DiagnosticProviderTest, ARefusalSaysWhatIsNotThere) {
  start(onFan());
  const ObjectPath fan{"DIAGS_Fan", {}};
  const ObjectPath record{"DIAGS_FanTestRecord", {{"InstanceID", std::string("r1"), true}}};
  const ObjectPath device = model.device(diagnostic.devices()[0]).path();
  EXPECT_EQ(textOfError([&] { provider.get(fan); }), "no such instance of DIAGS_Fan");
  EXPECT_EQ(textOfError([&] { provider.remove(record); }), "nothing to remove: r1");
  EXPECT_EQ(textOfError([&] {
              provider.remove({"DIAGS_FanTestRecord", {}});
            }),
            "nothing to remove: ");
  EXPECT_EQ(textOfError([&] { provider.remove(testPath()); }),
            "instances of DIAGS_FanTest are permanent");
  EXPECT_EQ(textOfError([&] { provider.invoke(device, "Dance", {}, services); }),
            "DIAGS_Fan has no method Dance");
  EXPECT_EQ(textOfError([&] { provider.invoke(testPath(), "Dance", {}, services); }),
            "the test has no method Dance");
  EXPECT_EQ(textOfError([&] { onJob("Dance"); }), "a job has no method Dance");
  EXPECT_EQ(textOfError([&] { provider.invoke(model.jobPath("x"), "KillJob", {}, services); }),
            "no such job");
}

TEST_F(DiagnosticProviderTest, UnknownMethodsAndObjectsAreTold) {
  start(onFan());
  ObjectPath otherTest = testPath();
  otherTest.keys.setKey("Name", std::string("Pump Test"));
  EXPECT_EQ(errorOf([&] { onJob("Dance"); }), kErrorMethodNotFound);
  EXPECT_EQ(errorOf([&] { provider.invoke(testPath(), "Dance", {}, services); }),
            kErrorMethodNotFound);
  EXPECT_EQ(errorOf([&] { provider.invoke(testPath(), "StopService", {}, services); }),
            kErrorMethodNotAvailable);
  EXPECT_EQ(errorOf([&] { provider.invoke(testPath(), "StartService", {}, services); }),
            kErrorMethodNotAvailable);
  EXPECT_EQ(errorOf([&] { provider.invoke(otherTest, "RunDiagnostic", {}, services); }),
            kErrorNotFound);
  EXPECT_EQ(errorOf([&] { provider.invoke(model.jobPath("x"), "KillJob", {}, services); }),
            kErrorNotFound);
}

TEST_F(DiagnosticProviderTest, EnumeratingASuperclassFindsTheSubclasses) {
  start(onFan());
  EXPECT_EQ(provider.enumerate("CIM_ConcreteJob", services).size(), 1U);
  EXPECT_EQ(provider.enumerate("diags_fantestjob", services).size(), 1U);
  EXPECT_TRUE(provider.enumerate("CIM_Pump", services).empty());
}

TEST_F(DiagnosticProviderTest, ARecordCanBeRemovedAndATestCannot) {
  runToEnd(onFan());
  const auto record = model.instances("DIAGS_FanDiagnosticCompletionRecord").front().path();
  provider.remove(record);
  EXPECT_EQ(errorOf([&] { provider.remove(record); }), kErrorNotFound);
  EXPECT_EQ(errorOf([&] { provider.remove(testPath()); }), kErrorNotSupported);
}

TEST_F(DiagnosticProviderTest, ARunningJobCannotBeRemoved) {
  start(onFan());
  EXPECT_EQ(errorOf([&] { provider.remove(model.jobPath("DIAGS:job1")); }), kErrorNotFound);
}

TEST_F(DiagnosticProviderTest, AssociationsAreWalkedFromEitherEnd) {
  const ObjectPath device = *std::get<PathPtr>(fan());
  const AssociationQuery query{"DIAGS_FanTestForElement", "", "", ""};
  ASSERT_EQ(provider.associators(device, query, services).size(), 1U);
  EXPECT_TRUE(provider.associators(device, query, services)[0] == testPath());
  ASSERT_EQ(provider.associators(testPath(), query, services).size(), 1U);
  EXPECT_TRUE(provider.associators(testPath(), query, services)[0] == device);
}

TEST_F(DiagnosticProviderTest, RolesAndClassesNarrowTheWalk) {
  struct Row {
    const char* name;
    AssociationQuery query;
    std::size_t ends;
  };
  runToEnd(onFan());
  const ObjectPath device = *std::get<PathPtr>(fan());
  for (const Row& row : {Row{"all: test, record, job, system", {"", "", "", ""}, 4},
                         Row{"own role", {"", "", "userofservice", ""}, 1},
                         Row{"other role", {"", "", "ServiceProvided", ""}, 0},
                         Row{"role of the result", {"", "", "", "AffectingElement"}, 1},
                         Row{"class of the result", {"", "CIM_ConcreteJob", "", ""}, 1},
                         Row{"base of the association", {"CIM_Everything", "", "", ""}, 4},
                         Row{"other association", {"CIM_Other", "", "", ""}, 0}})
    EXPECT_EQ(provider.associators(device, row.query, services).size(), row.ends) << row.name;
}

TEST_F(DiagnosticProviderTest, AJobThatHasEndedAndARecordOfItCanBeRemoved) {
  diagnostic.onRun([](RunControl&) { throw std::runtime_error("fan on fire"); });
  runToEnd(onFan());
  provider.remove(model.jobPath("DIAGS:job1"));
  EXPECT_TRUE(registry.jobs().empty());
  provider.remove(model.instances("DIAGS_FanTestRecord").front().path());
  EXPECT_TRUE(model.instances("DIAGS_FanTestRecord").empty());
  EXPECT_EQ(model.instances("DIAGS_FanDiagnosticCompletionRecord").size(), 1U);
}

TEST_F(DiagnosticProviderTest, AnotherPathHasNoReferences) {
  EXPECT_TRUE(provider.references({"CIM_Pump", {}}, {}, services).empty());
}

TEST_F(DiagnosticProviderTest, ARunHasTheSettingsOfItsStartWhateverBecomesOfTheDefaults) {
  diagnostic.describe().defaultSettings = {{"PercentOfTestCoverage", std::uint8_t{40}, false},
                                           {"NumberOfBytes", std::uint64_t{4096}, false},
                                           {"Seed", std::uint32_t{7}, false}};
  const ObjectPath defaults = model.instances("DIAGS_FanTestSettings").at(0).path();
  const auto change = [&](std::uint32_t loops, std::uint8_t percent, std::uint32_t seed) {
    provider.modify(defaults,
                    {{"Loops", loops, false},
                     {"Seconds", std::uint32_t{90}, false},
                     {"PercentOfTestCoverage", percent, false},
                     {"NumberOfBytes", std::uint64_t{seed}, false},
                     {"Seed", seed, false}},
                    nullptr);
  };
  change(2, 40, 7);
  start(onFan());
  change(5, 90, 8);
  services.runWork();
  EXPECT_EQ(diagnostic.runs(), 2U);
  EXPECT_EQ(diagnostic.lastSettings().loop.seconds, 90U);
  EXPECT_EQ(diagnostic.lastSettings().coveragePercent, 40U);
  EXPECT_EQ(asNumber(diagnostic.lastSettings().properties.get("Seed")), 7U);
  EXPECT_EQ(asNumber(diagnostic.lastSettings().properties.get("NumberOfBytes")), 7U);
}

TEST_F(DiagnosticProviderTest, AnOrderlyEndTakesNoTimeLimitAndAKillNeedsNone) {
  struct Row {
    const char* name;
    std::uint16_t state;
    Value timeout;
    std::uint32_t answer;
  };
  for (const Row& row :
       {Row{"a limit", 4, DateTime{1'000'000, true}, 4098},
        Row{"a point in time", 4, DateTime{1'000'000, false}, 5},
        Row{"no length", 4, std::string("soon"), 5},
        Row{"a length of nothing", 4, DateTime{0, true}, 4096},
        Row{"kill", 5, DateTime{1'000'000, true}, 0}, Row{"kill what has ended", 5, {}, 4097}}) {
    if (registry.jobs().empty()) start(onFan());
    EXPECT_EQ(onJob("RequestStateChange",
                    {{"RequestedState", row.state, false}, {"TimeoutPeriod", row.timeout, false}})
                  .returnValue,
              row.answer)
        << row.name;
  }
}

}  // namespace
}  // namespace providers
