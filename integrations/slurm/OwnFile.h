#pragma once

#include <string>

namespace slurm {

/// The program is root, and what it reads and starts must be root's, too. Throws `SettingError`
/// that names the file where it is missing, no regular file, another user's than root's and this
/// process's, or to be written by others.
void needOwnFile(const std::string& file);

}  // namespace slurm
