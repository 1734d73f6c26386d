#pragma once

#include <string>

#include "diagsrunner/DiagsRunner.h"
#include "host/ProviderWatch.h"
#include "host/TestCatalogue.h"
#include "substitute/cmpi.nsp/Bootstrap.h"

namespace host {

/// The framework and the runner on it, for the length of one command. The framework comes up with
/// the session, the runner with its first use; the runner goes before the framework. A process has
/// one session at most.
class Session {
 public:
  /// Throws `TVORException` when the framework does not come up.
  explicit Session(const substitute::Installation& installation);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();

  const std::string& root() const { return m_root; }
  const substitute::Framework& framework() const { return m_framework; }

  /// The runner on the framework's object manager; what its construction throws passes on.
  DiagsRunner& runner();

  /// The providers that turn out not to be usable in the course of the command.
  ProviderWatch& providers() { return m_providers; }

  /// The runner's listing, word for word. The providers that could not be used for it are reported.
  /// Throws `std::bad_alloc` where memory ran out, which the runner takes for nothing being there.
  std::string listing();
  /// The tests of the listing.
  TestCatalogue catalogue();

 private:
  std::string m_root;
  substitute::Framework m_framework;
  ProviderWatch m_providers;
};

}  // namespace host
