// What the worker learns of tests of every kind: here they are instances in a MOF file.

#include <gtest/gtest.h>

#include <filesystem>

#include "engine/worker/model/TestFacts.h"
#include "substitute/cmpi.nsp/Bootstrap.h"
#include "tests/substitute/cmpi.nsp/TemporaryFolder.h"

namespace engine::worker {
namespace {

namespace fs = std::filesystem;

constexpr const char* kClasses = R"(
  class ACME_Fan : CIM_LogicalDevice { };
  class ACME_FanTest : CIM_DiagnosticTest { };
  class ACME_FanTestForElement : CIM_AvailableDiagnosticService { };
  class ACME_FanTestSettings : CIM_DiagnosticSettingData {
    [Description("How fast the fan turns.")] uint16 Speed;
    string Labels[];
  };
  class ACME_FanMarkedSettings : CIM_DiagnosticSettingData {
    [Key, Override("InstanceID"), Write] string InstanceID;
    [Write] uint16 Speed;
    uint16 Blades;
  };
  class ACME_FanJobSettings : CIM_JobSettingData { };
  class ACME_FanSettingData : CIM_ElementSettingData { };
)";

/// One service with one device of the number, the link with `link` in it, the service with
/// `service`.
std::string test(const std::string& number, const std::string& link, const std::string& service) {
  const std::string keys = "SystemCreationClassName = \"S\"; SystemName = \"host\"; ";
  const std::string testPath =
      "root/cimv2:ACME_FanTest.SystemCreationClassName=\\\"S\\\",SystemName=\\\"host\\\","
      "CreationClassName=\\\"ACME_FanTest\\\",Name=\\\"Test " +
      number + "\\\"";
  const std::string fanPath =
      "root/cimv2:ACME_Fan.SystemCreationClassName=\\\"S\\\",SystemName=\\\"host\\\","
      "CreationClassName=\\\"ACME_Fan\\\",DeviceID=\\\"fan" +
      number + "\\\"";
  return "instance of ACME_Fan { " + keys + "CreationClassName = \"ACME_Fan\"; DeviceID = \"fan" +
         number + "\"; ElementName = \"Fan\"; };\n" + "instance of ACME_FanTest { " + keys +
         "CreationClassName = \"ACME_FanTest\"; Name = \"Test " + number + "\"; " + service +
         " };\n" + "instance of ACME_FanTestForElement { ServiceProvided = \"" + testPath +
         "\"; UserOfService = \"" + fanPath + "\"; " + link + " };\n";
}

/// Settings and what ties them to the test of the number.
std::string settings(const std::string& number, const std::string& className, int isDefault,
                     const std::string& values) {
  const std::string id = className + std::to_string(isDefault);
  return "instance of " + className + " { InstanceID = \"" + id + "\"; " + values + " };\n" +
         "instance of ACME_FanSettingData { ManagedElement = "
         "\"root/cimv2:ACME_FanTest.SystemCreationClassName=\\\"S\\\",SystemName=\\\"host\\\","
         "CreationClassName=\\\"ACME_FanTest\\\",Name=\\\"Test " +
         number + "\\\"\"; SettingData = \"root/cimv2:" + className + ".InstanceID=\\\"" + id +
         "\\\"\"; IsDefault = " + std::to_string(isDefault) + "; };\n";
}

class StaticFacts : public ::testing::Test {
 protected:
  StaticFacts() {
    fs::create_directories(folder.path());
    fs::copy(fs::u8path(DIAGS_SOURCE_DIR "/data/schema"), folder.path() / "schema");
  }

  /// The facts of tests 1 to `count` in this MOF text.
  std::vector<OfferedTest> facts(const std::string& mof, int count) {
    folder.write("schema/acme.mof", kClasses + mof);
    substitute::Installation installation;
    installation.root = folder.text();
    installation.schemaCache = false;
    const substitute::Framework framework(installation);
    EXPECT_TRUE(framework.problems().empty())
        << (framework.problems().empty() ? "" : framework.problems().front().toText());
    std::vector<OfferedTest> tests(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
      const std::string number = std::to_string(i + 1);
      tests[static_cast<std::size_t>(i)].identifier = "Test " + number + ",fan" + number + ",Fan";
    }
    problems = addFacts(framework.objectManager(), tests);
    return tests;
  }

  cmpinsp::TemporaryFolder folder;
  std::vector<std::string> problems;
};

TEST_F(StaticFacts, TheEstimateIsTheNumberInItsUnit) {
  struct Row {
    const char* link;
    double seconds;
  };
  const std::vector<Row> rows{
      {"EstimatedDurationOfService = 2; EstimatedDurationQualifier = 1500;", 1.5},
      {"EstimatedDurationOfService = 3; EstimatedDurationQualifier = 8;", 8},
      {"EstimatedDurationOfService = 4; EstimatedDurationQualifier = 2;", 120},
      {"EstimatedDurationOfService = 5; EstimatedDurationQualifier = 1;", 3600},
      {"EstimatedDurationOfService = 6; EstimatedDurationQualifier = 2;", 172800},
      {"EstimatedDurationOfService = 0; EstimatedDurationQualifier = 8;", 0},
      {"EstimatedDurationOfService = 3;", 0},
      {"EstimatedDurationQualifier = 8;", 0}};
  std::string mof;
  for (std::size_t i = 0; i < rows.size(); ++i)
    mof += test(std::to_string(i + 1), rows[i].link, "");
  const auto found = facts(mof, static_cast<int>(rows.size()));
  for (std::size_t i = 0; i < rows.size(); ++i)
    EXPECT_EQ(found[i].estimate, rows[i].seconds) << rows[i].link;
}

TEST_F(StaticFacts, TheCharacteristicsAreToldApart) {
  const auto found =
      facts(test("1", "", "Characteristics = {2};") + test("2", "", "Characteristics = {3, 8};") +
                test("3", "", "Characteristics = {5, 4};") + test("4", "", ""),
            4);
  const auto shown = [](const Characteristics& one) {
    return std::string(one.isExclusive ? "exclusive " : "") +
           (one.isInteractive ? "interactive " : "") + (one.isDestructive ? "destructive " : "") +
           (one.isRisky ? "risky " : "");
  };
  EXPECT_EQ(shown(found[0].characteristics), "exclusive ");
  EXPECT_EQ(shown(found[1].characteristics), "interactive ");
  EXPECT_EQ(shown(found[2].characteristics), "destructive risky ");
  EXPECT_EQ(shown(found[3].characteristics), "");
}

// Catches the settings of jobs, and those that are no default, taken for the test's own.
TEST_F(StaticFacts, WithoutWriteAllSettingsOfTheDefaultAreTold) {
  const auto found =
      facts(test("1", "", "") + test("2", "", "") + settings("1", "ACME_FanJobSettings", 1, "") +
                settings("1", "ACME_FanTestSettings", 2, "Speed = 100;") +
                settings("1", "ACME_FanTestSettings", 1, "Speed = 900; Labels = {\"a,b\", \"c\"};"),
            2);
  std::string shown;
  for (const SettingDeclaration& one : found[0].settings) {
    if (!one.value.empty() || !one.description.empty())
      shown += one.type + " " + one.name + "=" + one.value + "\n";
    EXPECT_NE(one.name, "InstanceID");
    EXPECT_NE(one.name, "ElementName");
  }
  EXPECT_NE(shown.find("uint16 Speed=900\n"), std::string::npos) << shown;
  EXPECT_NE(shown.find("string[] Labels=a\\,b,c\n"), std::string::npos) << shown;
  EXPECT_TRUE(found[1].settings.empty());
}

// A key names the settings themselves; another value would make others of them.
TEST_F(StaticFacts, WithWriteThoseThatHaveItAreToldExceptKeys) {
  const auto found =
      facts(test("1", "", "") + settings("1", "ACME_FanMarkedSettings", 1, "Speed = 900;"), 1);
  ASSERT_EQ(found[0].settings.size(), 1U);
  EXPECT_EQ(found[0].settings[0].name, "Speed");
}

TEST_F(StaticFacts, ALinkThatLeadsNowhereCostsTheOthersNothing) {
  std::string broken = test("1", "", "");
  broken.erase(0, broken.find('\n') + 1);
  const auto found = facts(
      broken + test("2", "EstimatedDurationOfService = 3; EstimatedDurationQualifier = 8;", ""), 2);
  EXPECT_EQ(found[0].service, "");
  EXPECT_EQ(found[1].estimate, 8);
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_NE(problems[0].find("fan1"), std::string::npos) << problems[0];
}

}  // namespace
}  // namespace engine::worker
