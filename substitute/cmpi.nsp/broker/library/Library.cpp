#include "substitute/cmpi.nsp/broker/library/Library.h"

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/broker/library/LibraryFile.h"
#include "substitute/cmpi.nsp/installation/SystemMessage.h"

#if defined(_WIN32)
#include <windows.h>

#include <filesystem>
#include <system_error>
#else
#include <dlfcn.h>

#include <cstring>
#endif

namespace cmpinsp::broker {
namespace {

/// With what is wrong with the file, if anything is, rather than the loader's reason.
[[noreturn]] void fail(const std::string& path, const std::string& loadersReason) {
  const std::string foreign = foreignFormat(path);
  const std::string& reason = foreign.empty() ? loadersReason : foreign;
  throw NZELVOR20::TVORException(
      NZELVOR20::TVORStatusCode(NZELVOR20::eVORProviderFailed, "library " + path + ": " + reason));
}

}  // namespace

#if defined(_WIN32)

Library::Library(const std::string& path) {
  std::error_code error;
  const auto file = std::filesystem::absolute(std::filesystem::u8path(path), error);
  if (error) fail(path, systemMessage(error));
  // What the library itself needs comes from its own folder or from the system's.
  m_handle = LoadLibraryExW(file.c_str(), nullptr,
                            LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
  if (m_handle == nullptr) {
    const std::error_code reason(static_cast<int>(GetLastError()), std::system_category());
    fail(path, systemMessage(reason) + " (error " + std::to_string(reason.value()) + ")");
  }
}

Library::AnyFunction Library::address(const std::string& name) const {
  return reinterpret_cast<AnyFunction>(
      GetProcAddress(static_cast<HMODULE>(m_handle), name.c_str()));
}

#else

Library::Library(const std::string& path) {
  // A name without a slash would be looked for in the system's folders.
  const std::string file = path.find('/') == std::string::npos ? "./" + path : path;
  m_handle = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (m_handle != nullptr) return;
  const char* reason = dlerror();
  fail(path, reason == nullptr ? "cannot be loaded" : reason);
}

Library::AnyFunction Library::address(const std::string& name) const {
  void* const object = dlsym(m_handle, name.c_str());
  AnyFunction function = nullptr;
  static_assert(sizeof function == sizeof object, "functions and objects have alike addresses");
  std::memcpy(&function, &object, sizeof function);
  return function;
}

#endif

}  // namespace cmpinsp::broker
