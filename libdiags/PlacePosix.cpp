#include <dlfcn.h>

#include <filesystem>
#include <system_error>

#include "libdiags/Place.h"

namespace libdiags {

std::string folderOfThisLibrary() {
  Dl_info library = {};
  if (dladdr(reinterpret_cast<const void*>(&folderOfThisLibrary), &library) == 0) return {};
  std::error_code failure;
  const auto path = std::filesystem::canonical(library.dli_fname, failure);
  return failure ? std::string() : path.parent_path().u8string();
}

}  // namespace libdiags
