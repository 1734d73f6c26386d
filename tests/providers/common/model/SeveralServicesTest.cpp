#include <map>
#include <set>

#include "tests/providers/common/ShowValue.h"
#include "tests/providers/common/model/ProviderFixture.h"

namespace providers {
namespace {

/// Two services: the fan test on the front fan and the rear fan, and the balance of the rear fan
/// and the top fan.
class SeveralServicesTest : public ::testing::Test {
 protected:
  SeveralServicesTest()
      : registry([this] { return now; },
                 [this] { return "DIAGS:job" + std::to_string(nextJob++); }) {}

  static FakeDiagnostic fanTest() {
    FakeDiagnostic test;
    test.addDevice("fan1", "Rear Fan");
    return test;
  }
  static FakeDiagnostic fanBalance() {
    FakeDiagnostic test;
    DiagnosticDescription& description = test.describe();
    description.name = kBalance;
    description.elementName = "Fan Balance";
    description.estimatedSeconds = 3;
    description.testProperties = {{"TestTypes", std::vector<std::uint16_t>{4}, false}};
    description.capabilities = {{"Seed", true, false}};
    description.defaultSettings = {{"QuickMode", true, false}};
    test.removeDevices();
    test.addDevice("fan1", "Rear Fan");
    test.addDevice("fan2", "Top Fan");
    return test;
  }

  /// The key of what `role` refers to.
  static std::string keyOf(const Instance& association, const std::string& role) {
    const auto& path = std::get<PathPtr>(association.properties.get(role));
    for (const char* key : {"InstanceID", "DeviceID"})
      if (const auto id = asText(path->keys.get(key))) return *id;
    return asText(path->keys.get("Name")).value_or("(none)");
  }
  std::vector<std::string> ties(const std::string& className, const std::string& from,
                                const std::string& to) const {
    std::vector<std::string> all;
    for (const Instance& one : model.instances(className))
      all.push_back(keyOf(one, from) + " > " + keyOf(one, to));
    return all;
  }
  Instance named(const std::string& className, const std::string& name) const {
    for (const Instance& one : model.instances(className))
      for (const Property& property : one.properties.all())
        if (property.key && asText(property.value).value_or("").find(name) != std::string::npos)
          return one;
    ADD_FAILURE() << className << " has no " << name;
    return {};
  }
  ObjectPath test(const std::string& name) const { return named("DIAGS_FanTest", name).path(); }
  MethodResult start(const std::string& service, Properties in, const std::string& device) {
    if (!device.empty()) in.set("ManagedElement", reference(named("DIAGS_Fan", device)));
    return provider.invoke(test(service), "RunDiagnosticService", in, callServices);
  }

  static constexpr const char* kTest = "DIAGS: Fan Test";
  static constexpr const char* kBalance = "DIAGS: Fan Balance";
  std::int64_t now = 1'000'000;
  int nextJob = 1;
  FakeDiagnostic fan = fanTest();
  FakeDiagnostic balance = fanBalance();
  DiagnosticFamily family{{&fan, &balance}};
  JobRegistry registry;
  DiagnosticProvider provider{family, registry, "host1"};
  DiagnosticModel model{family, registry, "host1"};
  FakeServices callServices;
};

using Texts = std::vector<std::string>;

TEST_F(SeveralServicesTest, AreInstancesOfOneClassWithWhatEachSaysOfItself) {
  const auto tests = model.instances("DIAGS_FanTest");
  ASSERT_EQ(tests.size(), 2U);
  EXPECT_EQ(text(tests[0].properties, "Name"), kTest);
  EXPECT_EQ(text(tests[1].properties, "Name"), kBalance);
  EXPECT_EQ(text(tests[1].properties, "ElementName"), "Fan Balance");
  EXPECT_TRUE(isNull(tests[0].properties.get("TestTypes")));
  EXPECT_EQ(show(tests[1].properties.get("TestTypes")), "[uint16 4]");
}

TEST_F(SeveralServicesTest, AreAvailableForTheirOwnDevicesWithTheirOwnEstimate) {
  EXPECT_EQ(ties("DIAGS_FanTestForElement", "ServiceProvided", "UserOfService"),
            (Texts{"DIAGS: Fan Test > fan0", "DIAGS: Fan Test > fan1", "DIAGS: Fan Balance > fan1",
                   "DIAGS: Fan Balance > fan2"}));
  const auto available = model.instances("DIAGS_FanTestForElement");
  EXPECT_EQ(number(available[0].properties, "EstimatedDurationQualifier"), 8U);
  EXPECT_EQ(number(available[3].properties, "EstimatedDurationQualifier"), 3U);
}

TEST_F(SeveralServicesTest, ShareADeviceThatIsShownOnce) {
  EXPECT_EQ(model.instances("DIAGS_Fan").size(), 3U);
  EXPECT_EQ(ties("DIAGS_FanSystemDevice", "GroupComponent", "PartComponent"),
            (Texts{"host1 > fan0", "host1 > fan1", "host1 > fan2"}));
}

TEST_F(SeveralServicesTest, HaveSettingsAndCapabilitiesEach) {
  EXPECT_EQ(ties("DIAGS_FanTestElementSettingData", "ManagedElement", "SettingData"),
            (Texts{"DIAGS: Fan Test > DIAGS:DIAGS_FanTestSettings:DIAGS: Fan Test:default",
                   "DIAGS: Fan Balance > DIAGS:DIAGS_FanTestSettings:DIAGS: Fan Balance:default"}));
  EXPECT_EQ(ties("DIAGS_FanTestElementCapabilities", "ManagedElement", "Capabilities"),
            (Texts{"DIAGS: Fan Test > DIAGS:DIAGS_FanTestCapabilities:DIAGS: Fan Test",
                   "DIAGS: Fan Balance > DIAGS:DIAGS_FanTestCapabilities:DIAGS: Fan Balance"}));
  EXPECT_EQ(asBoolean(named("DIAGS_FanTestSettings", kBalance).properties.get("QuickMode")), true);
  EXPECT_TRUE(isNull(named("DIAGS_FanTestSettings", kTest).properties.get("QuickMode")));
  EXPECT_EQ(asBoolean(named("DIAGS_FanTestCapabilities", kBalance).properties.get("Seed")), true);
}

TEST_F(SeveralServicesTest, AreAllHostedByTheComputer) {
  EXPECT_EQ(ties("DIAGS_FanTestHostedService", "Antecedent", "Dependent"),
            (Texts{"host1 > DIAGS: Fan Test", "host1 > DIAGS: Fan Balance"}));
}

// Two instances with one path would make a client run or read the wrong one.
TEST_F(SeveralServicesTest, EveryInstanceHasAPathOfItsOwn) {
  start(kTest, {}, "fan1");
  start(kBalance, {}, "fan2");
  callServices.runWork();
  for (const std::string& name : model.classNames()) {
    std::set<std::string> paths;
    const auto all = model.instances(name);
    for (const Instance& one : all) paths.insert(show(one.path().keys));
    EXPECT_EQ(paths.size(), all.size()) << name;
  }
}

TEST_F(SeveralServicesTest, ARunIsMadeByTheServiceThatThePathNames) {
  EXPECT_EQ(start(kBalance, {}, "fan1").returnValue, 0U);
  callServices.runWork();
  EXPECT_EQ(balance.runs(), 1U);
  EXPECT_EQ(fan.runs(), 0U);
  EXPECT_EQ(text(model.instances("DIAGS_FanTestJob").at(0).properties, "Name"),
            "Fan Balance on Rear Fan");
  EXPECT_EQ(
      text(model.instances("DIAGS_FanDiagnosticCompletionRecord").at(0).properties, "ServiceName"),
      kBalance);
}

TEST_F(SeveralServicesTest, AJobBelongsToItsServiceWhichAloneShowsThatItRuns) {
  start(kBalance, {}, "fan1");
  EXPECT_EQ(ties("DIAGS_FanTestOwningJobElement", "OwningElement", "OwnedElement"),
            (Texts{"DIAGS: Fan Balance > DIAGS:job1"}));
  EXPECT_EQ(asBoolean(named("DIAGS_FanTest", kBalance).properties.get("Started")), true);
  EXPECT_EQ(asBoolean(named("DIAGS_FanTest", kTest).properties.get("Started")), false);
}

TEST_F(SeveralServicesTest, ADeviceOfAnotherServiceIsRefused) {
  EXPECT_EQ(start(kTest, {}, "fan2").returnValue, 5U);
  EXPECT_EQ(start(kBalance, {}, "fan0").returnValue, 5U);
  EXPECT_EQ(callServices.remarks.back(),
            "DIAGS: Fan Balance is refused: it is not for that element");
}

TEST_F(SeveralServicesTest, RunAtTheSameTimeOnTheSameDeviceAsTwoJobs) {
  EXPECT_EQ(start(kTest, {}, "fan1").returnValue, 0U);
  EXPECT_EQ(start(kBalance, {}, "fan1").returnValue, 0U);
  callServices.runWork();
  EXPECT_EQ(ties("DIAGS_FanTestRecordAppliesToElement", "Antecedent", "Dependent"),
            (Texts{"DIAGS:job1:0 > fan1", "DIAGS:job2:0 > fan1"}));
}

TEST_F(SeveralServicesTest, WithoutAnElementTheOnlyOneOfTheServiceIsTested) {
  balance.removeDevices();
  balance.addDevice("fan2", "Top Fan");
  EXPECT_EQ(start(kBalance, {}, "").returnValue, 0U);
  EXPECT_EQ(ties("DIAGS_FanTestAffectedJobElement", "AffectingElement", "AffectedElement"),
            (Texts{"DIAGS:job1 > fan2"}));
}

TEST_F(SeveralServicesTest, ChangedSettingsAreThoseOfOneServiceAlone) {
  provider.modify(named("DIAGS_FanTestSettings", kBalance).path(),
                  {{"Loops", std::uint32_t{2}, false}}, nullptr);
  EXPECT_EQ(number(named("DIAGS_FanTestSettings", kBalance).properties, "Loops"), 2U);
  EXPECT_EQ(number(named("DIAGS_FanTestSettings", kTest).properties, "Loops"), 1U);
  start(kTest, {}, "fan1");
  start(kBalance, {}, "fan1");
  callServices.runWork();
  EXPECT_EQ(fan.runs(), 1U);
  EXPECT_EQ(balance.runs(), 2U);
  provider.reset();
  EXPECT_EQ(number(named("DIAGS_FanTestSettings", kBalance).properties, "Loops"), 1U);
}

TEST_F(SeveralServicesTest, AServiceIsFoundFromItsDeviceAndBack) {
  const AssociationQuery query{"DIAGS_FanTestForElement", "", "", ""};
  const auto ends = [&](const ObjectPath& path) {
    return provider.associators(path, query, callServices).size();
  };
  EXPECT_EQ(ends(named("DIAGS_Fan", "fan0").path()), 1U);
  EXPECT_EQ(ends(named("DIAGS_Fan", "fan1").path()), 2U);
  EXPECT_EQ(ends(test(kBalance)), 2U);
}

TEST_F(SeveralServicesTest, OneThatWantsTheFamilyForItselfIsBusyWithAReason) {
  balance.describe().exclusive = Exclusive::Family;
  start(kTest, {}, "fan0");
  const MethodResult refused = start(kBalance, {}, "fan2");
  EXPECT_EQ(refused.returnValue, 6U);
  EXPECT_TRUE(refused.out.empty());
  EXPECT_EQ(callServices.remarks,
            Texts{"DIAGS: Fan Balance is refused: Fan Test on Front Fan is under way"});
  callServices.runWork();
  EXPECT_EQ(start(kBalance, {}, "fan2").returnValue, 0U);
}

TEST_F(SeveralServicesTest, OneThatWantsItsDeviceForItselfSaysSoInItsJob) {
  balance.describe().exclusive = Exclusive::Device;
  start(kTest, {}, "fan0");
  start(kBalance, {}, "fan1");
  const auto affected = model.instances("DIAGS_FanTestAffectedJobElement");
  ASSERT_EQ(affected.size(), 2U);
  EXPECT_EQ(show(affected[0].properties.get("ElementEffects")), "[uint16 3]");
  EXPECT_EQ(show(affected[1].properties.get("ElementEffects")), "[uint16 3, uint16 2]");
}

}  // namespace
}  // namespace providers
