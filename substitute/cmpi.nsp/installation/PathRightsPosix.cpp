#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <filesystem>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "substitute/cmpi.nsp/installation/PathRights.h"

namespace cmpinsp {

namespace {

/// A file, folder or link as it was found.
struct Found {
  int error = 0;
  uid_t owner = 0;
  mode_t mode = 0;
};

Found foundAt(const std::string& path) {
  struct stat status {};
  Found found;
  if (lstat(path.c_str(), &status) != 0) found.error = errno;
  found.owner = status.st_uid;
  found.mode = status.st_mode;
  return found;
}

std::string octal(mode_t mode) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%04o", static_cast<unsigned>(mode) & 07777U);
  return text.data();
}

bool isRootOf(const std::string& path) { return path.size() <= 1; }

std::string parentOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
}

std::string foreignOwner(const std::string& path, const Found& found) {
  if (found.owner == 0 || found.owner == geteuid()) return std::string();
  return path + " belongs to another user (id " + std::to_string(found.owner) + ")";
}

/// Why others could change what is at `path`, or in a folder that is not `above`, what is in it;
/// empty when they cannot.
std::string refusalOf(const std::string& path, const Found& found, bool above) {
  if (found.error != 0) return path + " cannot be examined";
  std::string refusal = foreignOwner(path, found);
  if (!refusal.empty()) return refusal;
  const bool othersWrite = (found.mode & (S_IWGRP | S_IWOTH)) != 0;
  const bool isSticky = S_ISDIR(found.mode) && (found.mode & S_ISVTX) != 0;
  if (!othersWrite || (above && isSticky)) return std::string();
  return path + " can be written by other users (mode " + octal(found.mode) + ")";
}

/// The parts of a path, the last one first; empty ones and "." are left out.
void pushParts(std::string_view path, std::vector<std::string>& parts) {
  while (!path.empty()) {
    const std::size_t slash = path.rfind('/');
    const std::size_t begin = slash == std::string_view::npos ? 0 : slash + 1;
    const std::string_view part = path.substr(begin);
    if (!part.empty() && part != ".") parts.emplace_back(part);
    path = begin == 0 ? std::string_view() : path.substr(0, slash);
  }
}

std::string currentFolder() {
  std::error_code error;
  return std::filesystem::current_path(error).string();
}

std::error_code errorOf(int number) { return {number, std::generic_category()}; }

}  // namespace

class PathRights::Impl {
 public:
  const Found& at(const std::string& path) {
    if (m_latest == nullptr || m_latest->first != path) {
      const auto known = m_found.try_emplace(path);
      m_latest = &*known.first;
      if (known.second) known.first->second = foundAt(path);
    }
    return m_latest->second;
  }

  /// The first refusal from `path` upwards; `folder` is the lowest one that is not above. Without
  /// one, all are.
  std::string firstRefusal(const std::string& path, const std::string& folder) {
    bool above = folder.empty();
    for (std::string each = path;; each = parentOf(each)) {
      const Found& found = at(each);
      const bool isMissing = found.error == ENOENT || found.error == ENOTDIR;
      const std::string refusal = isMissing ? std::string() : refusalOf(each, found, above);
      if (!refusal.empty() || isRootOf(each)) return refusal;
      above = above || each == folder;
    }
  }

  /// What is no link is found in its folder, whose own way is known after its first file.
  ResolvedPath resolve(const std::string& path) {
    const std::string_view text = path;
    const std::string_view name = text.substr(path.rfind('/') + 1);
    if (name.size() == text.size() || !isPlain(name)) return follow(path);
    const ResolvedPath& folder = folderAt(text.substr(0, text.size() - name.size()));
    if (folder.error) return follow(path);
    std::string next;
    next.reserve(folder.path.size() + 1 + name.size());
    if (!isRootOf(folder.path)) next += folder.path;
    next += '/';
    next += name;
    const Found& found = at(next);
    if (found.error != 0 || S_ISLNK(found.mode)) return follow(path);
    return {std::move(next), S_ISREG(found.mode), {}, folder.linkRefusal};
  }

 private:
  static constexpr int kMostLinks = 40;

  static bool isPlain(std::string_view name) {
    return !name.empty() && name != "." && name != "..";
  }

  const ResolvedPath& folderAt(std::string_view text) {
    if (m_latestFolder != nullptr && m_latestFolder->first == text) return m_latestFolder->second;
    const std::string path(text);
    auto known = m_folders.find(path);
    if (known == m_folders.end()) known = m_folders.emplace(path, follow(path)).first;
    m_latestFolder = &*known;
    return known->second;
  }

  ResolvedPath follow(const std::string& path) {
    ResolvedPath result;
    result.path = "/";
    std::vector<std::string> rest;
    pushParts(path, rest);
    if (path.compare(0, 1, "/") != 0) pushParts(currentFolder(), rest);
    for (int links = 0; !rest.empty() && !result.error;) {
      const std::string part = std::move(rest.back());
      rest.pop_back();
      if (part == "..") {
        // Whose the folder is can put a link in its place, which leads to another one above.
        if (result.linkRefusal.empty()) {
          result.linkRefusal = foreignOwner(result.path, at(result.path));
        }
        result.path = parentOf(result.path);
        result.isFile = false;
        continue;
      }
      const std::string next = (isRootOf(result.path) ? "" : result.path) + "/" + part;
      const Found& found = at(next);
      if (found.error != 0) {
        result.error = errorOf(found.error);
      } else if (!S_ISLNK(found.mode)) {
        result.path = next;
        result.isFile = S_ISREG(found.mode);
      } else if (++links > kMostLinks) {
        result.error = errorOf(ELOOP);
      } else {
        followLink(next, rest, result);
      }
    }
    return result;
  }

  void followLink(const std::string& link, std::vector<std::string>& rest, ResolvedPath& result) {
    // Whoever can exchange the link or a folder on the way to it says where it leads.
    if (result.linkRefusal.empty()) result.linkRefusal = foreignOwner(link, at(link));
    if (result.linkRefusal.empty()) result.linkRefusal = firstRefusal(result.path, std::string());
    std::array<char, PATH_MAX> target{};
    const ssize_t length = readlink(link.c_str(), target.data(), target.size());
    if (length < 0) {
      result.error = errorOf(errno);
      return;
    }
    const std::string_view text(target.data(), static_cast<std::size_t>(length));
    if (text.substr(0, 1) == "/") result.path = "/";
    pushParts(text, rest);
  }

  using FoundPaths = std::unordered_map<std::string, Found>;
  using FoundFolders = std::unordered_map<std::string, ResolvedPath>;

  FoundPaths m_found;
  FoundFolders m_folders;
  // Who asks for a file asks for the next one in its folder, or for the same once more.
  const FoundPaths::value_type* m_latest = nullptr;
  const FoundFolders::value_type* m_latestFolder = nullptr;
};

PathRights::PathRights() : m_impl(std::make_unique<Impl>()) {}
PathRights::~PathRights() = default;

ResolvedPath PathRights::resolve(const std::string& path) { return m_impl->resolve(path); }

std::string PathRights::whyOthersCanChange(const std::string& path) {
  return m_impl->firstRefusal(path, parentOf(path));
}

std::string PathRights::whyOthersCanChangeFolder(const std::string& path) {
  return m_impl->firstRefusal(path, path);
}

std::string PathRights::whyOthersCanChangeItself(const std::string& path) {
  return refusalOf(path, m_impl->at(path), false);
}

std::string whyOthersCanChange(const std::string& path) {
  return PathRights().whyOthersCanChange(path);
}

std::string whyOthersCanChangeFolder(const std::string& path) {
  return PathRights().whyOthersCanChangeFolder(path);
}

}  // namespace cmpinsp
