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
#include <filesystem>
#include <memory>
#include <new>
#include <system_error>
#endif

namespace cmpinsp::broker {
namespace {

/// With what is wrong with the file, if anything is, rather than the loader's reason.
[[noreturn]] void fail(const std::string& path, const std::string& loadersReason,
                       NZELVOR20::EVORStatusCode code = NZELVOR20::eVORProviderFailed) {
  const std::string foreign = foreignFormat(path);
  const std::string& reason = foreign.empty() ? loadersReason : foreign;
  throw NZELVOR20::TVORException(NZELVOR20::TVORStatusCode(
      foreign.empty() ? code : NZELVOR20::eVORProviderFailed, "library " + path + ": " + reason));
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
    fail(path, systemMessage(reason) + " (error " + std::to_string(reason.value()) + ")",
         reason == std::errc::not_enough_memory ? NZELVOR20::eVOROutOfMemory
                                                : NZELVOR20::eVORProviderFailed);
  }
}

Library::AnyFunction Library::address(const std::string& name) const {
  return reinterpret_cast<AnyFunction>(
      GetProcAddress(static_cast<HMODULE>(m_handle), name.c_str()));
}

#else

namespace {

/// The loader's reason does not tell want of memory from other causes. With its data, and what it
/// needs, a library takes more than its file.
bool hasRoomFor(const std::string& file) {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(std::filesystem::u8path(file), error);
  if (error) return true;
  const std::unique_ptr<char[]> room(new (std::nothrow) char[2 * size]);
  return room != nullptr;
}

}  // namespace

Library::Library(const std::string& path) {
  // A name without a slash would be looked for in the system's folders.
  const std::string file = path.find('/') == std::string::npos ? "./" + path : path;
  m_handle = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (m_handle != nullptr) return;
  const char* reason = dlerror();
  fail(path, reason == nullptr ? "cannot be loaded" : reason,
       hasRoomFor(file) ? NZELVOR20::eVORProviderFailed : NZELVOR20::eVOROutOfMemory);
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
