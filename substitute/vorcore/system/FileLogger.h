#pragma once

#include <memory>
#include <string>

#include "framework/Export.h"
#include "framework/ILogger.h"

namespace vorcore {

/// Appends lines to a file: time, level name and text. The levels are 0 error, 1 warning, 2 info
/// and from 3 on trace; a negative level is an error. A text of several lines is written as it is,
/// in one piece that no other thread's line divides. Errors reach the file at once.
class VORCORE_API FileLogger final : public NZELVOR20::ILogger {
 public:
  /// Opens the file at `path` (UTF-8); lines above `level` are not written. Throws `TVORException`
  /// (access denied) that names the path when it cannot be opened.
  FileLogger(const std::string& path, int level);
  FileLogger(const FileLogger&) = delete;
  FileLogger& operator=(const FileLogger&) = delete;
  /// Writes out what is still buffered.
  ~FileLogger() override;

  void Log(int level, const std::string& text) override;

 private:
  struct Sink;
  std::unique_ptr<Sink> m_sink;
  int m_level;
};

}  // namespace vorcore
