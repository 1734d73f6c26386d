#pragma once

#include <deque>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "substitute/cmpi.nsp/installation/PathRights.h"
#include "substitute/cmpi.nsp/trust/ElfFile.h"
#include "substitute/cmpi.nsp/trust/LoaderView.h"

namespace cmpinsp {

/// `LibraryNeeds` for ELF files. It looks where the loader looks and in its order: in the run paths
/// of the library and of those that led to it, in the folders of the environment, in the system's
/// list and in its default folders. Where it cannot know which of several files the loader takes,
/// as it depends on the processor, each of them counts; and a folder counts in which others could
/// put a file that the loader would then take.
class ElfNeeds {
 public:
  /// `rights` outlives it.
  ElfNeeds(PathRights& rights, LoaderView view);

  std::string refusalOf(const std::string& library);

 private:
  /// A library on the way, as the loader would have it.
  struct Object {
    std::string path;  ///< as it is opened: $ORIGIN is its folder
    const ElfFile* file;
    const Object* neededBy;
  };
  /// The search for one name.
  struct Search;
  /// One walk from a library through all that it needs.
  struct Walk {
    std::deque<Object> objects;
    std::set<std::string> known;  ///< names that were resolved: the loader takes them again
    std::set<std::pair<std::string, std::string>> opened;  ///< by paths: what $ORIGIN is, the file
  };

  std::string refusalOfNeed(Walk& walk, const Object& object, const std::string& name,
                            bool mayBeMissing);
  void searchFor(Search& search);
  void searchRunPaths(Search& search);
  void searchRunPath(Search& search, const Object& object, const std::string& runPath);
  void searchSystem(Search& search);
  void searchFolders(Search& search, const std::vector<std::string>& folders);
  bool searchFolder(Search& search, const std::string& folder);
  bool take(Search& search, const std::string& path);
  std::string refusalOfFolder(const ResolvedPath& folder);
  const std::vector<std::string>& variantsOf(const std::string& folder);
  void addVariants(const std::string& folder, unsigned depth, std::vector<std::string>& variants);
  const ElfFile& fileAt(const std::string& path);

  PathRights& m_rights;
  const LoaderView m_view;
  const std::vector<std::string> m_libraryFolders;  ///< what $LIB may stand for
  std::map<std::string, ElfFile> m_files;
  std::map<std::string, std::vector<std::string>> m_variants;
};

}  // namespace cmpinsp
