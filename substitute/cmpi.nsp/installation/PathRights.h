#pragma once

#include <memory>
#include <string>
#include <system_error>

namespace cmpinsp {

/// Where a path leads.
struct ResolvedPath {
  std::string path;     ///< without links; where there is an error, as far as it could be followed
  bool isFile = false;  ///< a regular one: no folder, device or pipe
  std::error_code error;
  std::string linkRefusal;  ///< why others could have a link or a ".." on the way lead elsewhere;
                            ///< empty when they cannot, and on Windows, where links take rights of
                            ///< their own
};

/// Whether others than root and the user who runs the command could change files and folders. Each
/// one is looked at once, so that the answers are those of one moment: make a new one for the next.
/// All paths are UTF-8 and absolute, but for the one to resolve. For one thread at a time.
class PathRights {
 public:
  PathRights();
  PathRights(const PathRights&) = delete;
  PathRights& operator=(const PathRights&) = delete;
  ~PathRights();

  /// Follows the links on the way to `path`.
  ResolvedPath resolve(const std::string& path);

  /// Why others could change the file at `path` (symbolic links resolved), or put another one in
  /// its place or beside it: it or a folder above it belongs to somebody else, or others can write
  /// there. Empty when they cannot. Above the file's own folder a sticky one such as /tmp is all
  /// right: there everybody can only write beside what is on the way to the file.
  ///
  /// On Windows, others are the groups that every user or anybody belongs to. They must not change
  /// the file or the folder that it is in, nor have full control of a folder above.
  std::string whyOthersCanChange(const std::string& path);

  /// The same for a folder and the files in it. Of one that is missing, those above it count.
  std::string whyOthersCanChangeFolder(const std::string& path);

  /// The same for one file or folder by itself, whatever is above it.
  std::string whyOthersCanChangeItself(const std::string& path);

 private:
  class Impl;
  std::unique_ptr<Impl> m_impl;
};

/// `PathRights` for a single question.
std::string whyOthersCanChange(const std::string& path);
std::string whyOthersCanChangeFolder(const std::string& path);

}  // namespace cmpinsp
