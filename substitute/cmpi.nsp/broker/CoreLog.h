#pragma once

#include <string>

#include "framework/ILogger.h"
#include "framework/TRootObject.h"

namespace cmpinsp::broker {

/// Writes one line to the core log, where there is one.
inline void logLine(int level, const std::string& text) {
  NZELVOR20::ILogger* logger = NZELVOR20::TRootObject::GetCoreLogger();
  if (logger != nullptr) logger->Log(level, text);
}

}  // namespace cmpinsp::broker
