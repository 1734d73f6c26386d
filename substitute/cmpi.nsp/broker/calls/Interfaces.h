#pragma once

#include <condition_variable>
#include <exception>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "substitute/cmpi.nsp/broker/calls/OfferedInterface.h"
#include "substitute/cmpi.nsp/broker/library/Library.h"
#include "substitute/cmpi.nsp/broker/lifetime/Broker.h"

namespace cmpinsp::broker {

/// One management interface of a provider, as far as it was made.
template <typename MI>
struct Interface {
  explicit Interface(const char* typeInFactoryName) : type(typeInFactoryName) {}

  const char* type;  ///< as in the factory's name: "Instance"
  MI* mi = nullptr;
  std::string reason;  ///< why the factory failed; empty where the library has none
  int edition = 0;     ///< of the function table: the slots of later editions are not there
};

/// The management interfaces that a library offers under one provider name. They are made once,
/// by one thread, with no lock held, since a factory may call back into the broker; what failed is
/// tried again later. Safe to use from several threads.
class Interfaces {
 public:
  /// `nameSpace` is what the factories and the clean-up are told.
  Interfaces(std::string providerName, std::string libraryPath, std::string nameSpace,
             Broker& broker);

  /// Makes them. Throws `TVORException` where not a single one could be made.
  void load();

  /// Whether anybody has asked for them.
  bool wasTried();

  /// What the first attempt to make them failed with, whatever became of later ones.
  std::exception_ptr firstFailure();

  /// Those that were made so far, or could not be, in the order below.
  std::vector<OfferedInterface> offered();

  Interface<CMPIInstanceMI> instance{"Instance"};
  Interface<CMPIAssociationMI> association{"Association"};
  Interface<CMPIMethodMI> method{"Method"};
  Interface<CMPIPropertyMI> property{"Property"};
  Interface<CMPIIndicationMI> indication{"Indication"};

  /// The interface `which` of this object, made now if need be. Throws `TVORException`.
  template <typename MI>
  MI& use(const Interface<MI>& which) {
    std::unique_lock<std::mutex> lock(m_mutex);
    waitForOthers(lock);
    if (which.mi == nullptr && (!m_isLoaded || !which.reason.empty())) loadNow(lock);
    if (which.mi == nullptr) throwMissing(which.type, which.reason);
    return *which.mi;
  }

  /// Calls the clean-up of each interface that was made, once; not where another provider got the
  /// same object and uses it still. No other call may be under way.
  void cleanUp() noexcept;

 private:
  /// Throws `TVORException` where they wait for this thread.
  void waitForOthers(std::unique_lock<std::mutex>& lock);
  void loadNow(std::unique_lock<std::mutex>& lock);
  void makeAll();
  template <typename MI>
  void make(Interface<MI>& which);
  template <typename MI>
  MI* callFactory(const Interface<MI>& which, CMPIStatus& status);
  template <typename MI>
  void cleanUp(Interface<MI>& which) noexcept;
  [[noreturn]] void throwMissing(const char* type, const std::string& reason) const;
  [[noreturn]] void throwFailed(const std::string& reason) const;

  const std::string m_providerName;
  const std::string m_libraryPath;
  const std::string m_nameSpace;
  Broker& m_broker;
  Library m_library;

  std::mutex m_mutex;
  std::condition_variable m_changed;
  std::thread::id m_loader;  ///< the thread that is making them, or none
  bool m_wasTried = false;
  std::exception_ptr m_firstFailure;
  bool m_isLoaded = false;
};

}  // namespace cmpinsp::broker
