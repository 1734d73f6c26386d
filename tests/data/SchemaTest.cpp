#include <gtest/gtest.h>

#include <set>

#include "providers/disk/services/AlignmentDiagnostic.h"
#include "providers/disk/services/CompareDiagnostic.h"
#include "providers/disk/services/HealthDiagnostic.h"
#include "providers/disk/services/ReadDiagnostic.h"
#include "providers/disk/services/SelfTestDiagnostic.h"
#include "providers/memory/services/PatternDiagnostic.h"
#include "providers/memory/services/StatusDiagnostic.h"
#include "providers/processor/services/ExchangeDiagnostic.h"
#include "providers/processor/services/ProcessorDevices.h"
#include "providers/processor/services/StatusDiagnostic.h"
#include "tests/data/DeclaredInstances.h"
#include "tests/data/ShippedClasses.h"

namespace data {
namespace {

using vorcore::ClassDeclarationPtr;
using vorcore::PropertyDeclaration;

std::string textOf(const std::string& className, const std::string& property, std::uint16_t value) {
  const ClassDeclarationPtr declaration = shipped().classes.find(className);
  const std::size_t index = declaration->findProperty(property);
  return vorcore::renderValue(NZELVOR20::TCIMValue::Uint16(value),
                              declaration->properties.at(index).qualifiers);
}

TEST(Schema, IsReadWithoutAFault) {
  for (const substitute::Problem& problem : shipped().problems) ADD_FAILURE() << problem.toText();
  EXPECT_GT(shipped().classes.size(), 80U);
}

TEST(Schema, EveryReferenceNamesAClassThatIsThere) {
  for (const std::string& root : shipped().classes.rootClasses()) {
    for (const std::string& name : shipped().classes.subclasses(root, true)) {
      for (const PropertyDeclaration& property : shipped().classes.find(name)->properties) {
        if (property.referenceClass.empty()) continue;
        EXPECT_TRUE(shipped().classes.find(property.referenceClass))
            << name << "." << property.name;
      }
    }
  }
}

struct KeyRow {
  const char* className;
  std::set<std::string> keys;
};

TEST(Schema, ClassesHaveTheirKeys) {
  const std::set<std::string> ofSystem{"SystemCreationClassName", "SystemName",
                                       "CreationClassName"};
  std::set<std::string> ofDevice = ofSystem;
  ofDevice.insert("DeviceID");
  std::set<std::string> ofService = ofSystem;
  ofService.insert("Name");
  for (const KeyRow& row :
       {KeyRow{"CIM_Memory", ofDevice}, KeyRow{"CIM_Processor", ofDevice},
        KeyRow{"CIM_DiskDrive", ofDevice}, KeyRow{"CIM_EthernetPort", ofDevice},
        KeyRow{"CIM_MemoryDiagnosticTest", ofService},
        KeyRow{"CIM_ComputerSystem", {"CreationClassName", "Name"}},
        KeyRow{"CIM_ConcreteJob", {"InstanceID"}},
        KeyRow{"CIM_DiagnosticCompletionRecord", {"InstanceID"}},
        KeyRow{"CIM_AvailableDiagnosticService", {"ServiceProvided", "UserOfService"}},
        KeyRow{"CIM_RecordAppliesToElement", {"Antecedent", "Dependent"}},
        KeyRow{"CIM_OwningJobElement", {"OwningElement", "OwnedElement"}},
        KeyRow{"CIM_AffectedJobElement", {"AffectedElement", "AffectingElement"}},
        KeyRow{"CIM_SystemDevice", {"GroupComponent", "PartComponent"}},
        KeyRow{"CIM_DiagnosticSettingData", {"InstanceID"}},
        KeyRow{"CIM_DiagnosticSetting", {"SettingID"}}})
    EXPECT_EQ(keysOf(row.className), row.keys) << row.className;
}

struct ClassRow {
  const char* className;
  bool abstract;
  bool association;
};

TEST(Schema, ClassesAreOfTheirKind) {
  for (const ClassRow& row :
       {ClassRow{"CIM_DiagnosticService", true, false},
        ClassRow{"CIM_DiagnosticTest", false, false}, ClassRow{"CIM_LogicalDevice", true, false},
        ClassRow{"CIM_Memory", false, false}, ClassRow{"CIM_Job", true, false},
        ClassRow{"DIAGS_DiagnosticJob", true, false}, ClassRow{"DIAGS_MemoryTestJob", false, false},
        ClassRow{"CIM_Dependency", true, true}, ClassRow{"CIM_RecordAppliesToElement", false, true},
        ClassRow{"DIAGS_MemoryTestForElement", false, true}}) {
    const ClassDeclarationPtr declaration = shipped().classes.find(row.className);
    ASSERT_TRUE(declaration) << row.className;
    EXPECT_EQ(declaration->isAbstract, row.abstract) << row.className;
    EXPECT_EQ(declaration->isAssociation, row.association) << row.className;
  }
}

struct TextRow {
  const char* className;
  const char* property;
  std::uint16_t value;
  const char* text;
};

TEST(Schema, ValuesHaveTheirTexts) {
  const char* const record = "DIAGS_MemoryDiagnosticCompletionRecord";
  for (const TextRow& row :
       {TextRow{record, "CompletionState", 2, "OK"},
        TextRow{record, "CompletionState", 3, "Warning"},
        TextRow{record, "CompletionState", 4, "Incomplete"},
        TextRow{record, "CompletionState", 5, "Failed"},
        TextRow{record, "CompletionState", 6, "Aborted"},
        TextRow{record, "CompletionState", 7, "Stopped"},
        TextRow{"DIAGS_ProcessorTestJob", "JobState", 7, "Completed"},
        TextRow{"DIAGS_ProcessorTestJob", "JobState", 40000, "Vendor Reserved"},
        TextRow{"CIM_LogicalDevice", "HealthState", 5, "OK"},
        TextRow{"CIM_MemoryDiagnosticTest", "MemoryTestType", 8, "Moving Inversions 0s and 1s"},
        TextRow{"CIM_CPUDiagnosticTest", "CPUTestType", 13, "Stress"}})
    EXPECT_EQ(textOf(row.className, row.property, row.value), row.text)
        << row.property << " " << row.value;
}

TEST(Schema, TheRunMethodsHaveTheJobAsTheirOnlyOutput) {
  const ClassDeclarationPtr test = shipped().classes.find("DIAGS_MemoryTest");
  ASSERT_TRUE(test);
  for (const char* name : {"RunDiagnostic", "RunDiagnosticService"}) {
    const vorcore::MethodDeclaration* method = test->findMethod(name);
    ASSERT_TRUE(method) << name;
    ASSERT_EQ(method->parameters.size(), 4U);
    for (const vorcore::ParameterDeclaration& parameter : method->parameters) {
      EXPECT_EQ(parameter.isOut, parameter.name == "Job") << parameter.name;
      EXPECT_EQ(parameter.isIn, parameter.name != "Job") << parameter.name;
    }
  }
}

TEST(Schema, DeclaresWhatTheMemoryTestsShow) {
  providers::memory::Surroundings surroundings;
  surroundings.size = [] { return providers::memory::MemorySize{1, 1, 1}; };
  surroundings.hasFirmware = [] { return true; };
  for (const providers::memory::TestKind& kind : providers::memory::testKinds())
    checkInstances(providers::memory::PatternDiagnostic(kind, surroundings));
  checkInstances(providers::memory::StatusDiagnostic(surroundings));
}

TEST(Schema, DeclaresWhatTheProcessorTestsShow) {
  providers::CpuPackage package;
  package.megahertz = 1;
  package.online = {0, 1};
  providers::ProcessorMachine machine;
  machine.devices = [&] { return std::vector<providers::Device>{makeDevice(package)}; };
  for (const providers::CalculationService& service : providers::calculationServices())
    checkInstances(providers::CalculationDiagnostic(service, machine));
  checkInstances(providers::ExchangeDiagnostic(machine, providers::MessageTap()));
  checkInstances(providers::StatusDiagnostic(
      machine, [](const std::vector<unsigned>&) { return providers::Health(); }));
}

TEST(Schema, DeclaresWhatTheDiskTestsShow) {
  using namespace providers::disk;
  const FindDisks find = [] {
    Disk disk;
    disk.name = "sda";
    disk.bus = Bus::Ata;
    return std::vector<Disk>{disk};
  };
  for (const ReadOrder order : {ReadOrder::Sequential, ReadOrder::Random})
    checkInstances(ReadDiagnostic({find, {}, {}, {}}, order));
  checkInstances(AlignmentDiagnostic(find));
  checkInstances(HealthDiagnostic(find, {}, HealthQuestion::Status));
  checkInstances(SelfTestDiagnostic({find, {}, {}, {}}, SelfTestKind::Short));
  checkInstances(CompareDiagnostic({find, {}, {}, {}}));
}

}  // namespace
}  // namespace data
