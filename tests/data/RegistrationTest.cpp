#include <gtest/gtest.h>

#include <map>

#include "providers/common/model/DiagnosticModel.h"
#include "substitute/cmpi.nsp/registration/RegistrationFolder.h"
#include "tests/data/ShippedClasses.h"
#include "tests/providers/common/FakeDiagnostic.h"

namespace data {
namespace {

using cmpinsp::Registration;

struct Registrations {
  Registrations()
      : all(cmpinsp::readRegistrationFolder(std::string(DIAGS_SOURCE_DIR) + "/data/providers",
                                            problems)
                .classes) {
    for (const Registration& registration : all) byClass[registration.className] = registration;
  }

  std::vector<substitute::Problem> problems;
  std::vector<Registration> all;
  std::map<std::string, Registration> byClass;
};

TEST(Registrations, AreReadWithoutAFault) {
  const Registrations registrations;
  for (const substitute::Problem& problem : registrations.problems)
    ADD_FAILURE() << problem.toText();
  EXPECT_EQ(registrations.all.size(), registrations.byClass.size()) << "a class twice";
}

TEST(Registrations, NameClassesThatAreDeclaredAndNotAbstract) {
  for (const Registration& registration : Registrations().all) {
    const auto declaration = shipped().classes.find(registration.className);
    ASSERT_TRUE(declaration) << registration.className;
    EXPECT_FALSE(declaration->isAbstract) << registration.className;
    EXPECT_EQ(declaration->isAssociation,
              (registration.interfaces & cmpinsp::kAssociationInterface) != 0)
        << registration.className;
  }
}

struct FamilyRow {
  const char* family;
  const char* provider;
  const char* library;
};

class EachFamily : public ::testing::TestWithParam<FamilyRow> {};

TEST_P(EachFamily, IsRegisteredWithAllItsClasses) {
  const Registrations registrations;
  const providers::ClassNames names(GetParam().family);
  for (const std::string& name :
       {names.device, names.test, names.available, names.settings, names.capabilities, names.job,
        names.completionRecord, names.serviceRecord, names.recordAppliesToElement,
        names.owningJobElement, names.affectedJobElement, names.elementCapabilities,
        names.elementSettingData, names.hostedService, names.systemDevice, names.system}) {
    const auto found = registrations.byClass.find(name);
    ASSERT_NE(found, registrations.byClass.end()) << name;
    EXPECT_EQ(found->second.namespaces, std::vector<std::string>{"root/cimv2"}) << name;
    if (name == names.system) continue;  // one of the libraries serves it for all
    EXPECT_EQ(found->second.provider, GetParam().provider) << name;
    EXPECT_EQ(found->second.library, GetParam().library) << name;
  }
}

TEST_P(EachFamily, TakesMethodCallsOnTestsAndJobs) {
  const Registrations registrations;
  const providers::ClassNames names(GetParam().family);
  for (const std::string& name : {names.test, names.job})
    EXPECT_TRUE(registrations.byClass.at(name).interfaces & cmpinsp::kMethodInterface) << name;
}

INSTANTIATE_TEST_SUITE_P(
    BuiltIn, EachFamily,
    ::testing::Values(FamilyRow{"DIAGS_DiskDrive", "DIAGS_DiskProvider", "diagsDisk"},
                      FamilyRow{"DIAGS_Memory", "DIAGS_MemoryProvider", "diagsMemory"},
                      FamilyRow{"DIAGS_Pcie", "DIAGS_PcieProvider", "diagsPcie"},
                      FamilyRow{"DIAGS_Port", "DIAGS_PortProvider", "diagsPort"},
                      FamilyRow{"DIAGS_Processor", "DIAGS_ProcessorProvider", "diagsProcessor"},
                      FamilyRow{"DIAGS_Sensors", "DIAGS_SensorsProvider", "diagsSensors"}),
    [](const auto& row) { return std::string(row.param.library); });

}  // namespace
}  // namespace data
