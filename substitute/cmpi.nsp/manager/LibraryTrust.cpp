#include "substitute/cmpi.nsp/manager/LibraryTrust.h"

#include <filesystem>
#include <system_error>

#if !defined(_WIN32)
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#endif

namespace cmpinsp {

namespace {

namespace fs = std::filesystem;

#if defined(_WIN32)

std::string refusalByRights(const fs::path&) { return std::string(); }

#else

std::string octal(mode_t mode) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%04o", static_cast<unsigned>(mode) & 07777U);
  return text.data();
}

/// Why others could change what is at `path`; empty when they cannot.
std::string refusalOf(const fs::path& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return path.string() + " cannot be examined";
  if (status.st_uid != 0 && status.st_uid != geteuid()) {
    return path.string() + " belongs to another user (id " + std::to_string(status.st_uid) + ")";
  }
  const bool othersWrite = (status.st_mode & (S_IWGRP | S_IWOTH)) != 0;
  const bool isSticky = S_ISDIR(status.st_mode) && (status.st_mode & S_ISVTX) != 0;
  if (!othersWrite || isSticky) return std::string();
  return path.string() + " can be written by other users (mode " + octal(status.st_mode) + ")";
}

std::string refusalByRights(const fs::path& library) {
  for (fs::path path = library;; path = path.parent_path()) {
    const std::string refusal = refusalOf(path);
    if (!refusal.empty() || path == path.parent_path()) return refusal;
  }
}

#endif

}  // namespace

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
  return refusalByRights(library);
}

}  // namespace cmpinsp
