#pragma once

#include <boost/make_shared.hpp>
#include <mutex>
#include <string>

#include "framework/ILogger.h"
#include "substitute/vorcore/system/Configuration.h"

namespace cmpinsp::broker {

/// The core log for as long as this lives: keeps the lines, with their level in front.
class KeptLog {
 public:
  KeptLog() {
    vorcore::Configuration configuration;
    configuration.logger = m_lines;
    vorcore::configure(configuration);
  }
  KeptLog(const KeptLog&) = delete;
  KeptLog& operator=(const KeptLog&) = delete;
  ~KeptLog() { vorcore::configure({}); }

  std::string text() const {
    const std::lock_guard<std::mutex> lock(m_lines->mutex);
    return m_lines->text;
  }

 private:
  struct Lines final : NZELVOR20::ILogger {
    void Log(int level, const std::string& line) override {
      const std::lock_guard<std::mutex> lock(mutex);
      text += std::to_string(level) + " " + line + "\n";
    }
    std::mutex mutex;
    std::string text;
  };

  const boost::shared_ptr<Lines> m_lines = boost::make_shared<Lines>();
};

}  // namespace cmpinsp::broker
