#pragma once

#include <memory>
#include <string>

#include "framework/Export.h"
#include "framework/ILogger.h"

namespace vorcore {

/// Appends lines to a file: time with its offset from UTC, level name and text. The levels are 0
/// error, 1 warning, 2 info and from 3 on trace; a negative level is an error. Every text reaches
/// the file at once, in one piece that no other thread's or process' line divides.
///
/// Texts hold names that come from outside. The lines of a text behind its first one are indented
/// by four blanks, so that none can pass for an entry of its own, and control characters but the
/// tab are written as `\x1b`.
class VORCORE_API FileLogger final : public NZELVOR20::ILogger {
 public:
  /// Opens the file at `path` (UTF-8), which may be missing, in a folder that is not; lines above
  /// `level` are not written. Throws `TVORException` (access denied) that names the path and the
  /// reason when it cannot be opened, or is a link or no regular file.
  FileLogger(const std::string& path, int level);
  FileLogger(const FileLogger&) = delete;
  FileLogger& operator=(const FileLogger&) = delete;
  ~FileLogger() override;

  /// Any thread may call it. What cannot be written, on a full disk for one, is lost; the first
  /// time, a line on standard error says so.
  void Log(int level, const std::string& text) override;

 private:
  struct Sink;
  std::unique_ptr<Sink> m_sink;
  int m_level;
};

}  // namespace vorcore
