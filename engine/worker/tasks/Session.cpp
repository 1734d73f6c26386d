#include "engine/worker/tasks/Session.h"

#include <boost/make_shared.hpp>
#include <exception>
#include <new>
#include <utility>

#include "engine/worker/guard/CrashNotice.h"
#include "engine/worker/guard/MemoryWatch.h"
#include "engine/worker/tasks/Thrown.h"
#include "engine/worker/wire/Wire.h"
#include "framework/TVORException.h"
#include "text/Words.h"

namespace engine::tasks {
namespace {

using substitute::ProviderInfo;
using substitute::ProviderState;

/// Keeps for the last word where each thread is, and for the supervisor, who has to know where a
/// worker was that can't say it any more.
class PlaceWatch : public substitute::ICallWatch {
 public:
  void entered(const char* provider, const char* operation) noexcept override {
    guard::enterPlace(provider, operation);
    if (*provider != '\0') wire::leaveWord(provider, operation);
  }
  void left() noexcept override { guard::leavePlace(); }
  void threw(const char* provider, const char* what) noexcept override {
    noteThrown(provider, what);
  }
};

/// Makes events of the core log.
class EventLogger : public NZELVOR20::ILogger {
 public:
  explicit EventLogger(int level) : m_level(level) {}
  void Log(int level, const std::string& text) override {
    if (level > m_level) return;
    try {
      wire::send(Happened{Source::kWorker, LogLine{level, text}});
    } catch (...) {
      // Without memory the line is in the file alone.
    }
  }

 private:
  int m_level;
};

substitute::Installation installationOf(const InstallationOptions& options, int logLevel) {
  static PlaceWatch watch;
  substitute::Installation installation;
  installation.root = options.root;
  installation.logFile = options.logFile;
  installation.logLevel = options.logLevel;
  installation.overrideBiosId = options.biosId.has_value();
  installation.biosId = options.biosId.value_or(std::string());
  installation.schemaCache = options.schemaCache;
  installation.withoutProviders = options.withoutProviders;
  installation.callWatch = &watch;
  if (logLevel >= 0) installation.logger = boost::make_shared<EventLogger>(logLevel);
  return installation;
}

}  // namespace

Session::Session(const InstallationOptions& options, int logLevel)
    : m_framework(installationOf(options, logLevel)) {}

Session::~Session() { DiagsRunner::FreeDiagsRunner(); }

DiagsRunner& Session::runner() { return *DiagsRunner::GetDiagsRunner(m_framework.objectManager()); }

std::string Session::listing() {
  std::string text = runner().EnumerateDiagTests(std::string());
  if (guard::hasMemoryRunOut()) throw std::bad_alloc();
  tellUnusableProviders();
  return text;
}

void Session::tellUnusableProviders() {
  for (const ProviderInfo& one : m_framework.providers(false)) {
    const bool isFine =
        one.state == ProviderState::kUsable || one.state == ProviderState::kNotLoaded;
    if (one.lacksMemory) throw std::bad_alloc();
    if (isFine || !m_told.insert(one.name).second) continue;
    wire::send(UnusableProvider{one.name, wordFor(one.state), one.reason});
  }
  for (const Thrown& one : allThrown()) {
    if (m_told.insert(one.provider).second) {
      wire::send(UnusableProvider{one.provider, "fails", one.text});
    }
  }
}

const char* wordFor(ProviderState state) {
  switch (state) {
    case ProviderState::kUsable:
      return "usable";
    case ProviderState::kIncomplete:
      return "incomplete";
    case ProviderState::kMissing:
      return "missing";
    case ProviderState::kRefused:
      return "refused";
    case ProviderState::kBroken:
      return "broken";
    default:
      return "not loaded";
  }
}

std::string currentExceptionText() {
  try {
    throw;
  } catch (const NZELVOR20::TVORException& error) {
    return error.GetStatus().TranslateStatusCode();
  } catch (...) {
    return text::currentExceptionText();
  }
}

}  // namespace engine::tasks
