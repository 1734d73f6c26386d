#include <windows.h>

#include <array>
#include <filesystem>
#include <map>
#include <set>
#include <system_error>
#include <utility>
#include <vector>

#include "substitute/cmpi.nsp/installation/SystemMessage.h"
#include "substitute/cmpi.nsp/trust/LibraryNeeds.h"
#include "substitute/cmpi.nsp/trust/PeFile.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp {

namespace {

namespace fs = std::filesystem;

/// Names that stand for parts of the system, not for files.
bool isContract(const std::string& name) {
  return name.compare(0, 7, "api-ms-") == 0 || name.compare(0, 7, "ext-ms-") == 0;
}

bool isLoaded(const std::string& name) {
  return GetModuleHandleW(fs::u8path(name).c_str()) != nullptr;
}

bool isInSystemFolder(const std::string& name) {
  std::array<wchar_t, MAX_PATH> folder{};
  const UINT length = GetSystemDirectoryW(folder.data(), MAX_PATH);
  if (length == 0 || length >= MAX_PATH) return false;
  std::error_code error;
  return fs::exists(fs::path(folder.data()) / fs::u8path(name), error);
}

}  // namespace

/// The loader takes what is loaded already, what lies in the folder of the library that is loaded,
/// and what is the system's, as `Library` has it look there alone.
class LibraryNeeds::Impl {
 public:
  explicit Impl(PathRights& rights) : m_rights(rights) {}

  std::string refusalOf(const std::string& library) {
    const fs::path folder = fs::u8path(library).parent_path();
    std::set<std::string> known;
    std::vector<std::string> open{library};
    for (std::size_t i = 0; i < open.size(); ++i) {
      const std::string path = open[i];
      const PeFile& file = fileAt(path);
      if (file.kind == LibraryKind::kDamaged) return path + " cannot be read: " + file.fault;
      for (const auto& [names, mayBeMissing] :
           {std::make_pair(&file.needed, false), std::make_pair(&file.delayed, true)}) {
        for (const std::string& name : *names) {
          if (!known.insert(vorcore::nameKey(name)).second) continue;
          const std::string refusal = refusalOfNeed(folder, name, mayBeMissing, open);
          if (!refusal.empty()) return path + " needs " + name + refusal;
        }
      }
    }
    return std::string();
  }

 private:
  std::string refusalOfNeed(const fs::path& folder, const std::string& name, bool mayBeMissing,
                            std::vector<std::string>& open) {
    if (name.find_first_of("/\\:") != std::string::npos) return ", which is no file name";
    if (isContract(vorcore::nameKey(name)) || isLoaded(name)) return std::string();
    const ResolvedPath beside = m_rights.resolve((folder / fs::u8path(name)).u8string());
    if (!beside.error) {
      const std::string refusal = m_rights.whyOthersCanChange(beside.path);
      open.push_back(beside.path);
      return refusal.empty() ? refusal : ": " + refusal;
    }
    if (beside.error != std::errc::no_such_file_or_directory) {
      return ", which cannot be examined: " + systemMessage(beside.error);
    }
    if (mayBeMissing || isInSystemFolder(name)) return std::string();
    return ", which is neither beside it nor the system's";
  }

  const PeFile& fileAt(const std::string& path) {
    const auto known = m_files.find(path);
    if (known != m_files.end()) return known->second;
    return m_files.emplace(path, readPe(*bytesOfFile(path))).first->second;
  }

  PathRights& m_rights;
  std::map<std::string, PeFile> m_files;
};

LibraryNeeds::LibraryNeeds(PathRights& rights) : m_impl(std::make_unique<Impl>(rights)) {}
LibraryNeeds::~LibraryNeeds() = default;

std::string LibraryNeeds::refusalOf(const std::string& library) {
  return m_impl->refusalOf(library);
}

}  // namespace cmpinsp
