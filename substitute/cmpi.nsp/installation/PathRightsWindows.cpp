#include <windows.h>
// aclapi.h needs windows.h before it.
#include <aclapi.h>

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <system_error>
#include <utility>

#include "substitute/cmpi.nsp/installation/AccessList.h"
#include "substitute/cmpi.nsp/installation/PathRights.h"

namespace cmpinsp {
namespace {

namespace fs = std::filesystem;

/// To write another content, or to put another file in the place of this one. For a folder,
/// FILE_WRITE_DATA is the right to add files: a library finds what it needs beside itself.
constexpr ACCESS_MASK kChange =
    FILE_WRITE_DATA | FILE_DELETE_CHILD | DELETE | WRITE_DAC | WRITE_OWNER;
/// To grant oneself the rest. Lesser rights in a folder further up let others put something beside
/// the installation, as every user can at the root of a drive.
constexpr ACCESS_MASK kControl = WRITE_DAC | WRITE_OWNER;

struct FreeLocally {
  void operator()(void* memory) const noexcept { LocalFree(memory); }
};

/// Why others have one of the rights to what is at `path`; empty when they have none.
std::string refusalOf(const fs::path& path, ACCESS_MASK rights) {
  PACL list = nullptr;
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  std::wstring name = path.native();
  if (GetNamedSecurityInfoW(name.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                            nullptr, &list, nullptr, &descriptor) != ERROR_SUCCESS) {
    return path.u8string() + " cannot be examined";
  }
  const std::unique_ptr<void, FreeLocally> owner(descriptor);
  const char* const group = othersGranted(list, rights);
  if (group == nullptr) return std::string();
  return path.u8string() + " can be written by other users (" + group + ")";
}

bool isMissing(const fs::path& path) {
  std::error_code error;
  return fs::status(path, error).type() == fs::file_type::not_found;
}

}  // namespace

class PathRights::Impl {
 public:
  const std::string& at(const fs::path& path, ACCESS_MASK rights) {
    const auto known = m_found.find({path.native(), rights});
    if (known != m_found.end()) return known->second;
    std::string refusal = isMissing(path) ? std::string() : refusalOf(path, rights);
    return m_found.emplace(std::make_pair(path.native(), rights), std::move(refusal)).first->second;
  }

  /// The first refusal from `path` upwards; `folder` is the lowest one that is not further up.
  std::string firstRefusal(const fs::path& path, const fs::path& folder) {
    ACCESS_MASK rights = kChange;
    for (fs::path each = path;; each = each.parent_path()) {
      const std::string& refusal = at(each, rights);
      if (!refusal.empty() || each == each.parent_path()) return refusal;
      if (each == folder) rights = kControl;
    }
  }

 private:
  std::map<std::pair<std::wstring, ACCESS_MASK>, std::string> m_found;
};

PathRights::PathRights() : m_impl(std::make_unique<Impl>()) {}
PathRights::~PathRights() = default;

ResolvedPath PathRights::resolve(const std::string& path) {
  std::error_code error;
  const fs::path real = fs::canonical(fs::u8path(path), error);
  if (error) return {path, false, error, std::string()};
  std::error_code ignored;
  return {real.u8string(), fs::is_regular_file(real, ignored), error, std::string()};
}

std::string PathRights::whyOthersCanChange(const std::string& path) {
  const fs::path file = fs::u8path(path);
  return m_impl->firstRefusal(file, file.parent_path());
}

std::string PathRights::whyOthersCanChangeFolder(const std::string& path) {
  const fs::path folder = fs::u8path(path);
  return m_impl->firstRefusal(folder, folder);
}

std::string PathRights::whyOthersCanChangeItself(const std::string& path) {
  return m_impl->at(fs::u8path(path), kChange);
}

std::string whyOthersCanChange(const std::string& path) {
  return PathRights().whyOthersCanChange(path);
}

std::string whyOthersCanChangeFolder(const std::string& path) {
  return PathRights().whyOthersCanChangeFolder(path);
}

}  // namespace cmpinsp
