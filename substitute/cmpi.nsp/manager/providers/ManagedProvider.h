#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "substitute/cmpi.nsp/broker/calls/Provider.h"
#include "substitute/cmpi.nsp/registration/RegistrationTable.h"
#include "substitute/cmpi.nsp/trust/LibraryTrust.h"

namespace cmpinsp {

/// A registered provider, from the registration to the loaded library. Safe to use from several
/// threads.
class ManagedProvider {
 public:
  /// `providersFolder` is where the library has to be, `trust` examines what is there; that one and
  /// `upcalls` outlive the provider. Nothing is examined or loaded yet.
  ManagedProvider(RegisteredProvider registration, const std::string& providersFolder,
                  LibraryTrust& trust, IUpcalls& upcalls);

  const RegisteredProvider& registration() const noexcept { return m_registration; }
  /// The path of the library file; the name as registered where it is no file name.
  const std::string& libraryPath() const noexcept { return m_libraryPath; }

  /// The provider to call. Throws `TVORException` (access denied) with the reason when its library
  /// may not be loaded, or the provider is left out; whether it can be shows at the first call.
  Provider& get();

 private:
  RegisteredProvider m_registration;
  std::string m_libraryPath;
  std::once_flag m_examined;
  std::string m_refusal;
  LibraryTrust& m_trust;
  IUpcalls& m_upcalls;
  std::unique_ptr<Provider> m_provider;  ///< once its library was found fit to be loaded
};

}  // namespace cmpinsp
