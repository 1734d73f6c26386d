#pragma once

#include <set>
#include <string>

#include "diagsrunner/DiagsRunner.h"
#include "engine/protocol/Messages.h"
#include "substitute/cmpi.nsp/Bootstrap.h"

namespace engine::tasks {

/// The framework and the runner on it, for the length of one task. The framework comes up with the
/// session, the runner with its first use; the runner goes before the framework. A process has one
/// session at most.
class Session {
 public:
  /// The log up to `logLevel` becomes events; -1: none of it. Throws `TVORException` when the
  /// framework does not come up.
  Session(const InstallationOptions& options, int logLevel);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();

  const substitute::Framework& framework() const { return m_framework; }
  NZELVOR20::ICIMNamespace& objects() { return *m_framework.objectManager(); }

  /// The runner on the framework's object manager; what its construction throws passes on.
  DiagsRunner& runner();

  /// The runner's listing, word for word. Throws `std::bad_alloc` where memory ran out, which the
  /// runner takes for nothing being there.
  std::string listing();

  /// Tells of the providers that turned out not to be usable and were not told of before. None is
  /// loaded to find out: of a library that nobody has asked for it is known only whether it is
  /// there and may be loaded. Throws `std::bad_alloc` where one could not be loaded for want of
  /// memory.
  void tellUnusableProviders();

 private:
  substitute::Framework m_framework;
  std::set<std::string> m_told;
};

/// The word for a state, as `diags providers` prints it.
const char* wordFor(substitute::ProviderState state);

/// What the exception that is being handled has to say: the status text of a framework exception,
/// the message of another one. To be called in a handler only.
std::string currentExceptionText();

}  // namespace engine::tasks
