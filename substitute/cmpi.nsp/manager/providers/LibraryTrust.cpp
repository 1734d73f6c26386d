#include "substitute/cmpi.nsp/manager/providers/LibraryTrust.h"

#include <filesystem>
#include <system_error>

#include "substitute/cmpi.nsp/installation/PathRights.h"
#include "substitute/cmpi.nsp/installation/SystemMessage.h"
#include "substitute/cmpi.nsp/manager/providers/LibraryNeeds.h"

namespace cmpinsp {

namespace fs = std::filesystem;

namespace {

std::string refusalOf(const std::string& libraryPath, const fs::path& library,
                      const fs::path& folder) {
  if (library.parent_path() != folder) {
    return libraryPath + " leads out of the providers' folder, to " + library.u8string();
  }
  std::error_code error;
  if (!fs::is_regular_file(library, error)) return libraryPath + " is no file";
  const std::string refusal = whyOthersCanChange(library.u8string());
  return refusal.empty() ? whyOthersCanChangeNeeds(library.u8string()) : refusal;
}

}  // namespace

ExaminedLibrary examineLibrary(const std::string& libraryPath, const std::string& providersFolder) {
  std::error_code error;
  const fs::path library = fs::canonical(fs::u8path(libraryPath), error);
  if (error) return {std::string(), libraryPath + ": " + systemMessage(error)};
  const fs::path folder = fs::canonical(fs::u8path(providersFolder), error);
  if (error) return {std::string(), providersFolder + ": " + systemMessage(error)};
  return {library.u8string(), refusalOf(libraryPath, library, folder)};
}

}  // namespace cmpinsp
