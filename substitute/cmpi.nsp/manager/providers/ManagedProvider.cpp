#include "substitute/cmpi.nsp/manager/providers/ManagedProvider.h"

#include <filesystem>
#include <utility>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/manager/providers/DefaultNamespace.h"
#include "substitute/cmpi.nsp/manager/providers/LibraryTrust.h"

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
ExaminedLibrary examine(const std::string& library, const std::string& path,
                        const std::string& folder) {
  try {
    libraryFileName(library);
    return examineLibrary(path, folder);
  } catch (const NZELVOR20::TVORException& error) {
    return {std::string(), error.what()};
  }
}

}  // namespace

ManagedProvider::ManagedProvider(RegisteredProvider registration, std::string providersFolder,
                                 IUpcalls& upcalls)
    : m_registration(std::move(registration)),
      m_folder(std::move(providersFolder)),
      m_libraryPath(pathOf(m_folder, m_registration.library)),
      m_upcalls(upcalls) {}

Provider& ManagedProvider::get() {
  std::call_once(m_examined, [this] {
    ExaminedLibrary found = examine(m_registration.library, m_libraryPath, m_folder);
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
