#pragma once

#include <string>

#include "framework/TVORException.h"

namespace cmpinsp {

/// The exception for a failure with that status, to be thrown.
inline NZELVOR20::TVORException failure(NZELVOR20::EVORStatusCode code, const std::string& detail) {
  return NZELVOR20::TVORException(NZELVOR20::TVORStatusCode(code, detail));
}

}  // namespace cmpinsp
