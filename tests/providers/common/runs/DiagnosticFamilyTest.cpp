#include <gtest/gtest.h>

#include "providers/common/runs/DiagnosticFamily.h"
#include "tests/providers/common/FakeDiagnostic.h"

namespace providers {
namespace {

class DiagnosticFamilyTest : public ::testing::Test {
 protected:
  DiagnosticFamilyTest() { balance.describe().name = "DIAGS: Fan Balance"; }

  std::string refusal(const std::vector<Diagnostic*>& diagnostics) const {
    try {
      const DiagnosticFamily family(diagnostics);
    } catch (const std::invalid_argument& error) {
      return error.what();
    }
    return "none";
  }

  FakeDiagnostic fan;
  FakeDiagnostic balance;
};

TEST_F(DiagnosticFamilyTest, FindsEachServiceByItsWholeName) {
  DiagnosticFamily family({&fan, &balance});
  ASSERT_TRUE(family.find("DIAGS: Fan Balance"));
  EXPECT_EQ(&family.find("DIAGS: Fan Balance")->diagnostic(), &balance);
  EXPECT_EQ(&family.find("DIAGS: Fan Test")->diagnostic(), &fan);
  EXPECT_FALSE(family.find("DIAGS: Fan"));
}

TEST_F(DiagnosticFamilyTest, HasEveryDeviceOnceInTheOrderOfTheServices) {
  fan.addDevice("fan2", "Top Fan");
  balance.addDevice("fan1", "Rear Fan");
  std::vector<std::string> ids;
  for (const Device& device : DiagnosticFamily({&fan, &balance}).devices())
    ids.push_back(device.id);
  EXPECT_EQ(ids, (std::vector<std::string>{"fan0", "fan2", "fan1"}));
}

TEST_F(DiagnosticFamilyTest, TheResetReachesEveryService) {
  DiagnosticFamily family({&fan, &balance});
  for (Service& service : family.services())
    service.defaults().change({{"Loops", std::uint32_t{3}, false}}, nullptr);
  family.reset();
  for (const Service& service : family.services())
    EXPECT_EQ(asNumber(service.defaults().get().get("Loops")), 1U);
}

TEST_F(DiagnosticFamilyTest, WhatIsNoFamilyIsRefusedByName) {
  EXPECT_EQ(refusal({}), "a family without a diagnostic");
  EXPECT_EQ(refusal({&fan, &balance}), "none");
  balance.describe().name = "DIAGS: Fan Test";
  EXPECT_EQ(refusal({&fan, &balance}), "there are two diagnostics of the name DIAGS: Fan Test");
  balance.describe().name = "DIAGS: Pump Test";
  balance.describe().family = "DIAGS_Pump";
  EXPECT_EQ(refusal({&fan, &balance}), "DIAGS: Pump Test is of another family");
}

}  // namespace
}  // namespace providers
