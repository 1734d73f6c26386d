#pragma once

#include <string>

namespace host {

/// The name of a report's file with this machine's name for each `%N`, so that one command line can
/// be run on many machines at once: Slurm's name of the node, or without Slurm the host's own, up
/// to the first dot. `%%` is a percent sign. Throws `UsageError` that names the file where anything
/// else stands behind a percent sign, or where the machine's name could lead to another folder.
std::string fileNameFrom(const std::string& given);

}  // namespace host
