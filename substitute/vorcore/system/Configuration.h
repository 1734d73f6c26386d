#pragma once

#include <boost/shared_ptr.hpp>
#include <string>

#include "framework/Export.h"
#include "framework/ILogger.h"

namespace vorcore {

/// How vorcore behaves in this process. All texts are UTF-8.
struct Configuration {
  /// The installation directory; empty: the folder of the running program.
  std::string root;
  /// The answer of `TOSSpecific::GetBiosID`, when `overrideBiosId`.
  std::string biosId;
  bool overrideBiosId = false;
  /// The answer of `TOSSpecific::isOEMBuild`.
  bool oemBuild = false;
  /// The file that the core log is appended to; empty: no file.
  std::string logFile;
  /// Lines above this level are not written to the file.
  int logLevel = 3;
  /// Gets the core log too, the lines of every level.
  boost::shared_ptr<NZELVOR20::ILogger> logger;
};

/// Replaces the configuration of this process, and with it the core log: to be called before other
/// threads use the framework. Throws `TVORException` (access denied), and changes nothing, when the
/// log file cannot be written.
VORCORE_API void configure(const Configuration& configuration);

}  // namespace vorcore
