#pragma once

#include <string>

namespace providers::disk {

/// Why a read did not bring what was asked for; each system has its own numbers for these.
enum class ReadError {
  None,
  Medium,      ///< the drive says that it cannot read there
  Io,          ///< no more is known
  Timeout,     ///< the drive did not answer in time
  Transport,   ///< the way to the drive
  Protection,  ///< the data do not fit to their checksum on the drive
  Short,       ///< less than was asked for, without an error
  Gone,        ///< there is no such drive any more
  Refused,     ///< this process may not, or not like this
  Starved,     ///< the system had no memory for it
};

/// Whether the drive, or the way to it, may be what is at fault.
inline bool isOfDrive(ReadError error) {
  return error != ReadError::Refused && error != ReadError::Starved;
}

/// For people: "the drive reports a medium error".
const char* errorText(ReadError error);

/// What an error number of this system means for a read.
ReadError readErrorOf(int systemError);

}  // namespace providers::disk
