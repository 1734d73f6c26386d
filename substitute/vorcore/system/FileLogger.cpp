#include "substitute/vorcore/system/FileLogger.h"

#include <spdlog/logger.h>
#include <spdlog/sinks/base_sink.h>

#include <cstdio>
#include <filesystem>
#include <mutex>

#include "framework/TVORException.h"
#include "substitute/vorcore/system/LogFile.h"
#include "text/SafeText.h"

namespace vorcore {

using NZELVOR20::TVORException;
using NZELVOR20::TVORStatusCode;

namespace {

/// What the lines of an entry begin with that follow its first.
const std::string kMargin = "    ";

spdlog::level::level_enum levelOf(int level) {
  if (level <= 0) return spdlog::level::err;
  if (level == 1) return spdlog::level::warn;
  return level == 2 ? spdlog::level::info : spdlog::level::trace;
}

/// The system's text for a link that is not followed speaks of too many of them.
std::string reasonOf(const std::string& path, const std::system_error& failure) {
  std::error_code error;
  const bool isLink = std::filesystem::is_symlink(std::filesystem::u8path(path), error);
  return isLink ? "it is a link, which is not followed" : failure.code().message();
}

std::shared_ptr<LogFile> openFile(const std::string& path) {
  try {
    return std::make_shared<LogFile>(path);
  } catch (const std::system_error& failure) {
    throw TVORException(TVORStatusCode(NZELVOR20::eVORAccessDenied,
                                       "log file " + path + ": " + reasonOf(path, failure)));
  }
}

/// Appends each formatted line to the file.
class FileSink final : public spdlog::sinks::base_sink<std::mutex> {
 public:
  explicit FileSink(const std::string& path) : m_path(path), m_file(openFile(path)) {}

 protected:
  void sink_it_(const spdlog::details::log_msg& message) override {
    spdlog::memory_buf_t line;
    formatter_->format(message, line);
    const std::error_code failure = m_file->append(line.data(), line.size());
    if (failure) report(failure);
  }
  void flush_() override {}

 private:
  void report(const std::error_code& failure) {
    if (m_isReported) return;
    m_isReported = true;
    std::fprintf(stderr, "The log file %s cannot be written: %s\n", text::visible(m_path).c_str(),
                 failure.message().c_str());
  }

  std::string m_path;
  std::shared_ptr<LogFile> m_file;
  bool m_isReported = false;
};

}  // namespace

struct FileLogger::Sink {
  explicit Sink(const std::string& path) : logger("core", std::make_shared<FileSink>(path)) {
    logger.set_pattern("%Y-%m-%d %H:%M:%S.%e%z [%l] %v");
    logger.set_level(spdlog::level::trace);
    // Whatever goes wrong with an entry must not end what is being logged.
    logger.set_error_handler([](const std::string&) {});
  }

  spdlog::logger logger;
};

FileLogger::FileLogger(const std::string& path, int level)
    : m_sink(std::make_unique<Sink>(path)), m_level(level) {}

FileLogger::~FileLogger() = default;

void FileLogger::Log(int level, const std::string& text) {
  if (level > m_level) return;
  const std::string entry = text::setApart(text, kMargin);
  m_sink->logger.log(levelOf(level), spdlog::string_view_t(entry.data(), entry.size()));
}

}  // namespace vorcore
