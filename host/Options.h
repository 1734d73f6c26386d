#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "host/ExitStatus.h"

namespace host {

enum class Command { kList, kRun, kResults, kInspect, kProviders, kCheck };

/// How much of an outcome is shown.
enum class Level { kSimple, kImmediate, kExtended };

/// A command line that makes sense in itself; texts are UTF-8.
struct Options {
  Command command = Command::kList;
  std::vector<std::string> commandLine;  ///< as it was given, with the program's name

  std::string root;  ///< empty: to be looked for
  std::string logFile;
  int logLevel = 3;
  std::optional<std::string> biosId;  ///< instead of the firmware's own
  bool noCache = false;               ///< neither read nor write the cache of the schema

  bool raw = false;                         ///< list: the runner's text as it is
  bool all = false;                         ///< run: every test
  std::vector<std::string> tests;           ///< run, results: identifiers or service names
  std::optional<Level> level;               ///< run, results
  bool ignoreProviders = false;             ///< run all: one that cannot be used is no failure
  std::optional<unsigned> threadedMinutes;  ///< run: the expected duration of a threaded run
  std::string className;                    ///< inspect
};

/// Reads `arguments`, the program's name not among them. Where there is nothing to carry out, the
/// help, the version or one error line has been written, and the answer is how the program ends.
/// Throws when the help or the version could not be written.
std::variant<Options, ExitStatus> parseOptions(const std::vector<std::string>& arguments);

}  // namespace host
