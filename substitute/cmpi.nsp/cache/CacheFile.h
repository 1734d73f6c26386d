#pragma once

#include <string>

namespace cmpinsp {

/// Why the cache file at `path` (UTF-8) is not to be read: it or a folder above it can be changed
/// by others than root and the user who runs the command, or cannot be examined, as on another
/// machine (`losesItsMachine`). Empty when it may be read, or is missing.
std::string whyNotTrusted(const std::string& path);

/// `path` made absolute, with the symbolic links in its folder resolved, as far as that is there;
/// on Windows, where users in general make none, as it is. Who examines a path and then uses it
/// takes this one for both: a link might lead elsewhere the second time.
std::string withoutLinks(const std::string& path);

/// Puts `bytes` in the place of the cache file at `path` all at once: whoever reads it at the same
/// time gets the old or the new one, and of several writers the last one wins. Folders are made as
/// needed, for this user alone; in those of others nothing is written. The answer is why it could
/// not be done, or empty.
std::string replaceCacheFile(const std::string& path, const std::string& bytes);

/// Where this user's programs keep what they can make again: the folder "diagsrunner" in
/// `XDG_CACHE_HOME`, else in `~/.cache`, on Windows in `%LOCALAPPDATA%`. Empty where the
/// environment names no such place.
std::string userCacheFolder();

}  // namespace cmpinsp
