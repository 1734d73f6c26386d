#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <cstdio>
#include <cstdlib>

#include "providers/common/LocalModule.h"

namespace providers {

namespace {

std::string octal(mode_t mode) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%04o", static_cast<unsigned>(mode) & 07777U);
  return text.data();
}

/// Why others could change what is at `path`, or where it is no folder `above` the module's own,
/// what is in it; empty when they cannot.
std::string refusalOf(const std::string& path, bool above) {
  struct stat state = {};
  if (lstat(path.c_str(), &state) != 0) return path + " cannot be examined";
  if (S_ISLNK(state.st_mode)) return path + " is a link";
  if (state.st_uid != 0 && state.st_uid != geteuid())
    return path + " belongs to another user (id " + std::to_string(state.st_uid) + ")";
  const bool othersWrite = (state.st_mode & (S_IWGRP | S_IWOTH)) != 0;
  // In a sticky one, such as /tmp, others can only put something beside what is there.
  const bool isSticky = S_ISDIR(state.st_mode) && (state.st_mode & S_ISVTX) != 0;
  if (!othersWrite || (above && isSticky)) return {};
  return path + " can be written by other users (mode " + octal(state.st_mode) + ")";
}

/// The first refusal from the module upwards: whoever can rename a folder on the way to it can put
/// another one in its place.
std::string firstRefusal(const std::string& folder, const std::string& module) {
  std::string refusal = refusalOf(module, false);
  if (refusal.empty()) refusal = refusalOf(folder, false);
  for (std::string each = folder; refusal.empty() && each.size() > 1;) {
    const std::size_t slash = each.rfind('/');
    each.erase(slash == 0 ? 1 : slash);
    refusal = refusalOf(each, true);
  }
  return refusal;
}

/// The folder without links on the way to it; empty when there is none.
std::string realFolder(const std::string& folder) {
  std::array<char, PATH_MAX> path{};
  return realpath(folder.c_str(), path.data()) ? path.data() : std::string();
}

}  // namespace

LocalModule loadLocalModule(const std::string& folder, const std::string& name) {
  const std::string file = "lib" + name + ".so";
  if (folder.empty() || folder.front() != '/')
    return {nullptr, file + " is not loaded: the modules' folder is not known"};
  const std::string real = realFolder(folder);
  const std::string path = (real.empty() ? folder : real) + "/" + file;
  if (real.empty() || access(path.c_str(), F_OK) != 0) return {nullptr, path + " is not there"};
  const std::string refusal = firstRefusal(real, path);
  if (!refusal.empty()) return {nullptr, file + " is not loaded: " + refusal};
  void* const handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!handle) return {nullptr, file + " is not loaded: " + dlerror()};
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
