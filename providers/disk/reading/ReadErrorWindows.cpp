#include <windows.h>

#include "providers/disk/reading/ReadError.h"

namespace providers::disk {

ReadError readErrorOf(int systemError) {
  switch (systemError) {
    case ERROR_SUCCESS:
      return ReadError::None;
    case ERROR_SECTOR_NOT_FOUND:
    case ERROR_READ_FAULT:
      return ReadError::Medium;
    case ERROR_CRC:
      return ReadError::Medium;  // how Windows calls an unreadable sector
    case ERROR_SEM_TIMEOUT:
      return ReadError::Timeout;
    case ERROR_IO_DEVICE:
      return ReadError::Io;
    case ERROR_HANDLE_EOF:
      return ReadError::Short;
    case ERROR_DEV_NOT_EXIST:
    case ERROR_DEVICE_NOT_CONNECTED:
    case ERROR_DEVICE_REMOVED:
    case ERROR_NOT_READY:
      return ReadError::Gone;
    // What is behind the handle takes no reads at all, as a controller may put it.
    case ERROR_INVALID_FUNCTION:
    case ERROR_INVALID_HANDLE:
    case ERROR_NOT_SUPPORTED:
    case ERROR_ACCESS_DENIED:
    case ERROR_INVALID_PARAMETER:
      return ReadError::Refused;
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_NO_SYSTEM_RESOURCES:
    case ERROR_WORKING_SET_QUOTA:
      return ReadError::Starved;
    default:
      return ReadError::Io;
  }
}

}  // namespace providers::disk
