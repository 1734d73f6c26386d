#pragma once

#include <filesystem>
#include <functional>
#include <string>

namespace history {

/// The value of a variable of the environment, in UTF-8; empty where there is none.
using Environment = std::function<std::string(const char* name)>;

/// Where a user's runs are kept unless another place is given: `$XDG_DATA_HOME/diagsrunner` or
/// `~/.local/share/diagsrunner`; on Windows, `%LOCALAPPDATA%\diagsrunner`. Throws `HistoryError`
/// where the environment says nothing about the user's place.
std::filesystem::path defaultStateDirectory(const Environment& environment);

/// Makes the folder and those above that are missing, for this user alone. Throws `HistoryError`
/// that names it.
void makeStateDirectory(const std::filesystem::path& directory);

/// Whether this user may make no file in it.
bool mayOnlyBeRead(const std::filesystem::path& directory);

/// Makes an empty file for this user alone where there is none, so that it survives a power cut.
void makePrivateFile(const std::filesystem::path& file);

}  // namespace history
