#pragma once

#include <string>

namespace cmpinsp {

/// Why others than root and the user who runs the command could change the file at `path` (UTF-8,
/// absolute, symbolic links resolved), or put another one in its place or beside it: it or a folder
/// above it belongs to somebody else, or others can write there. Empty when they cannot. Above the
/// file's own folder a sticky one such as /tmp is all right: there everybody can only write beside
/// what is on the way to the file.
///
/// On Windows, others are the groups that every user or anybody belongs to. They must not change
/// the file or the folder that it is in, nor have full control of a folder above.
std::string whyOthersCanChange(const std::string& path);

/// The same for a folder and the files in it. Of one that is missing, those above it count.
std::string whyOthersCanChangeFolder(const std::string& path);

}  // namespace cmpinsp
