#include "substitute/cmpi.nsp/manager/providers/ManagedProvider.h"

#include <filesystem>
#include <utility>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/manager/providers/DefaultNamespace.h"

namespace cmpinsp {

namespace {

std::string pathOf(const std::string& folder, const std::string& library) {
  try {
    return (std::filesystem::u8path(folder) / std::filesystem::u8path(libraryFileName(library)))
        .u8string();
  } catch (const NZELVOR20::TVORException&) {
    return library;
  }
}

/// The namespace that the factories are told, of those that the provider serves.
std::string firstNamespaceOf(const RegisteredProvider& registration) {
  return registration.classes.empty() ? kDefaultNamespace
                                      : namespaceOf(registration.classes.front());
}

/// The name is checked again: a path would be taken for a file's place otherwise.
ExaminedLibrary examine(const std::string& library, const std::string& path, LibraryTrust& trust) {
  try {
    libraryFileName(library);
    return trust.examine(path);
  } catch (const NZELVOR20::TVORException& error) {
    return {std::string(), error.what()};
  }
}

}  // namespace

ManagedProvider::ManagedProvider(RegisteredProvider registration,
                                 const std::string& providersFolder, LibraryTrust& trust,
                                 IUpcalls& upcalls)
    : m_registration(std::move(registration)),
      m_libraryPath(pathOf(providersFolder, m_registration.library)),
      m_trust(trust),
      m_upcalls(upcalls) {}

Provider& ManagedProvider::get() {
  if (m_registration.isLeftOut) {
    throw NZELVOR20::TVORException(NZELVOR20::TVORStatusCode(
        NZELVOR20::eVORAccessDenied, "provider " + m_registration.name + ": left out"));
  }
  std::call_once(m_examined, [this] {
    ExaminedLibrary found = examine(m_registration.library, m_libraryPath, m_trust);
    m_refusal = std::move(found.refusal);
    if (!m_refusal.empty()) return;
    m_provider = std::make_unique<Provider>(m_registration.name, std::move(found.path), m_upcalls,
                                            firstNamespaceOf(m_registration));
  });
  if (m_provider) return *m_provider;
  std::error_code ignored;
  const bool isThere = std::filesystem::exists(std::filesystem::u8path(m_libraryPath), ignored);
  throw NZELVOR20::TVORException(
      NZELVOR20::TVORStatusCode(isThere ? NZELVOR20::eVORAccessDenied : NZELVOR20::eVORNotFound,
                                "provider " + m_registration.name + ": " + m_refusal));
}

}  // namespace cmpinsp
