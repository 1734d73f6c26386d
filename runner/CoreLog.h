#pragma once

#include <string>
#include <string_view>

#include "framework/TRootObject.h"

namespace diagsrunner {

constexpr int kErrorLevel = 0;
constexpr int kTraceLevel = 3;

/// Writes the texts, joined, as one line of the core log. Without a logger nothing is joined and
/// nothing is written.
template <typename... Texts>
void logLine(int level, const Texts&... texts) {
  NZELVOR20::ILogger* logger = NZELVOR20::TRootObject::GetCoreLogger();
  if (logger == nullptr) {
    return;
  }
  std::string line;
  line.reserve((std::string_view(texts).size() + ...));
  (line.append(std::string_view(texts)), ...);
  logger->Log(level, line);
}

template <typename... Texts>
void logTrace(const Texts&... texts) {
  logLine(kTraceLevel, texts...);
}

template <typename... Texts>
void logError(const Texts&... texts) {
  logLine(kErrorLevel, texts...);
}

/// The same where nothing may be thrown: a line for which there is no memory is left out.
template <typename... Texts>
void tryLogError(const Texts&... texts) noexcept {
  try {
    logError(texts...);
  } catch (...) {
    // Whoever cannot write the line goes on without it.
  }
}

}  // namespace diagsrunner
