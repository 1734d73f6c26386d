#include <cstdlib>
#include <filesystem>

#include "substitute/cmpi.nsp/cache/CacheFile.h"

namespace cmpinsp {

namespace {

namespace fs = std::filesystem;

#if defined(_WIN32)

fs::path cacheHome() {
  const wchar_t* const local = _wgetenv(L"LOCALAPPDATA");
  return local == nullptr ? fs::path() : fs::path(local);
}

#else

fs::path cacheHome() {
  const char* const named = std::getenv("XDG_CACHE_HOME");
  if (named != nullptr && fs::u8path(named).is_absolute()) return fs::u8path(named);
  const char* const home = std::getenv("HOME");
  return home == nullptr ? fs::path() : fs::u8path(home) / ".cache";
}

#endif

}  // namespace

std::string userCacheFolder() {
  const fs::path home = cacheHome();
  return home.is_absolute() ? (home / "diagsrunner").u8string() : std::string();
}

}  // namespace cmpinsp
