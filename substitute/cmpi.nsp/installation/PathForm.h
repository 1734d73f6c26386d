#pragma once

#include <filesystem>
#include <string>

namespace cmpinsp {

/// True where the C++ library takes a path on another machine for one on the current drive, as
/// gcc's does on Windows with \\server\share, and spoils \\?\C:\ likewise. What it finds out about
/// such a path is not what the system opens. A relative path counts where the current folder is
/// such a one.
bool losesItsMachine(const std::filesystem::path& path);

/// The path in UTF-8. Empty where it is no text: Windows lets files have such names.
std::string textOf(const std::filesystem::path& path);

}  // namespace cmpinsp
