#include "substitute/vorcore/system/FileLogger.h"

#if defined(_WIN32)
#define SPDLOG_WCHAR_FILENAMES
#endif
#include <spdlog/logger.h>
#include <spdlog/sinks/basic_file_sink.h>

#include <exception>
#include <filesystem>

#include "framework/TVORException.h"

namespace vorcore {

using NZELVOR20::TVORException;
using NZELVOR20::TVORStatusCode;

namespace {

spdlog::level::level_enum levelOf(int level) {
  if (level <= 0) return spdlog::level::err;
  if (level == 1) return spdlog::level::warn;
  return level == 2 ? spdlog::level::info : spdlog::level::trace;
}

std::shared_ptr<spdlog::sinks::sink> openFile(const std::string& path) {
  try {
    return std::make_shared<spdlog::sinks::basic_file_sink_mt>(
        std::filesystem::u8path(path).native());
  } catch (const std::exception&) {
    throw TVORException(TVORStatusCode(NZELVOR20::eVORAccessDenied, "log file " + path));
  }
}

}  // namespace

struct FileLogger::Sink {
  explicit Sink(const std::string& path) : logger("core", openFile(path)) {
    logger.set_pattern("%Y-%m-%d %H:%M:%S.%e [%l] %v");
    logger.set_level(spdlog::level::trace);
    logger.flush_on(spdlog::level::err);
    // A full disk must not end what is being logged.
    logger.set_error_handler([](const std::string&) {});
  }

  spdlog::logger logger;
};

FileLogger::FileLogger(const std::string& path, int level)
    : m_sink(std::make_unique<Sink>(path)), m_level(level) {}

FileLogger::~FileLogger() { m_sink->logger.flush(); }

void FileLogger::Log(int level, const std::string& text) {
  if (level > m_level) return;
  m_sink->logger.log(levelOf(level), spdlog::string_view_t(text.data(), text.size()));
}

}  // namespace vorcore
