#include "substitute/cmpi.nsp/manager/LibraryTrust.h"

#include <filesystem>
#include <system_error>

#include "substitute/cmpi.nsp/installation/PathRights.h"

namespace cmpinsp {

namespace fs = std::filesystem;

std::string refusalToLoad(const std::string& libraryPath, const std::string& providersFolder) {
  std::error_code error;
  const fs::path library = fs::canonical(fs::u8path(libraryPath), error);
  if (error) return libraryPath + ": " + error.message();
  const fs::path folder = fs::canonical(fs::u8path(providersFolder), error);
  if (error) return providersFolder + ": " + error.message();
  if (library.parent_path() != folder) {
    return libraryPath + " leads out of the providers' folder, to " + library.u8string();
  }
  if (!fs::is_regular_file(library, error)) return libraryPath + " is no file";
  return whyOthersCanChange(library.u8string());
}

}  // namespace cmpinsp
