#include "substitute/cmpi.nsp/broker/services/ProviderRoutine.h"

#include <string>

#include "substitute/cmpi.nsp/Log.h"
#include "substitute/cmpi.nsp/broker/lifetime/Broker.h"
#include "substitute/cmpi.nsp/broker/lifetime/Scope.h"

namespace cmpinsp::broker {

void logThrown(const Broker* provider, const char* what) noexcept {
  try {
    const Broker* const current = currentBroker();
    if (current != nullptr) provider = current;
    const std::string who =
        provider == nullptr ? "a provider" : "provider " + provider->providerName();
    logLine(0, who + ", " + what);
  } catch (...) {
    // Without memory for the line there is none.
  }
}

}  // namespace cmpinsp::broker
