#pragma once

#include <boost/shared_ptr.hpp>
#include <map>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "substitute/cmpi.nsp/broker/IUpcalls.h"
#include "substitute/cmpi.nsp/broker/lifetime/LibraryBroker.h"
#include "substitute/cmpi.nsp/broker/lifetime/PinCount.h"
#include "substitute/cmpi.nsp/model/ClassShape.h"

namespace cmpinsp::broker {

/// The broker as one provider sees it. Providers may keep threads that never end, so a broker stays
/// until the process ends; after `retire` its way back into the object manager is closed. Safe to
/// use from several threads.
class Broker {
 public:
  /// A new broker for the provider `providerName` of that library. `upcalls` has to live until
  /// `retire`.
  static Broker& make(std::string providerName, const std::string& libraryPath, IUpcalls& upcalls);

  /// The broker that a provider names. Throws `Failure` (invalid handle).
  static Broker& of(const CMPIBroker* broker) { return LibraryBroker::brokerOf(broker); }

  const std::string& providerName() const noexcept { return m_providerName; }
  const CMPIBroker* handle() const noexcept { return m_library.handle(); }
  LibraryBroker& library() const noexcept { return m_library; }

  /// The object manager, held open for as long as this lives. Throws `Failure` once the broker is
  /// retired.
  class Upcalls {
   public:
    explicit Upcalls(Broker& broker);
    IUpcalls* operator->() const noexcept { return m_upcalls; }
    IUpcalls& operator*() const noexcept { return *m_upcalls; }

   private:
    Pin m_pin;
    IUpcalls* m_upcalls;
  };

  /// Waits for the upcalls that are under way and lets no further one through. The memory that
  /// the library asked for goes with the last of its brokers.
  void retire();
  /// Lets no further upcall through, without waiting for those that are under way; where these
  /// never return.
  void abandon() { m_pins.close(); }

  /// The shape of the class, or null where nobody declared it.
  boost::shared_ptr<const ClassShape> shapeOf(const std::string& className);
  boost::shared_ptr<const ClassShape> shapeOf(const vorcore::ClassDeclarationPtr& declaration);

  /// The key names of a class that nobody declared, as far as the provider has shown them.
  std::vector<std::string> knownKeys(const std::string& className);
  void learnKeys(const ObjectPath& path);

  /// The namespace that references carry.
  boost::shared_ptr<NZELVOR20::ICIMNamespace> namespaceHandle();

 private:
  Broker(std::string providerName, const std::string& libraryPath, IUpcalls& upcalls);
  ~Broker() = default;

  LibraryBroker& m_library;
  std::string m_providerName;
  IUpcalls* m_upcalls;
  PinCount m_pins;

  std::mutex m_mutex;
  std::unordered_map<const vorcore::ClassDeclaration*, boost::shared_ptr<const ClassShape>>
      m_shapes;
  std::map<std::string, std::vector<std::string>> m_knownKeys;
};

}  // namespace cmpinsp::broker
