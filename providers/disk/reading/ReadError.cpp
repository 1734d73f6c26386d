#include "providers/disk/reading/ReadError.h"

namespace providers::disk {

const char* errorText(ReadError error) {
  switch (error) {
    case ReadError::None:
      return "no error";
    case ReadError::Medium:
      return "the drive reports a medium error";
    case ReadError::Io:
      return "input/output error";
    case ReadError::Timeout:
      return "the drive did not answer in time";
    case ReadError::Transport:
      return "the connection to the drive failed";
    case ReadError::Protection:
      return "the data do not match their checksum";
    case ReadError::Short:
      return "less came back than was asked for";
    case ReadError::Gone:
      return "the drive is gone";
    case ReadError::Refused:
      return "the read was refused";
    case ReadError::Starved:
      return "the system had no memory for the read";
  }
  return "unknown error";
}

}  // namespace providers::disk
