#include "substitute/cmpi.nsp/broker/calls/Interfaces.h"

#include <utility>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/Log.h"
#include "substitute/cmpi.nsp/broker/WatchedCall.h"
#include "substitute/cmpi.nsp/broker/calls/InterfaceUsers.h"
#include "substitute/cmpi.nsp/broker/library/LoaderWaits.h"
#include "substitute/cmpi.nsp/broker/lifetime/Scope.h"
#include "substitute/cmpi.nsp/broker/objects/ContextObject.h"
#include "substitute/cmpi.nsp/broker/objects/Status.h"
#include "substitute/cmpi.nsp/broker/services/CallGuard.h"

namespace cmpinsp::broker {

using namespace NZELVOR20;

namespace {

constexpr const char* kStillInitialising = "it is still being initialised";

template <typename MI>
using Factory = MI* (*)(const CMPIBroker*, const CMPIContext*, CMPIStatus*);
template <typename MI>
using GenericFactory = MI* (*)(const CMPIBroker*, const CMPIContext*, const char*, CMPIStatus*);

CMPIContext* makeContext(Broker& broker, const std::string& nameSpace) {
  return makeObject(Ownership::kBorrowed, &broker, std::make_unique<ContextBody>(nameSpace));
}

void addReason(std::string& reasons, const std::string& reason) {
  if (reason.empty()) return;
  if (!reasons.empty()) reasons += "; ";
  reasons += reason;
}

/// The edition that a function table announces. Generated tables name it in both places; one that
/// was written by hand may have left the first at zero.
template <typename Table>
int editionOf(const Table& table) {
  return table.ftVersion > 0 ? table.ftVersion : table.miVersion;
}

template <typename MI>
void addOffered(std::vector<OfferedInterface>& offered, const Interface<MI>& which) {
  if (which.mi != nullptr || !which.reason.empty())
    offered.push_back({which.type, which.edition, which.reason});
}

}  // namespace

Interfaces::Interfaces(std::string providerName, std::string libraryPath, std::string nameSpace,
                       Broker& broker)
    : m_providerName(std::move(providerName)),
      m_libraryPath(std::move(libraryPath)),
      m_nameSpace(std::move(nameSpace)),
      m_broker(broker) {}

void Interfaces::load() {
  std::unique_lock<std::mutex> lock(m_mutex);
  waitForOthers(lock);
  if (!m_isLoaded) loadNow(lock);
}

bool Interfaces::wasTried() {
  const std::lock_guard<std::mutex> lock(m_mutex);
  return m_wasTried;
}

std::exception_ptr Interfaces::firstFailure() {
  const std::lock_guard<std::mutex> lock(m_mutex);
  return m_firstFailure;
}

std::vector<OfferedInterface> Interfaces::offered() {
  std::unique_lock<std::mutex> lock(m_mutex);
  waitForOthers(lock);
  std::vector<OfferedInterface> result;
  addOffered(result, instance);
  addOffered(result, association);
  addOffered(result, method);
  addOffered(result, property);
  addOffered(result, indication);
  return result;
}

void Interfaces::waitForOthers(std::unique_lock<std::mutex>& lock) {
  const std::thread::id self = std::this_thread::get_id();
  while (m_loader != std::thread::id() && m_loader != self) {
    if (!beginLoaderWait(self, this, m_loader)) throwFailed(kStillInitialising);
    m_changed.wait(lock);
    endLoaderWait(self);
  }
}

void Interfaces::loadNow(std::unique_lock<std::mutex>& lock) {
  if (m_loader == std::this_thread::get_id()) throwFailed(kStillInitialising);
  struct Loading {
    Interfaces& self;
    std::unique_lock<std::mutex>& held;
    ~Loading() {
      if (!held.owns_lock()) held.lock();
      self.m_loader = std::thread::id();
      endLoaderWaits(&self);
      self.m_changed.notify_all();
    }
  };
  m_wasTried = true;
  m_loader = std::this_thread::get_id();
  const Loading loading{*this, lock};
  lock.unlock();
  try {
    makeAll();
  } catch (...) {
    lock.lock();
    if (!m_firstFailure) m_firstFailure = std::current_exception();
    throw;
  }
  lock.lock();
  m_isLoaded = true;
}

void Interfaces::makeAll() {
  if (!m_library) {
    const WatchedCall watched(m_broker.providerName().c_str(), "load");
    m_library = Library(m_libraryPath);
  }
  make(instance);
  make(association);
  make(method);
  make(property);
  make(indication);
  const bool any = instance.mi != nullptr || association.mi != nullptr || method.mi != nullptr ||
                   property.mi != nullptr || indication.mi != nullptr;
  if (any) return;
  std::string reasons;
  addReason(reasons, instance.reason);
  addReason(reasons, association.reason);
  addReason(reasons, method.reason);
  addReason(reasons, property.reason);
  addReason(reasons, indication.reason);
  throwFailed(reasons.empty() ? "library " + m_libraryPath + " has no factory for it" : reasons);
}

template <typename MI>
MI* Interfaces::callFactory(const Interface<MI>& which, CMPIStatus& status) {
  const std::string suffix = std::string("_Create_") + which.type + "MI";
  const auto generic = m_library.find<GenericFactory<MI>>("_Generic" + suffix);
  const auto specific = m_library.find<Factory<MI>>(m_providerName + suffix);
  const CMPIBroker* broker = m_broker.handle();
  const CMPIContext* context = makeContext(m_broker, m_nameSpace);
  MI* made = nullptr;
  if (generic != nullptr) made = generic(broker, context, m_providerName.c_str(), &status);
  if (made != nullptr || specific == nullptr) return made;
  status = CMPIStatus{CMPI_RC_OK, nullptr};
  return specific(broker, context, &status);
}

template <typename MI>
void Interfaces::make(Interface<MI>& which) {
  if (which.mi != nullptr) return;
  which.reason.clear();
  const std::string operation = std::string("making the ") + which.type + " interface";
  const std::string suffix = std::string("_Create_") + which.type + "MI";
  const bool isOffered = m_library.find<void (*)()>("_Generic" + suffix) != nullptr ||
                         m_library.find<void (*)()>(m_providerName + suffix) != nullptr;
  if (!isOffered) return;
  const Scope scope(Scope::Reason::kCall, &m_broker);
  CMPIStatus status{CMPI_RC_OK, nullptr};
  MI* made = nullptr;
  try {
    const WatchedCall watched(m_broker.providerName().c_str(), "create");
    made = guardedCall(operation, [&] { return callFactory(which, status); });
  } catch (const Failure& failure) {
    which.reason = failure.what();
    return;
  }
  const int code = codeOf(status);
  if (made != nullptr && code == CMPI_RC_OK && made->ft != nullptr) {
    addInterfaceUser(made);
    which.edition = editionOf(*made->ft);
    which.mi = made;
    return;
  }
  const bool isNotOffered =
      made == nullptr && (code == CMPI_RC_ERR_NOT_SUPPORTED || code == CMPI_RC_ERR_NOT_FOUND);
  if (isNotOffered) return;
  which.reason = operation + ": ";
  which.reason += code == CMPI_RC_OK ? "the factory made nothing" : describe(status);
}

template <typename MI>
void Interfaces::cleanUp(Interface<MI>& which) noexcept {
  MI* const mi = std::exchange(which.mi, nullptr);
  if (mi == nullptr) return;
  const bool isLastUser = removeInterfaceUser(mi);
  m_broker.library().setUsedElsewhere(mi, !isLastUser);
  if (!isLastUser || mi->ft->cleanup == nullptr) return;
  try {
    const Scope scope(Scope::Reason::kCall, &m_broker);
    const WatchedCall watched(m_broker.providerName().c_str(), "cleanup");
    const CMPIStatus status = guardedCall("cleanup", [&] {
      return mi->ft->cleanup(mi, makeContext(m_broker, m_nameSpace), CMPI_true);
    });
    const int code = codeOf(status);
    if (code != CMPI_RC_OK && code != CMPI_RC_DO_NOT_UNLOAD && code != CMPI_RC_NEVER_UNLOAD) {
      logLine(1, "provider " + m_providerName + ", cleanup: " + describe(status));
    }
  } catch (const std::exception& failure) {
    logLine(0, "provider " + m_providerName + ", " + failure.what());
  }
}

void Interfaces::cleanUp() noexcept {
  cleanUp(indication);
  cleanUp(property);
  cleanUp(method);
  cleanUp(association);
  cleanUp(instance);
}

void Interfaces::throwMissing(const char* type, const std::string& reason) const {
  if (!reason.empty()) throwFailed(reason);
  throw TVORException(TVORStatusCode(
      eVORNotSupported, "provider " + m_providerName + " has no " + type + " interface"));
}

void Interfaces::throwFailed(const std::string& reason) const {
  const std::string text = "provider " + m_providerName + ": " + reason;
  logLine(0, text);
  throw TVORException(TVORStatusCode(eVORProviderFailed, text));
}

}  // namespace cmpinsp::broker
