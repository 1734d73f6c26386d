#include "substitute/cmpi.nsp/installation/AccessList.h"

// sddl.h needs windows.h before it.
#include <gtest/gtest.h>
#include <sddl.h>

namespace cmpinsp {
namespace {

/// Whom the list, which is written as Windows does it, lets write.
const char* writerOf(const char* text) {
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  ConvertStringSecurityDescriptorToSecurityDescriptorA(text, SDDL_REVISION_1, &descriptor, nullptr);
  BOOL isPresent = FALSE;
  BOOL isDefault = FALSE;
  PACL list = nullptr;
  GetSecurityDescriptorDacl(descriptor, &isPresent, &list, &isDefault);
  const char* const group = othersGranted(list, FILE_WRITE_DATA | WRITE_DAC);
  LocalFree(descriptor);
  return group;
}

TEST(AccessList, GroupsThatMayWriteAreNamed) {
  EXPECT_STREQ(writerOf("D:(A;;FA;;;WD)"), "Everyone");
  EXPECT_STREQ(writerOf("D:(A;;FA;;;SY)(A;;0x1301bf;;;AU)"), "Authenticated Users");
  EXPECT_STREQ(writerOf("D:(A;;0x2;;;BU)"), "Users");
  EXPECT_STREQ(writerOf("D:(A;;FA;;;IU)"), "Interactive");
}

TEST(AccessList, GenericRightsAndTheRightToGrantRightsCount) {
  EXPECT_STREQ(writerOf("D:(A;;GW;;;WD)"), "Everyone");
  EXPECT_STREQ(writerOf("D:(A;;GA;;;BG)"), "Guests");
  EXPECT_STREQ(writerOf("D:(A;;WD;;;BU)"), "Users");
}

TEST(AccessList, WhoMayOnlyReadDoesNotCount) {
  EXPECT_STREQ(writerOf("D:(A;;FA;;;BA)(A;;0x1200a9;;;BU)(A;;GR;;;WD)"), nullptr);
}

TEST(AccessList, SystemAndAdministratorsAreNotOthers) {
  EXPECT_STREQ(writerOf("D:(A;;FA;;;SY)(A;;FA;;;BA)"), nullptr);
}

TEST(AccessList, WhatOnlyFilesBelowInheritDoesNotCount) {
  EXPECT_STREQ(writerOf("D:(A;OICIIO;FA;;;WD)"), nullptr);
}

TEST(AccessList, WhatIsDeniedIsNotGranted) { EXPECT_STREQ(writerOf("D:(D;;FA;;;WD)"), nullptr); }

TEST(AccessList, AnEmptyOneGrantsNothingAndAMissingOneEverything) {
  EXPECT_STREQ(writerOf("D:"), nullptr);
  EXPECT_STREQ(othersGranted(nullptr, FILE_WRITE_DATA), "Everyone");
}

}  // namespace
}  // namespace cmpinsp
