#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "substitute/cmpi.nsp/installation/PathRights.h"

namespace cmpinsp {

namespace {

namespace fs = std::filesystem;

std::string octal(mode_t mode) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%04o", static_cast<unsigned>(mode) & 07777U);
  return text.data();
}

/// Why others could change what is at `path`, or in a folder that is not `above`, what is in it;
/// empty when they cannot.
std::string refusalOf(const fs::path& path, bool above) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return path.string() + " cannot be examined";
  if (status.st_uid != 0 && status.st_uid != geteuid()) {
    return path.string() + " belongs to another user (id " + std::to_string(status.st_uid) + ")";
  }
  const bool othersWrite = (status.st_mode & (S_IWGRP | S_IWOTH)) != 0;
  const bool isSticky = S_ISDIR(status.st_mode) && (status.st_mode & S_ISVTX) != 0;
  if (!othersWrite || (above && isSticky)) return std::string();
  return path.string() + " can be written by other users (mode " + octal(status.st_mode) + ")";
}

bool isMissing(const fs::path& path) {
  std::error_code error;
  return fs::status(path, error).type() == fs::file_type::not_found;
}

/// The first refusal from `path` upwards; `folder` is the lowest one that is not above.
std::string firstRefusal(const fs::path& path, const fs::path& folder) {
  bool above = false;
  for (fs::path each = path;; each = each.parent_path()) {
    const std::string refusal = isMissing(each) ? std::string() : refusalOf(each, above);
    if (!refusal.empty() || each == each.parent_path()) return refusal;
    above = above || each == folder;
  }
}

}  // namespace

std::string whyOthersCanChange(const std::string& path) {
  const fs::path file = fs::u8path(path);
  return firstRefusal(file, file.parent_path());
}

std::string whyOthersCanChangeFolder(const std::string& path) {
  const fs::path folder = fs::u8path(path);
  return firstRefusal(folder, folder);
}

}  // namespace cmpinsp
