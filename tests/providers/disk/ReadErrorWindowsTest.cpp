#include <gtest/gtest.h>
#include <windows.h>

#include "providers/disk/reading/ReadError.h"

namespace providers::disk {
namespace {

struct ErrorRow {
  DWORD error;
  bool ofDrive;
};

// Catches a drive that is to be replaced because its reads are refused before they come to it.
TEST(ReadErrorWindows, WhatIsRefusedIsNoFaultOfTheDrive) {
  for (const ErrorRow& row :
       {ErrorRow{ERROR_INVALID_FUNCTION, false}, ErrorRow{ERROR_NOT_SUPPORTED, false},
        ErrorRow{ERROR_INVALID_HANDLE, false}, ErrorRow{ERROR_ACCESS_DENIED, false},
        ErrorRow{ERROR_NO_SYSTEM_RESOURCES, false}, ErrorRow{ERROR_CRC, true},
        ErrorRow{ERROR_IO_DEVICE, true}, ErrorRow{ERROR_DEVICE_REMOVED, true},
        ErrorRow{ERROR_INVALID_DATA, true}})
    EXPECT_EQ(isOfDrive(readErrorOf(static_cast<int>(row.error))), row.ofDrive) << row.error;
}

}  // namespace
}  // namespace providers::disk
