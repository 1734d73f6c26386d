#include <cerrno>

#include "providers/disk/reading/ReadError.h"

namespace providers::disk {

ReadError readErrorOf(int systemError) {
  switch (systemError) {
    case 0:
      return ReadError::None;
    case ENODATA:
      return ReadError::Medium;  // what the kernel makes of a medium error
    case ETIMEDOUT:
      return ReadError::Timeout;
    case ENOLINK:
    case EREMOTEIO:
      return ReadError::Transport;
    case EILSEQ:
      return ReadError::Protection;
    case ENODEV:
    case ENXIO:
    case ENOMEDIUM:
      return ReadError::Gone;
    case EPERM:
    case EACCES:
    case EINVAL:
      return ReadError::Refused;
    case ENOMEM:
    case EAGAIN:
      return ReadError::Starved;
    default:
      return ReadError::Io;
  }
}

}  // namespace providers::disk
