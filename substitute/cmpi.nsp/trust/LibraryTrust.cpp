#include "substitute/cmpi.nsp/trust/LibraryTrust.h"

#include <filesystem>
#include <utility>

#include "substitute/cmpi.nsp/installation/PathRights.h"
#include "substitute/cmpi.nsp/installation/SystemMessage.h"
#include "substitute/cmpi.nsp/trust/LibraryNeeds.h"

namespace cmpinsp {

namespace fs = std::filesystem;

/// What is known of files and folders at a time. They may change later.
struct LibraryTrust::Moment {
  Moment(std::chrono::steady_clock::time_point now, const std::string& providersFolder)
      : begin(now), folder(rights.resolve(providersFolder)), needs(rights) {}

  std::string refusalOf(const std::string& libraryPath, const ResolvedPath& library) {
    if (fs::u8path(library.path).parent_path() != fs::u8path(folder.path)) {
      return libraryPath + " leads out of the providers' folder, to " + library.path;
    }
    if (!library.isFile) return libraryPath + " is no file";
    const std::string refusal = rights.whyOthersCanChange(library.path);
    return refusal.empty() ? needs.refusalOf(library.path) : refusal;
  }

  const std::chrono::steady_clock::time_point begin;
  PathRights rights;
  const ResolvedPath folder;
  LibraryNeeds needs;
};

LibraryTrust::LibraryTrust(std::string providersFolder, Clock clock)
    : m_providersFolder(std::move(providersFolder)), m_clock(std::move(clock)) {}

LibraryTrust::~LibraryTrust() = default;

LibraryTrust::Moment& LibraryTrust::moment() {
  const auto now = m_clock();
  if (!m_moment || now - m_moment->begin > std::chrono::seconds(1)) {
    m_moment = std::make_unique<Moment>(now, m_providersFolder);
  }
  return *m_moment;
}

ExaminedLibrary LibraryTrust::examine(const std::string& libraryPath) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  Moment& now = moment();
  const ResolvedPath library = now.rights.resolve(libraryPath);
  if (library.error) return {std::string(), libraryPath + ": " + systemMessage(library.error)};
  if (now.folder.error) {
    return {std::string(), m_providersFolder + ": " + systemMessage(now.folder.error)};
  }
  return {library.path, now.refusalOf(libraryPath, library)};
}

}  // namespace cmpinsp
