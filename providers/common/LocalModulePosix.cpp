#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#include "providers/common/LocalModule.h"

namespace providers {

namespace {

/// Whether nobody else can have put it there.
bool isTrusted(const std::string& path) {
  struct stat state = {};
  if (lstat(path.c_str(), &state) != 0) return false;
  return (state.st_uid == 0 || state.st_uid == geteuid()) &&
         (state.st_mode & (S_IWGRP | S_IWOTH)) == 0 && !S_ISLNK(state.st_mode);
}

}  // namespace

LocalModule loadLocalModule(const std::string& folder, const std::string& name) {
  if (folder.empty() || folder.front() != '/') return {nullptr, "the modules' folder is not known"};
  const std::string path = folder + "/lib" + name + ".so";
  if (access(path.c_str(), F_OK) != 0) return {nullptr, path + " is not there"};
  if (!isTrusted(folder) || !isTrusted(path))
    return {nullptr, path + " may have been written by others"};
  void* const handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!handle) return {nullptr, dlerror()};
  return {handle, {}};
}

std::string folderOfLibrary(const void* address) {
  Dl_info info = {};
  if (!dladdr(address, &info) || !info.dli_fname) return {};
  const std::string path = info.dli_fname;
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? std::string() : path.substr(0, slash);
}

}  // namespace providers
