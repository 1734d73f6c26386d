#pragma once

#include <string>

namespace cmpinsp {

/// Why others than root and the user who runs the command could change the file or folder at `path`
/// (UTF-8, absolute, symbolic links resolved) or put another one in its place: it or a folder above
/// it belongs to somebody else, or others can write there. Empty when they cannot. In a sticky
/// folder such as /tmp everybody can only write beside it.
///
/// On Windows, others are the groups that every user or anybody belongs to. They must not change
/// the file or folder or the folder that it is in, nor have full control of a folder above.
std::string whyOthersCanChange(const std::string& path);

}  // namespace cmpinsp
