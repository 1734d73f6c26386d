#pragma once

#include <string>

#include "framework/Export.h"

namespace NZELVOR20 {

/// Takes the lines of a log. May be called from several threads.
class NZELVOR20_INTERFACE ILogger {
 public:
  virtual ~ILogger() = default;

  /// Writes one line. Level 0 is an error, 3 a trace line. Does not throw.
  virtual void Log(int level, const std::string& text) = 0;
};

}  // namespace NZELVOR20
