#pragma once

#include <string>
#include <vector>

/// Runs the `diags` command of this build as a process of its own.
namespace host_test {

struct CommandResult {
  int status = -1;
  std::string out;
  std::string err;
};

/// Runs the command with `arguments` (UTF-8) to its end. Line ends are "\n" on every system. With
/// `outPath`, standard output goes there and is not read. `prefix` is for the shell that starts it.
CommandResult runCommand(const std::vector<std::string>& arguments,
                         const std::string& outPath = std::string(),
                         const std::string& prefix = std::string());

/// The words of a command line: blanks part them, except between double quotes.
std::vector<std::string> splitWords(const std::string& line);

/// The whole content of a text file, with "\n" for line ends; empty where there is none.
std::string readText(const std::string& path);

}  // namespace host_test
