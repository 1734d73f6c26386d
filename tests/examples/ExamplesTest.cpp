// The example providers as their packages: dropped into a copy of this build's installation, and
// used through the command and through the object manager.

#include <boost/make_shared.hpp>
#include <filesystem>

#include "substitute/cmpi.nsp/registration/RegistrationFolder.h"
#include "substitute/cmpi.nsp/registration/RegistrationTable.h"
#include "substitute/cmpi.nsp/repository/SchemaReader.h"
#include "tests/host/CommandRunner.h"
#include "tests/providers/abi/ProviderClient.h"
#include "tests/substitute/cmpi.nsp/TemporaryFolder.h"

namespace cmpinsp {
namespace {

namespace fs = std::filesystem;
using host_test::CommandResult;
using host_test::runCommand;

struct Example {
  const char* name;
  std::vector<std::string> files;
  const char* test;  // as `diags list` shows it
  const char* provider;
  const char* edition;
  const char* testClass;
  const char* deviceClass;
};

void PrintTo(const Example& example, std::ostream* stream) { *stream << example.name; }

const Example kExamples[] = {
    {"C",
     {DIAGS_CLOCK_LIBRARY, DIAGS_SOURCE_DIR "/examples/provider-c/acme_clock.mof",
      DIAGS_SOURCE_DIR "/examples/provider-c/acme_clock.registration"},
     "ACME: System Clock Test,clock0,System Clock",
     "ACME_ClockProvider",
     "1.0",
     "ACME_ClockTest",
     "ACME_Clock"},
    {"Cpp",
     {DIAGS_ENTROPY_LIBRARY, DIAGS_SOURCE_DIR "/examples/provider-cpp/acme_entropy.mof",
      DIAGS_SOURCE_DIR "/examples/provider-cpp/acme_entropy.reg"},
     "ACME: Entropy Source Test,entropy0,Entropy Source",
     "ACME_EntropyProvider",
     "2.0",
     "ACME_EntropyTest",
     "ACME_EntropySource"}};

class ExampleProvider : public ProviderClient, public testing::WithParamInterface<Example> {
 protected:
  ExampleProvider() {
    fs::copy(fs::u8path(DIAGS_INSTALLATION_DIR), folder.path(),
             fs::copy_options::recursive | fs::copy_options::overwrite_existing);
    for (const std::string& file : GetParam().files)
      fs::copy(fs::u8path(file), folder.path() / "providers");
  }
  CommandResult diags(std::vector<std::string> arguments) const {
    arguments.insert(arguments.end(), {"--root", folder.text()});
    return runCommand(arguments);
  }
  void bringUp() {
    SchemaReader reader(problems);
    reader.readFolder(folder.text() + "/schema", true);
    reader.readFolder(folder.text() + "/providers", false);
    QualifierTable qualifiers;
    const auto classes = boost::make_shared<ClassTable>();
    reader.build(qualifiers, *classes);
    const std::string providers = folder.text() + "/providers";
    manager = boost::make_shared<ObjectManager>(
        classes, mergeRegistrations(readRegistrationFolder(providers, problems).classes, problems),
        providers);
  }
  ObjectPath startRun() {
    const Arguments in{{"ManagedElement", reference(onlyPath(GetParam().deviceClass))}};
    EXPECT_EQ(call(onlyPath(GetParam().testClass), "RunDiagnostic", in), "0");
    EXPECT_EQ(out.size(), 1U);
    return onlyPath("CIM_ConcreteJob");
  }
  std::size_t countOf(const std::string& className) { return instances(className).size(); }

  TemporaryFolder folder;
  std::vector<substitute::Problem> problems;
};

TEST_P(ExampleProvider, IsASoundPackage) {
  EXPECT_EQ(diags({"check"}).out, "No faults found in " + folder.text() + "\n");
}

TEST_P(ExampleProvider, ShowsItsTestAndItself) {
  EXPECT_NE(diags({"list"}).out.find(GetParam().test), std::string::npos);
  const CommandResult providers = diags({"providers"});
  EXPECT_EQ(providers.status, 0) << providers.out;
  const std::size_t shown = providers.out.find(GetParam().provider);
  ASSERT_NE(shown, std::string::npos) << providers.out;
  const std::string edition = std::string("  edition:    ") + GetParam().edition + "\n";
  EXPECT_LT(providers.out.find(edition, shown), providers.out.find("state: ", shown));
}

TEST_P(ExampleProvider, PassesWithProgressAndAReport) {
  const CommandResult run = diags({"run", "--level", "extended", GetParam().test});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find("\nPercent Complete"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("\nVerdict: Pass\n"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find(" 0 errors\n"), std::string::npos) << run.out;
}

TEST_P(ExampleProvider, EndsOnRequestWithItsRecords) {
  bringUp();
  const ObjectPath job = startRun();
  terminate(job);
  EXPECT_EQ(state(job), "8");
  EXPECT_EQ(text(manager->getInstance(job, nullptr), "PercentComplete"), "100");
  const auto verdicts = instances("CIM_DiagnosticCompletionRecord");
  ASSERT_EQ(verdicts.size(), 1U);
  EXPECT_EQ(text(verdicts[0], "CompletionState"), "6");
  EXPECT_EQ(countOf("CIM_DiagnosticServiceRecord"), 2U);
  EXPECT_EQ(countOf("CIM_RecordAppliesToElement"), 2U);
  EXPECT_EQ(countOf("CIM_OwningJobElement"), 1U);
  EXPECT_EQ(countOf("CIM_AffectedJobElement"), 1U);
}

/// How many declarations or values there are.
std::size_t parts(const std::string& text) {
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), '|'));
}

TEST_P(ExampleProvider, TellsWhatItMeasuredAndHowLongItTakes) {
  bringUp();
  terminate(startRun());
  std::size_t results = 0;
  for (const InstanceDataPtr& record : instances("CIM_DiagnosticServiceRecord")) {
    EXPECT_EQ(text(record, "RecordType"), "2");
    const std::string format = text(record, "RecordFormat");
    if (format.empty()) continue;
    ++results;
    EXPECT_NE(format.find("Maximum"), std::string::npos) << format;
    EXPECT_EQ(parts(text(record, "RecordData")), parts(format)) << text(record, "RecordData");
  }
  EXPECT_EQ(results, 1U);
  for (const InstanceDataPtr& link : instances("CIM_AvailableDiagnosticService")) {
    EXPECT_EQ(text(link, "EstimatedDurationOfService"), "3");
    EXPECT_NE(text(link, "EstimatedDurationQualifier"), "0");
  }
}

TEST_P(ExampleProvider, RefusesASecondRunWhileOneGoesOn) {
  bringUp();
  const ObjectPath job = startRun();
  EXPECT_EQ(call(onlyPath(GetParam().testClass), "RunDiagnosticService", {}), "6");
  EXPECT_TRUE(out.empty());
  terminate(job);
}

TEST_P(ExampleProvider, KeepsTheLatestRunsAlone) {
  bringUp();
  constexpr std::size_t kKept = 16;
  for (std::size_t run = 0; run < kKept + 2; ++run) {
    EXPECT_EQ(call(onlyPath(GetParam().testClass), "RunDiagnostic", {}), "0");
    const auto jobs = instances("CIM_ConcreteJob");
    EXPECT_EQ(jobs.size(), std::min(run + 1, kKept));
    terminate(jobs.back()->path);
  }
}

TEST_P(ExampleProvider, EveryInstanceCanBeFetchedByItsPath) {
  bringUp();
  terminate(startRun());
  for (const char* top : {"CIM_ManagedElement", "CIM_AvailableDiagnosticService",
                          "CIM_RecordAppliesToElement", "CIM_AffectedJobElement"}) {
    for (const InstanceDataPtr& instance : instances(top)) {
      EXPECT_EQ(manager->getInstance(instance->path, nullptr)->path.toText(),
                instance->path.toText());
    }
  }
}

class ExampleWithAssociations : public ExampleProvider {};

TEST_P(ExampleWithAssociations, TheTestOfTheDeviceIsFoundOverOne) {
  bringUp();
  std::vector<std::string> tests;
  manager->associators(
      onlyPath(GetParam().deviceClass),
      {"CIM_AvailableDiagnosticService", "CIM_DiagnosticTest", "UserOfService", "ServiceProvided"},
      nullptr, [&](const InstanceDataPtr& test) {
        tests.push_back(test->path.className);
        return true;
      });
  EXPECT_EQ(tests, std::vector<std::string>{GetParam().testClass});
}

TEST_P(ExampleProvider, ARunUnderWayIsEndedByTheCleanUp) {
  bringUp();
  startRun();
  manager.reset();
  bringUp();
  EXPECT_EQ(countOf("CIM_ConcreteJob"), 0U);
}

const auto rowName = [](const auto& row) { return std::string(row.param.name); };
INSTANTIATE_TEST_SUITE_P(Written, ExampleWithAssociations, testing::Values(kExamples[1]), rowName);
INSTANTIATE_TEST_SUITE_P(Written, ExampleProvider, testing::ValuesIn(kExamples), rowName);

}  // namespace
}  // namespace cmpinsp
