#include "tests/support/Fault.h"

#include <stdexcept>

#include "framework/TVORException.h"

namespace support {

std::string nameOf(Fault fault) {
  switch (fault) {
    case Fault::vorException:
      return "vor exception";
    case Fault::standardException:
      return "standard exception";
    case Fault::otherException:
      return "other exception";
    case Fault::emptyHandle:
      break;
  }
  return "empty handle";
}

void PrintTo(Fault fault, std::ostream* stream) { *stream << nameOf(fault); }

void raise(Fault fault) {
  switch (fault) {
    case Fault::vorException:
      throw NZELVOR20::TVORException(
          NZELVOR20::TVORStatusCode(NZELVOR20::eVORFailed, kScriptedFailure));
    case Fault::standardException:
      throw std::runtime_error(kScriptedFailure);
    case Fault::otherException:
      throw 42;
    case Fault::emptyHandle:
      break;
  }
}

}  // namespace support
