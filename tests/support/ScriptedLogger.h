#pragma once

#include <functional>
#include <string>

#include "framework/ILogger.h"

namespace support {

/// The core log: its lines are recorded as `log 3 "text"`. Stands behind
/// `TRootObject::GetCoreLogger`, which answers null while it is absent.
class ScriptedLogger : public NZELVOR20::ILogger {
 public:
  static ScriptedLogger& current();
  void clear() {
    isAbsent = false;
    onLine = nullptr;
  }

  void Log(int level, const std::string& text) override;

  bool isAbsent = false;
  /// Run with each line, before it is recorded.
  std::function<void(const std::string& text)> onLine;
};

}  // namespace support
