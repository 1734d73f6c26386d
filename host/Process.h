#pragma once

#include <string>
#include <vector>

/// What the command asks of the operating system about its own process. Texts are UTF-8.
namespace host {

/// The command line without the program's name.
std::vector<std::string> commandLine(int argc, char** argv);

/// The directory of the running program; empty where it cannot be told.
std::string executableDirectory();

/// The value of an environment variable; empty where it is not set.
std::string environmentVariable(const std::string& name);

/// The name of this machine; empty where it cannot be told.
std::string hostName();

}  // namespace host
