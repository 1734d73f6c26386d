#include "tests/support/ScriptedLogger.h"

#include "framework/TRootObject.h"
#include "tests/support/Journal.h"
#include "tests/support/Text.h"

namespace support {

ScriptedLogger& ScriptedLogger::current() {
  static ScriptedLogger logger;
  return logger;
}

void ScriptedLogger::Log(int level, const std::string& text) {
  if (onLine) {
    onLine(text);
  }
  Journal::current().add(Kind::log, logLine(level, text));
}

}  // namespace support

namespace NZELVOR20 {

ILogger* TRootObject::GetCoreLogger() {
  support::ScriptedLogger& logger = support::ScriptedLogger::current();
  return logger.isAbsent ? nullptr : &logger;
}

}  // namespace NZELVOR20
