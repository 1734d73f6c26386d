#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "substitute/cmpi.nsp/broker/lifetime/MemoryAccount.h"
#include "substitute/cmpi.nsp/broker/lifetime/Tables.h"

namespace cmpinsp {
class IUpcalls;
}

namespace cmpinsp::broker {

class Broker;

/// What the providers of one library share. A library keeps the broker's handle in one variable,
/// whichever of its providers was made last, and what one of them allocates another one frees: so
/// the handle and the memory are the library's, and whose call it is shows in the thread's scope.
///
/// Providers may keep threads that never end, so it stays until the process ends.
class LibraryBroker {
 public:
  /// The one of this library, whose `upcalls` are those, with `member` among its brokers.
  static LibraryBroker& join(const std::string& libraryPath, const IUpcalls& upcalls,
                             Broker& member);
  /// Takes `member` out; the last one to go takes the library's memory with it, unless that is in
  /// use.
  void leave(const Broker& member) noexcept;

  /// The broker whose handle that is: the one of the call that the thread is in, else the oldest
  /// of the library. Some wrappers keep a copy of the handle and pass that, so its address says
  /// nothing; its `hdl` does, which is compared alone and never followed. Throws `Failure` (invalid
  /// handle) for a stranger's.
  static Broker& brokerOf(const CMPIBroker* handle);

  /// Whether providers outside use that interface, which a member gave up. Until they do no longer,
  /// the library's memory stays, where that interface may have its data.
  void setUsedElsewhere(const void* mi, bool isUsed);

  const CMPIBroker* handle() const noexcept { return &m_handle; }
  MemoryAccount& memory() noexcept { return m_memory; }

 private:
  LibraryBroker(std::string libraryPath, const IUpcalls& upcalls);
  ~LibraryBroker() = default;
  void add(Broker& member);

  CMPIBroker m_handle;
  const std::string m_libraryPath;
  const IUpcalls* const m_upcalls;
  std::vector<Broker*> m_members;  ///< oldest first
  std::vector<Broker*> m_left;     ///< those that left, the last one at the end: threads may
                                   ///< outlive them all, and use them still
  MemoryAccount m_memory;
  std::unordered_set<const void*> m_usedElsewhere;  ///< interfaces
};

}  // namespace cmpinsp::broker
