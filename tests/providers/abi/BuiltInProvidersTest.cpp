#include <gtest/gtest.h>

#include <algorithm>
#include <boost/make_shared.hpp>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/manager/face/CmpiInstance.h"
#include "substitute/cmpi.nsp/registration/RegistrationFolder.h"
#include "substitute/cmpi.nsp/registration/RegistrationTable.h"
#include "tests/data/ShippedClasses.h"
#include "tests/providers/abi/ProviderClient.h"

namespace cmpinsp {
namespace {

using NZELVOR20::TCIMValue;

/// The built-in providers as libraries, behind the broker and the object manager.
class BuiltInProviders : public ProviderClient {
 protected:
  BuiltInProviders() { manager = bringUp(); }

  /// A new manager, once the present one is gone.
  boost::shared_ptr<ObjectManager> bringUp() {
    manager.reset();
    const std::string folder = std::string(DIAGS_INSTALLATION_DIR) + "/providers";
    return boost::make_shared<ObjectManager>(
        classes(), mergeRegistrations(readRegistrationFolder(folder, problems).classes, problems),
        folder);
  }
  static boost::shared_ptr<const ClassTable> classes() {
    return {&data::shipped().classes, [](const ClassTable*) {}};
  }

  /// Of the memory tests, the one that the runs below are of; what of its class names it.
  ObjectPath memoryTest() { return naming("DIAGS_MemoryTest"); }
  ObjectPath memoryDefaults() { return naming("DIAGS_MemoryTestSettings"); }
  ObjectPath naming(const std::string& className) {
    for (const InstanceDataPtr& one : instances(className))
      if (one->path.toText().find("Self Addressing") != std::string::npos) return one->path;
    ADD_FAILURE() << className;
    return {};
  }

  std::vector<substitute::Problem> problems;
};

TEST_F(BuiltInProviders, EveryInstanceCanBeFetchedByItsPath) {
  const auto all = instances("CIM_ManagedElement");
  EXPECT_GE(all.size(), 8U);
  for (const InstanceDataPtr& instance : all) {
    const InstanceDataPtr fetched = manager->getInstance(instance->path, nullptr);
    EXPECT_EQ(fetched->path.toText(), instance->path.toText());
  }
}

TEST_F(BuiltInProviders, NamesAreThePathsOfTheInstances) {
  std::vector<std::string> names;
  manager->enumerateInstanceNames(classPath("CIM_LogicalDevice"), [&](const ObjectPath& path) {
    names.push_back(path.toText());
    return true;
  });
  std::vector<std::string> paths;
  for (const InstanceDataPtr& device : instances("CIM_LogicalDevice"))
    paths.push_back(device->path.toText());
  EXPECT_EQ(names, paths);
}

TEST_F(BuiltInProviders, APropertyListLeavesTheKeysAndWhatItNames) {
  const std::vector<std::string> wanted{"ElementName"};
  const auto memory = instances("DIAGS_Memory", &wanted);
  ASSERT_EQ(memory.size(), 1U);
  EXPECT_EQ(text(memory[0], "ElementName"), "System Memory");
  EXPECT_EQ(text(memory[0], "DeviceID"), "mem0");
  EXPECT_TRUE(memory[0]->find("BlockSize") == nullptr || memory[0]->find("BlockSize")->IsNull());
}

TEST_F(BuiltInProviders, TheTestOfADeviceIsFoundOverTheAssociation) {
  std::vector<std::string> tests;
  manager->associators(
      onlyPath("DIAGS_Memory"),
      {"CIM_AvailableDiagnosticService", "CIM_DiagnosticTest", "UserOfService", "ServiceProvided"},
      nullptr, [&](const InstanceDataPtr& test) {
        tests.push_back(text(test, "Name"));
        return true;
      });
  EXPECT_GE(tests.size(), 9U);
  EXPECT_EQ(std::count(tests.begin(), tests.end(), "DIAGS: Memory Self Addressing"), 1);
}

TEST_F(BuiltInProviders, TheReferencesOfATestNameIt) {
  const ObjectPath test = instances("DIAGS_ProcessorTest").front()->path;
  std::size_t found = 0;
  manager->referenceNames(test, {"CIM_ServiceAvailableToElement", "", "", ""},
                          [&](const ObjectPath& path) {
                            EXPECT_EQ(path.className, "DIAGS_ProcessorTestForElement");
                            ++found;
                            return true;
                          });
  EXPECT_EQ(found, instances("DIAGS_Processor").size());
}

/// A run of the memory test on little memory.
class BuiltInRun : public BuiltInProviders {
 protected:
  TCIMValue settings(const std::string& className,
                     const std::vector<std::pair<std::string, TCIMValue>>& values) const {
    const auto data = boost::make_shared<InstanceData>();
    data->path = classPath(className);
    data->declaration = data::shipped().classes.find(className);
    data->values.resize(data->declaration->properties.size());
    for (const auto& [name, value] : values)
      data->values.at(data->declaration->findProperty(name)) = value;
    return TCIMValue::Instance(
        boost::make_shared<CmpiInstance>(data, boost::weak_ptr<NZELVOR20::ICIMNamespace>()));
  }
  TCIMValue littleMemory() const {
    return settings("DIAGS_MemoryTestSettings", {{"NumberOfBytes", TCIMValue::Uint64(1 << 20)},
                                                 {"Seed", TCIMValue::Uint32(77)},
                                                 {"Seconds", TCIMValue::Uint32(600)}});
  }
  std::string run(const Arguments& in) { return call(memoryTest(), "RunDiagnosticService", in); }
  Arguments onMemory() { return {{"ManagedElement", reference(onlyPath("DIAGS_Memory"))}}; }
  static ObjectPath jobOfAnEarlierRun() {
    ObjectPath job = classPath("DIAGS_MemoryTestJob");
    job.setKey("InstanceID", "DIAGS:earlier");
    return job;
  }
  ObjectPath startedJob() {
    EXPECT_EQ(out.size(), 1U);
    EXPECT_EQ(out.at(0).first, "Job");
    return onlyPath("CIM_ConcreteJob");
  }
};

TEST_F(BuiltInRun, GoesOnByItselfAndEndsOnRequestWithItsRecord) {
  Arguments in = onMemory();
  in.emplace_back("DiagnosticSettings", littleMemory());
  EXPECT_EQ(run(in), "0");
  const ObjectPath job = startedJob();
  terminate(job);
  EXPECT_EQ(state(job), "8");
  EXPECT_EQ(text(manager->getInstance(job, nullptr), "PercentComplete"), "100");
  const auto records = instances("CIM_DiagnosticCompletionRecord");
  ASSERT_EQ(records.size(), 1U);
  EXPECT_EQ(text(records[0], "CompletionState"), "6");
  EXPECT_EQ(text(records[0], "ManagedElementName"), "System Memory");
  EXPECT_NE(text(records[0], "RecordData").find("seed 77"), std::string::npos);
  EXPECT_EQ(text(records[0], "InstanceID"),
            text(manager->getInstance(job, nullptr), "InstanceID") + ":1");
}

TEST_F(BuiltInRun, LeavesWhatItMeasuredInARecordOfResults) {
  Arguments in = onMemory();
  in.emplace_back("DiagnosticSettings", littleMemory());
  run(in);
  const ObjectPath job = startedJob();
  terminate(job);
  const auto records = instances("DIAGS_MemoryTestRecord");
  ASSERT_EQ(records.size(), 1U);
  EXPECT_EQ(text(records[0], "InstanceID"),
            text(manager->getInstance(job, nullptr), "InstanceID") + ":0");
  EXPECT_EQ(text(records[0], "RecordType"), "2");
  EXPECT_EQ(text(records[0], "RecordFormat").rfind("|real64 Duration|string DurationUnits|", 0),
            0U);
  EXPECT_EQ(instances("CIM_DiagnosticCompletionRecord").size(), 1U);
}

// A client changes the defaults by one property, and runs without saying more.
TEST_F(BuiltInRun, HasTheDefaultsThatAClientHasSet) {
  const ObjectPath defaults = memoryDefaults();
  manager->setProperty(defaults, "Seed", TCIMValue::Uint32(88));
  manager->setProperty(defaults, "NumberOfBytes", TCIMValue("1048576"));
  manager->setProperty(defaults, "Loops", TCIMValue("1000000"));
  run(onMemory());
  terminate(startedJob());
  const std::string record = text(instances("CIM_DiagnosticCompletionRecord").at(0), "RecordData");
  EXPECT_NE(record.find("seed 88"), std::string::npos) << record;
  EXPECT_NE(record.find("1 MiB of"), std::string::npos) << record;
  EXPECT_NE(record.find("Loops: "), std::string::npos) << record;
  manager = bringUp();
  EXPECT_EQ(text(manager->getInstance(memoryDefaults(), nullptr), "Loops"), "1");
}

TEST_F(BuiltInRun, RefusesDefaultsThatMakeNoSenseByName) {
  const ObjectPath defaults = instances("DIAGS_ProcessorTestSettings").front()->path;
  const auto refusal = [&](const char* name, const TCIMValue& value) {
    try {
      manager->setProperty(defaults, name, value);
    } catch (const NZELVOR20::TVORException& error) {
      return std::string(error.what());
    }
    return std::string();
  };
  EXPECT_NE(refusal("QueryTimeout", TCIMValue::Uint32(5))
                .find("QueryTimeout is none of the test's settings"),
            std::string::npos);
  EXPECT_NE(refusal("PercentOfTestCoverage", TCIMValue("0")).find("between 1 and 100"),
            std::string::npos);
  EXPECT_NE(refusal("Loops", TCIMValue("many")), "");
}

TEST_F(BuiltInRun, WithoutAnElementTestsTheOnlyDevice) {
  EXPECT_EQ(run({{"DiagnosticSettings", littleMemory()}, {"Job", reference(jobOfAnEarlierRun())}}),
            "0");
  terminate(startedJob());
}

TEST_F(BuiltInRun, OnTheDeviceOfAnotherTestIsRefusedWithoutOutput) {
  EXPECT_EQ(run({{"ManagedElement", reference(instances("DIAGS_Processor").at(0)->path)}}), "5");
  EXPECT_TRUE(out.empty());
}

TEST_F(BuiltInRun, TakesSettingsThatStandInTheNamespace) {
  const Arguments in{
      {"ManagedElement", reference(instances("DIAGS_Processor").at(0)->path)},
      {"DiagSetting", reference(instances("DIAGS_ProcessorTestSettings").front()->path)}};
  EXPECT_EQ(call(instances("DIAGS_ProcessorTest").front()->path, "RunDiagnostic", in), "0");
  EXPECT_EQ(call(startedJob(), "KillJob", {}), "0");
}

TEST_F(BuiltInRun, WithSettingsThatMakeNoSenseIsRefused) {
  Arguments in = onMemory();
  in.emplace_back(
      "DiagnosticSettings",
      settings("DIAGS_MemoryTestSettings",
               {{"PercentOfTestCoverage", TCIMValue::Unsigned(NZELVOR20::ECIMType::eUint8, 0)}}));
  EXPECT_EQ(run(in), "5");
}

TEST_F(BuiltInRun, KeepsARecordUntilItIsDeleted) {
  Arguments in = onMemory();
  in.emplace_back("DiagnosticSettings", littleMemory());
  run(in);
  terminate(startedJob());
  manager->deleteInstance(onlyPath("CIM_DiagnosticCompletionRecord"));
  EXPECT_TRUE(instances("CIM_DiagnosticCompletionRecord").empty());
}

TEST_F(BuiltInRun, IsEndedAndForgottenWhenTheProvidersAreCleanedUp) {
  EXPECT_EQ(run({{"DiagnosticSettings", littleMemory()}}), "0");
  manager = bringUp();
  EXPECT_TRUE(instances("CIM_ConcreteJob").empty());
  EXPECT_TRUE(instances("CIM_DiagnosticCompletionRecord").empty());
}

/// What arrives of the first instance of each class: every property that has a value, with '*' in
/// place of a value that is another one on each machine or at each time.
class EveryProperty : public BuiltInRun {
 protected:
  std::string shown(const std::string& className) {
    const auto all = instances(className);
    std::string shown = className + (all.empty() ? ": no instance\n" : "\n");
    if (all.empty()) return shown;
    const InstanceData& one = *all.front();
    for (std::size_t i = 0; i < one.values.size(); ++i) {
      const std::string& name = one.declaration->properties[i].name;
      // Not every machine tells its clock rate.
      if (one.values[i].IsNull() || name == "MaxClockSpeed") continue;
      shown +=
          "  " + name + "=" + (varies(className, name) ? "*" : one.values[i].ToString(10)) + "\n";
    }
    return shown;
  }
  std::string shownWithoutNames() {
    std::string text;
    for (const std::string& name : classNames()) text += shown(name);
    const std::string host = this->text(instances("DIAGS_ComputerSystem").front(), "Name");
    replace(text, "=" + host + "\n", "=HOST\n");
    replace(text, "\"" + host + "\"", "\"HOST\"");
    replace(text, "\"" + this->text(instances("DIAGS_Processor").front(), "DeviceID") + "\"",
            "\"CPU\"");
    replace(text, this->text(instances("CIM_ConcreteJob").front(), "InstanceID"), "JOB");
    return text;
  }

 private:
  static std::vector<std::string> classNames() {
    std::vector<std::string> names{"DIAGS_ComputerSystem"};
    for (const std::string family : {"DIAGS_Memory", "DIAGS_Processor"}) {
      for (const char* rest :
           {"", "Test", "TestSettings", "TestCapabilities", "TestForElement", "TestJob",
            "DiagnosticCompletionRecord", "TestRecord", "TestRecordAppliesToElement",
            "TestOwningJobElement", "TestAffectedJobElement", "TestElementCapabilities",
            "TestElementSettingData", "TestHostedService", "SystemDevice"})
        names.push_back(family + rest);
    }
    return names;
  }
  static bool varies(const std::string& className, const std::string& name) {
    static const std::map<std::string, std::set<std::string>> varying{
        {"DIAGS_Memory", {"NumberOfBlocks", "ConsumableBlocks"}},
        {"DIAGS_MemoryTestForElement", {"EstimatedDurationQualifier"}},
        {"DIAGS_Processor",
         {"ElementName", "DeviceID", "NumberOfEnabledCores", "NumberOfEnabledThreads",
          "ThreadNumbers"}},
        {"DIAGS_MemoryTestJob",
         {"JobStatus", "TimeSubmitted", "StartTime", "ElapsedTime", "TimeOfLastStateChange"}},
        {"DIAGS_MemoryTestRecord",
         {"RecordFormat", "RecordData", "ExpirationDate", "CreationTimeStamp"}},
        {"DIAGS_MemoryDiagnosticCompletionRecord",
         {"Caption", "RecordData", "ExpirationDate", "CreationTimeStamp", "LoopsPassed"}}};
    const auto ofClass = varying.find(className);
    return ofClass != varying.end() && ofClass->second.count(name) != 0;
  }
  static void replace(std::string& text, const std::string& what, const std::string& by) {
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size())
      text.replace(at, what.size(), by);
  }
};

TEST_F(EveryProperty, OfEachClassCrossesTheInterfaceAndTheBroker) {
  Arguments in = onMemory();
  in.emplace_back("DiagnosticSettings", littleMemory());
  run(in);
  terminate(startedJob());
  std::ifstream file(DIAGS_SOURCE_DIR "/tests/providers/abi/every_property.txt");
  const std::string expected{std::istreambuf_iterator<char>(file), {}};
  EXPECT_EQ(shownWithoutNames(), expected);
}

TEST_F(BuiltInRun, AnUnknownMethodIsRefusedByName) {
  EXPECT_THROW(call(memoryTest(), "Dance", {}), NZELVOR20::TVORException);
}

}  // namespace
}  // namespace cmpinsp
