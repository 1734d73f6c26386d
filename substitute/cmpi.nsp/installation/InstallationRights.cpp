#include "substitute/cmpi.nsp/installation/InstallationRights.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <unordered_set>
#include <utility>

#include "substitute/cmpi.nsp/installation/FolderListing.h"
#include "substitute/cmpi.nsp/installation/PathRights.h"

namespace cmpinsp {

namespace {

namespace fs = std::filesystem;

bool isForeign(const std::string& refusal) {
  return refusal.find(" belongs to another user ") != std::string::npos;
}

/// One look at an installation.
class RightsWalk {
 public:
  /// The folder that all is in, and those above it.
  void addRoot(const std::string& root) {
    const ResolvedPath folder = m_rights.resolve(root);
    if (folder.error) return;
    add(folder.linkRefusal);
    const std::string refusal = m_rights.whyOthersCanChangeFolder(folder.path);
    add(refusal);
    m_rootIsForeign = isForeign(refusal);
    m_root = fs::u8path(folder.path);
  }

  /// That folder and the files in it whose names end like that; any without endings. Where the root
  /// is somebody else's, so is everything, which is said once.
  void addFolder(const char* name, const std::vector<std::string>& endings, bool withFolders) {
    const fs::path folder = m_root / name;
    const ResolvedPath resolved = m_rights.resolve(folder.u8string());
    if (m_root.empty() || resolved.error) return;
    addFound(resolved, m_rootIsForeign);
    if (fs::u8path(resolved.path).parent_path() != folder.parent_path()) {
      add(m_rights.whyOthersCanChangeFolder(resolved.path));
    }
    addContent(resolved.path, endings, withFolders,
               m_rootIsForeign || isForeign(m_rights.whyOthersCanChangeItself(resolved.path)));
  }

  /// One that is named in another one, where the folders' listings may have passed it over.
  void addIncluded(const std::string& file) {
    if (m_root.empty() || m_examined.count(file) != 0) return;
    const fs::path path = fs::u8path(file);
    const ResolvedPath found = m_rights.resolve(file);
    if (found.error) return;
    const fs::path folder = fs::u8path(m_rights.resolve(path.parent_path().u8string()).path);
    const std::string refusal = m_rights.whyOthersCanChangeFolder(folder.u8string());
    if (!(m_rootIsForeign && isForeign(refusal))) add(refusal);
    addFound(found,
             m_rootIsForeign || isForeign(m_rights.whyOthersCanChangeItself(folder.u8string())));
    const bool isLink = fs::u8path(found.path) != folder / path.filename();
    if (isLink) add(m_rights.whyOthersCanChange(found.path));
  }

  std::vector<substitute::Problem> take() { return std::move(m_problems); }

 private:
  void addContent(const std::string& folder, const std::vector<std::string>& endings,
                  bool withFolders, bool folderIsForeign) {
    const FolderListing listing = listFolder(folder);
    for (const FolderEntry& entry : listing.entries()) {
      const bool isOne =
          std::any_of(endings.begin(), endings.end(),
                      [&](const std::string& ending) { return hasEnding(entry.name, ending); });
      const bool mayBeFolder = withFolders && entry.kind != FolderEntry::Kind::eFile;
      if (entry.name.empty() || !(isOne || mayBeFolder)) continue;
      addEntry(pathIn(folder, entry.name), isOne, endings, withFolders, folderIsForeign);
    }
  }

  void addEntry(const std::string& path, bool isOne, const std::vector<std::string>& endings,
                bool withFolders, bool folderIsForeign) {
    const ResolvedPath found = m_rights.resolve(path);
    std::error_code error;
    const bool goesIn =
        withFolders && !found.error && !found.isFile && fs::is_directory(fs::u8path(path), error);
    if (found.error || (!isOne && !goesIn)) return;
    addFound(found, folderIsForeign);
    // A link may lead anywhere, and is not followed into a folder, where it may lead back.
    const bool isLink = found.path != path && fs::u8path(found.path) != fs::u8path(path);
    if (isLink) add(m_rights.whyOthersCanChange(found.path));
    if (!isLink) m_examined.insert(path);
    if (goesIn && !isLink) {
      addContent(path, endings, true,
                 folderIsForeign || isForeign(m_rights.whyOthersCanChangeItself(found.path)));
    }
  }

  void addFound(const ResolvedPath& found, bool parentIsForeign) {
    add(found.linkRefusal);
    const std::string refusal = m_rights.whyOthersCanChangeItself(found.path);
    if (!(parentIsForeign && isForeign(refusal))) add(refusal);
  }

  void add(const std::string& refusal) {
    if (refusal.empty() || !m_told.insert(refusal).second) return;
    m_problems.push_back({std::string(), 0, 0, refusal});
  }

  PathRights m_rights;
  fs::path m_root;
  bool m_rootIsForeign = false;
  std::vector<substitute::Problem> m_problems;
  std::unordered_set<std::string> m_examined;  ///< paths without links
  std::unordered_set<std::string> m_told;      ///< their messages
};

}  // namespace

std::vector<substitute::Problem> findWhatOthersCanChange(
    const std::string& root, const std::vector<std::string>& schemaFiles) {
  RightsWalk walk;
  walk.addRoot(root);
  walk.addFolder("schema", {".mof"}, true);
  walk.addFolder("providers", {".mof", ".registration", ".reg"}, false);
  for (const std::string& file : schemaFiles) walk.addIncluded(file);
  walk.addFolder("kfr", {}, false);
  walk.addFolder("kfr/data", {".xml"}, false);
  return walk.take();
}

std::vector<std::string> warningsForRoot(const std::string& root,
                                         const std::vector<std::string>& schemaFiles) {
  std::vector<std::string> lines;
  if (!runsAsRoot()) return lines;
  const std::string owner = ownerBesidesRoot(root);
  if (!owner.empty()) {
    lines.push_back("the installation " + root + " belongs to " + owner + ", and root uses it");
  }
  std::vector<substitute::Problem> problems = findWhatOthersCanChange(root, schemaFiles);
  if (!owner.empty()) {
    const auto isToldAlready = [](const substitute::Problem& one) {
      return isForeign(one.message);
    };
    problems.erase(std::remove_if(problems.begin(), problems.end(), isToldAlready), problems.end());
  }
  if (problems.empty()) return lines;
  const std::size_t more = problems.size() - 1;
  lines.push_back("others could change this installation: " + problems.front().message +
                  (more == 0 ? "" : ", and " + std::to_string(more) + " more") +
                  "; diags check names every place");
  return lines;
}

}  // namespace cmpinsp
