#include "substitute/vorcore/system/Configuration.h"

#include <atomic>
#include <boost/make_shared.hpp>
#include <mutex>
#include <utility>

#include "substitute/vorcore/system/ConfigurationState.h"
#include "substitute/vorcore/system/FileLogger.h"

namespace vorcore {
namespace {

/// `logger` is `configuration->logger`, where it can be read without the lock.
struct State {
  std::mutex mutex;
  boost::shared_ptr<const Configuration> configuration = boost::make_shared<Configuration>();
  std::atomic<NZELVOR20::ILogger*> logger{nullptr};
};

/// Never destroyed: threads may still log while the process ends.
State& state() {
  static State* const theState = new State;
  return *theState;
}

/// Hands each line to both.
class TwoLoggers : public NZELVOR20::ILogger {
 public:
  TwoLoggers(boost::shared_ptr<NZELVOR20::ILogger> one, boost::shared_ptr<NZELVOR20::ILogger> other)
      : m_one(std::move(one)), m_other(std::move(other)) {}

  void Log(int level, const std::string& text) override {
    m_one->Log(level, text);
    m_other->Log(level, text);
  }

 private:
  boost::shared_ptr<NZELVOR20::ILogger> m_one;
  boost::shared_ptr<NZELVOR20::ILogger> m_other;
};

}  // namespace

void configure(const Configuration& configuration) {
  const boost::shared_ptr<Configuration> next = boost::make_shared<Configuration>(configuration);
  if (!next->logFile.empty()) {
    const auto file = boost::make_shared<FileLogger>(next->logFile, next->logLevel);
    next->logger = next->logger ? boost::shared_ptr<NZELVOR20::ILogger>(
                                      boost::make_shared<TwoLoggers>(file, next->logger))
                                : file;
  }
  const std::lock_guard<std::mutex> lock(state().mutex);
  state().logger = next->logger.get();
  state().configuration = next;
}

boost::shared_ptr<const Configuration> currentConfiguration() {
  const std::lock_guard<std::mutex> lock(state().mutex);
  return state().configuration;
}

NZELVOR20::ILogger* currentLogger() noexcept { return state().logger; }

}  // namespace vorcore
