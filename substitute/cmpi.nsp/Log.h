#pragma once

#include <string>

#include "framework/ILogger.h"
#include "framework/TRootObject.h"

namespace cmpinsp {

/// Log levels of the core log.
constexpr int kErrorLevel = 0;
constexpr int kWarningLevel = 1;
constexpr int kTraceLevel = 3;

/// Writes a line to the core log, where there is one.
inline void logLine(int level, const std::string& text) {
  NZELVOR20::ILogger* logger = NZELVOR20::TRootObject::GetCoreLogger();
  if (logger != nullptr) logger->Log(level, text);
}

}  // namespace cmpinsp
