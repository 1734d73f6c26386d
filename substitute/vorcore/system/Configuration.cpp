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

}  // namespace

void configure(const Configuration& configuration) {
  const boost::shared_ptr<Configuration> next = boost::make_shared<Configuration>(configuration);
  if (!next->logger && !next->logFile.empty()) {
    next->logger = boost::make_shared<FileLogger>(next->logFile, next->logLevel);
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
