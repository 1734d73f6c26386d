#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "host/ExitStatus.h"

namespace host {

enum class Command {
  kList,
  kRun,
  kResults,
  kInspect,
  kProviders,
  kCheck,
  kReport,
  kHistory,
  kVerify,
  kRecover,
  kFleet,
  kCompletion,
  kManual
};

/// How much of an outcome is shown.
enum class Level { kSimple, kImmediate, kExtended };

/// Where a run is written to, a file for each format; "-" is standard output.
struct ReportFiles {
  std::string events;
  std::string jsonLines;  ///< OCP
  std::string junit;
  std::string html;
  std::string metrics = {};  ///< is replaced when the run ends, and until then left as it is
};

/// What runs, how and how often, beside a plan file or without one. Durations as they were written.
struct RunChoice {
  std::string plan;
  bool quick = false;
  std::vector<std::string> excluded;
  bool allowDestructive = false;
  bool allowDisruptive = false;
  std::vector<std::string> settings;  ///< NAME=VALUE
  std::optional<std::string> timeout;
  std::optional<std::string> deadline;
  std::optional<std::string> grace;
  std::optional<std::string> repeatFor;
  std::optional<std::uint64_t> repeat;
  std::optional<std::uint64_t> shuffle;
  std::optional<std::uint64_t> jobs;
  bool untilFailure = false;
  bool dryRun = false;
};

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

  RunChoice run;
  ReportFiles files;       ///< run, report
  bool redact = false;     ///< run, report
  bool isQuiet = false;    ///< run
  bool isVerbose = false;  ///< run, fleet
  bool noHistory = false;  ///< run: it is not kept
  std::string state;       ///< run, report, history: where runs are kept; empty: the user's place

  bool isLong = false;  ///< list
  bool json = false;    ///< list, providers, check, history, fleet

  std::string kept;                  ///< report: the run
  std::vector<std::string> differ;   ///< history: two runs
  std::string trend;                 ///< history: a test
  std::string measurement;           ///< history: of that test
  std::string trendPage;             ///< history: a file for the trend
  std::uint64_t most = 20;           ///< history: runs that are shown; fleet: lines
  std::vector<std::string> streams;  ///< verify, recover, fleet: files, or folders of them
  std::string fleetPage;             ///< fleet: a file for the page; "-" is standard output
  std::string expected;              ///< fleet: a file of names
  std::string shell;                 ///< completion
};

/// Reads `arguments`, the program's name not among them. Where there is nothing to carry out, the
/// help, the version or one error line has been written, and the answer is how the program ends.
/// Throws when the help or the version could not be written.
std::variant<Options, ExitStatus> parseOptions(const std::vector<std::string>& arguments);

}  // namespace host
