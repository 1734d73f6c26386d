#include "host/options/Options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdint>
#include <iostream>
#include <limits>

#include "host/Messages.h"
#include "host/Output.h"
#include "text/CloseMatches.h"

namespace host {
namespace {

/// The expected duration in seconds has to fit into 32 bits.
constexpr unsigned kMostMinutes = std::numeric_limits<std::uint32_t>::max() / 60;

const char* const kFooter =
    "Exit status:\n"
    "  0  every test passed, or the command did what it was asked\n"
    "  1  a test found faulty hardware\n"
    "  2  the command line is wrong\n"
    "  3  a test ended without a verdict or may be missing, the installation is faulty, or memory "
    "ran out\n"
    "  4  nothing was found to list, run or inspect\n"
    "  5  the installation cannot be used at all\n"
    "  130  the user ended the run";

/// With this character in front, CLI11 takes an argument as it stands. It would split one in
/// brackets at its commas, which a test identifier has too, and it forgets about "--" once a test
/// was named. An argument that begins with it gets another, so that this one alone comes off.
constexpr char kGuard = '\x01';

bool needsGuard(const std::string& argument) {
  if (argument.empty()) return false;
  const bool isBracketed = argument.front() == '[' && argument.back() == ']';
  return isBracketed || argument.front() == kGuard;
}

/// The arguments with guards where they are needed.
std::vector<std::string> guarded(const std::vector<std::string>& arguments) {
  std::vector<std::string> result;
  bool optionsEnded = false;
  for (const std::string& argument : arguments) {
    if (argument == "--" && !optionsEnded) {
      optionsEnded = true;
    } else {
      result.push_back(optionsEnded || needsGuard(argument) ? kGuard + argument : argument);
    }
  }
  return result;
}

void unguard(std::string& argument) {
  if (!argument.empty() && argument.front() == kGuard) argument.erase(0, 1);
}

/// CLI11 names words in one order or the other: `words` as they stand in `arguments`.
std::vector<std::string> inOrder(std::vector<std::string> words,
                                 const std::vector<std::string>& arguments) {
  std::vector<std::string> result;
  for (const std::string& argument : arguments) {
    const auto found = std::find(words.begin(), words.end(), argument);
    if (found == words.end()) continue;
    result.push_back(argument);
    words.erase(found);
  }
  result.insert(result.end(), words.begin(), words.end());
  return result;
}

/// What a technician who mends what the check has named wants to know.
constexpr const char* kAboutInstalling =
    "Lines with \"note:\" are no faults. Classes whose superclass is missing take what their "
    "provider sets;\nthe DMTF's CIM schema can be put into a folder of its own in schema/.\n"
    "A line FILE.mof NAMESPACE instances in a providers/*.registration file says in which "
    "namespace "
    "the\ninstances are that a MOF file declares; without one it is root/cimv2.\n\n";

/// The command line's grammar, bound to the options that it fills.
class Grammar {
 public:
  explicit Grammar(Options& options);

  void parse(const std::vector<std::string>& arguments);
  /// Writes the help or the version.
  void answer(const CLI::Success& request) {
    m_app.exit(request, std::cout, std::cerr);
    flushOutput();
  }
  std::string explain(const CLI::ParseError& error) const;

 private:
  void addGlobalOptions();
  void addList();
  void addRun();
  void addResults();
  void addOthers();
  void addReports();
  void addRunChoice(CLI::App& run);
  void addFiles(CLI::App& command);
  CLI::App* addCommand(Command command, const char* name, const char* description);
  void addLevel(CLI::App& command, const char* description);
  std::string explainExtras() const;
  std::string explainMissingCommand() const;
  void complete();
  void requireSense() const;

  Options& m_options;
  CLI::Option* addText(CLI::App& command, const char* name, std::string& text,
                       const char* description);
  CLI::Option* addText(CLI::App& command, const char* name, std::optional<std::string>& text,
                       const char* description);

  std::vector<std::string*> m_texts;                   ///< what a guard may stand in front of
  std::vector<std::optional<std::string>*> m_choices;  ///< likewise
  std::vector<std::vector<std::string>*> m_lists;      ///< likewise
  std::vector<std::string> m_arguments;                ///< as CLI11 gets them, in their order
  CLI::App m_app{"Lists, runs and reports the hardware diagnostics of this machine.", "diags"};
  std::string m_biosId;
  std::string m_level;
  unsigned m_minutes = 0;
  CLI::Option* m_rootOption = nullptr;
  CLI::Option* m_logOption = nullptr;
  CLI::Option* m_logLevelOption = nullptr;
  CLI::Option* m_minutesOption = nullptr;
  CLI::Option* m_biosOption = nullptr;
};

Grammar::Grammar(Options& options) : m_options(options) {
  m_app.require_subcommand(1);
  m_app.fallthrough();
  m_app.footer(kFooter);
  m_app.set_version_flag("--version", "diags " DIAGS_VERSION);
  addGlobalOptions();
  addList();
  addRun();
  addResults();
  addOthers();
  addReports();
}

void Grammar::addGlobalOptions() {
  m_rootOption =
      m_app
          .add_option("--root", m_options.root,
                      "The installation directory; else that of the environment variable "
                      "DIAGS_ROOT, else one beside this program")
          ->type_name("DIR");
  m_logOption = m_app.add_option("--log", m_options.logFile, "Append the log to this file")
                    ->type_name("FILE");
  m_logLevelOption = m_app
                         .add_option("--log-level", m_options.logLevel,
                                     "What is logged: 0 errors alone, up to 3 everything")
                         ->type_name("N")
                         ->check(CLI::Range(0, 3));
  m_biosOption = m_app
                     .add_option("--bios", m_biosId,
                                 "Take this for the firmware's identifier when tests are filtered")
                     ->type_name("ID");
  m_app.add_flag("--no-cache", m_options.noCache,
                 "Read every class definition, and keep nothing for the next time");
}

CLI::App* Grammar::addCommand(Command command, const char* name, const char* description) {
  CLI::App* added = m_app.add_subcommand(name, description);
  added->callback([this, command] { m_options.command = command; });
  return added;
}

void Grammar::addLevel(CLI::App& command, const char* description) {
  command.add_option("--level", m_level, description)
      ->type_name("LEVEL")
      ->transform(CLI::IsMember({"simple", "immediate", "extended"}, CLI::ignore_case));
}

void Grammar::addList() {
  CLI::App* list = addCommand(Command::kList, "list", "List the tests, one a line");
  list->add_flag("--raw", m_options.raw, "The listing as one text, each test followed by \"|\"");
  list->add_flag("--long", m_options.isLong,
                 "With estimates, what the tests may disturb, and their settings");
  list->add_flag("--json", m_options.json, "As one JSON text");
}

void Grammar::addRun() {
  CLI::App* run = addCommand(Command::kRun, "run", "Run tests and print their verdicts");
  CLI::Option* tests = run->add_option(
      "TEST", m_options.tests,
      "A test's identifier, its service's name, its device, or a pattern with * and ?");
  tests->type_name("");
  CLI::Option* all = run->add_flag("--all", m_options.all, "Run every test");
  all->excludes(tests);
  run->add_flag("--ignore-providers", m_options.ignoreProviders,
                "A provider that cannot be used, whose tests are missing then, is no failure")
      ->needs(all);
  addLevel(*run,
           "simple, immediate (the default), or extended (the record data follows the verdict)");
  m_minutesOption =
      run->add_option("--threaded", m_minutes,
                      "Run one test, then once more on a thread of its own, with an estimated "
                      "percentage for a run of MINUTES")
          ->type_name("MINUTES")
          ->check(CLI::Range(0U, kMostMinutes))
          ->excludes(all);
  addRunChoice(*run);
  addFiles(*run);
}

CLI::Option* Grammar::addText(CLI::App& command, const char* name, std::string& text,
                              const char* description) {
  m_texts.push_back(&text);
  return command.add_option(name, text, description);
}

CLI::Option* Grammar::addText(CLI::App& command, const char* name, std::optional<std::string>& text,
                              const char* description) {
  m_choices.push_back(&text);
  return command.add_option(name, text, description);
}

void Grammar::addRunChoice(CLI::App& run) {
  RunChoice& choice = m_options.run;
  addText(run, "--plan", choice.plan, "A plan: quick, standard, burn-in, or a file")
      ->type_name("PLAN");
  run.add_flag("--quick", choice.quick, "Only what fits into two minutes by the estimates");
  run.add_option("--exclude", choice.excluded, "Leave these tests out, named like TEST")
      ->type_name("TEST")
      ->allow_extra_args(false);
  m_lists.push_back(&choice.excluded);
  run.add_option("--set", choice.settings, "A setting of the tests that have it")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false);
  m_lists.push_back(&choice.settings);
  run.add_flag("--allow-destructive", choice.allowDestructive, "Also tests that may destroy data");
  run.add_flag("--allow-disruptive", choice.allowDisruptive,
               "Also tests that may disturb the machine in operation");
  addText(
      run, "--timeout", choice.timeout,
      "What each test may take: 90s, 10m, 1h30m; else three times its estimate, and at least 5m")
      ->type_name("TIME");
  addText(run, "--deadline", choice.deadline, "What the whole run may take")->type_name("TIME");
  addText(run, "--grace", choice.grace,
          "How long a test may take to end, and to clean up, before it is ended (10s)")
      ->type_name("TIME");
  run.add_option("--repeat", choice.repeat, "Everything so many times")->type_name("N");
  addText(run, "--for", choice.repeatFor, "Everything again and again, for so long")
      ->type_name("TIME");
  run.add_flag("--until-failure", choice.untilFailure,
               "Begin nothing more after a failure; without --repeat and --for, go on for ever");
  run.add_option("--shuffle", choice.shuffle, "In another order, the same for the same number")
      ->type_name("SEED");
  run.add_option("--jobs", choice.jobs,
                 "So many tests at a time, where they do not disturb each other")
      ->type_name("N");
  run.add_flag("--dry-run", choice.dryRun, "Only say what would run, and how long it takes");
  run.add_flag("-q,--quiet", m_options.isQuiet, "Only verdicts that are no pass, and the sum");
  run.add_flag("-v,--verbose", m_options.isVerbose,
               "Output, log, messages and measurements of the tests too")
      ->excludes("--quiet");
  run.add_flag("--no-history", m_options.noHistory, "Do not keep the run");
}

void Grammar::addFiles(CLI::App& command) {
  ReportFiles& files = m_options.files;
  addText(command, "--events", files.events, "Write every event to this file; - is standard output")
      ->type_name("FILE");
  addText(command, "--jsonl", files.jsonLines, "Write OCP Test & Validation JSON lines")
      ->type_name("FILE");
  addText(command, "--junit", files.junit, "Write a JUnit document")->type_name("FILE");
  addText(command, "--html", files.html, "Write a page to be read")->type_name("FILE");
  command.add_flag("--redact", m_options.redact,
                   "Without serial numbers, hardware addresses and the host's name");
  addText(command, "--state", m_options.state, "Where runs are kept")->type_name("DIR");
}

void Grammar::addReports() {
  CLI::App* report =
      addCommand(Command::kReport, "report", "Write a run that was kept, in any format");
  addText(*report, "RUN", m_options.kept, "Its identifier, or last (the default), last-1 ...")
      ->type_name("");
  addFiles(*report);
  CLI::App* history = addCommand(Command::kHistory, "history", "List the runs that were kept");
  history->add_option("--diff", m_options.differ, "What changed from one run to another")
      ->type_name("RUN RUN")
      ->expected(2);
  m_lists.push_back(&m_options.differ);
  addText(*history, "--trend", m_options.trend, "How a test's measurements went over the runs")
      ->type_name("TEST")
      ->excludes("--diff");
  addText(*history, "--measurement", m_options.measurement, "Only this one of them")
      ->type_name("NAME")
      ->needs("--trend");
  addText(*history, "--html", m_options.trendPage, "Write the trend as a page")
      ->type_name("FILE")
      ->needs("--trend");
  history->add_option("-n,--most", m_options.most, "So many of the newest runs (20)")
      ->type_name("N");
  history->add_flag("--json", m_options.json, "As one JSON text");
  addText(*history, "--state", m_options.state, "Where runs are kept")->type_name("DIR");
  CLI::App* verify =
      addCommand(Command::kVerify, "verify", "Hold OCP streams to their rules, line by line");
  CLI::App* recover =
      addCommand(Command::kRecover, "recover", "Make streams whole that were cut off");
  for (CLI::App* command : {verify, recover}) {
    command->add_option("FILE", m_options.streams, "The file of a stream")
        ->type_name("")
        ->required();
  }
  m_lists.push_back(&m_options.streams);
}

void Grammar::addResults() {
  CLI::App* results =
      addCommand(Command::kResults, "results", "Run a test and print its results at each level");
  results->add_option("TEST", m_options.tests, "A test's identifier, or its service's name")
      ->type_name("")
      ->required()
      ->expected(1);
  addLevel(*results, "Only this level: simple, immediate or extended");
}

void Grammar::addOthers() {
  CLI::App* inspect =
      addCommand(Command::kInspect, "inspect", "Print every instance of a class of the model");
  inspect->add_option("CLASS", m_options.className, "The name of the class")
      ->type_name("")
      ->required();
  CLI::App* providers =
      addCommand(Command::kProviders, "providers", "List the providers and what they offer");
  CLI::App* check = addCommand(Command::kCheck, "check",
                               "Read the whole installation and name every fault in it");
  check->footer(kAboutInstalling + m_app.get_footer());
  for (CLI::App* command : {providers, check}) {
    command->add_flag("--json", m_options.json, "As one JSON text");
  }
}

void Grammar::parse(const std::vector<std::string>& arguments) {
  m_arguments = guarded(arguments);
  m_app.parse(std::vector<std::string>(m_arguments.rbegin(), m_arguments.rend()));
  complete();
}

std::string Grammar::explain(const CLI::ParseError& error) const {
  const bool noCommand = m_app.get_subcommands().empty() && error.get_name() == "RequiredError";
  if (noCommand) return explainMissingCommand();
  if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) return explainExtras();
  std::string text = error.what();
  text.erase(std::remove(text.begin(), text.end(), kGuard), text.end());
  return text;
}

/// CLI11 asks for a command without naming the word that is none.
std::string Grammar::explainMissingCommand() const {
  std::vector<std::string> unread = m_app.remaining();
  if (unread.empty()) return "no command";
  std::string& word = unread.front();
  unguard(word);
  if (!word.empty() && word.front() == '-') return "unknown option \"" + word + "\"";
  std::vector<std::string> commands;
  for (const CLI::App* command : m_app.get_subcommands([](const CLI::App*) { return true; })) {
    commands.push_back(command->get_name());
  }
  return "unknown command \"" + word + "\"" + text::suggestions(word, commands);
}

std::string Grammar::explainExtras() const {
  std::vector<std::string> unread = inOrder(m_app.remaining(true), m_arguments);
  std::string text = unread.size() == 1 ? "The following argument was not expected:"
                                        : "The following arguments were not expected:";
  for (std::string& word : unread) {
    unguard(word);
    text += " " + (word.empty() ? "\"\"" : word);
  }
  return text;
}

/// What the grammar itself cannot say.
void Grammar::complete() {
  if (m_biosOption->count() > 0) m_options.biosId = m_biosId;
  if (m_minutesOption->count() > 0) m_options.threadedMinutes = m_minutes;
  if (m_level == "simple") m_options.level = Level::kSimple;
  if (m_level == "immediate") m_options.level = Level::kImmediate;
  if (m_level == "extended") m_options.level = Level::kExtended;

  unguard(m_options.root);
  unguard(m_options.logFile);
  unguard(m_options.className);
  if (m_options.biosId) unguard(*m_options.biosId);
  for (std::string& test : m_options.tests) unguard(test);
  for (std::string* text : m_texts) unguard(*text);
  for (std::optional<std::string>* text : m_choices) {
    if (*text) unguard(**text);
  }
  for (std::vector<std::string>* list : m_lists) {
    for (std::string& text : *list) unguard(text);
  }
  requireSense();
}

void Grammar::requireSense() const {
  if (m_rootOption->count() > 0 && m_options.root.empty()) {
    throw CLI::ValidationError("--root", "\"\" is no directory");
  }
  if (m_logOption->count() > 0 && m_options.logFile.empty()) {
    throw CLI::ValidationError("--log", "\"\" is no file");
  }
  if (m_logLevelOption->count() > 0 && m_logOption->count() == 0) {
    throw CLI::ValidationError("--log-level", "there is no log without --log FILE");
  }
  if (m_options.command != Command::kRun) return;
  const bool isNothing = m_options.tests.empty() && !m_options.all && !m_options.run.quick &&
                         m_options.run.plan.empty();
  if (isNothing) throw CLI::ValidationError("run", "name a test, or give --all");
  if (m_options.threadedMinutes && m_options.tests.size() != 1) {
    throw CLI::ValidationError("run", "--threaded takes exactly one test");
  }
}

}  // namespace

std::variant<Options, ExitStatus> parseOptions(const std::vector<std::string>& arguments) {
  Options options;
  Grammar grammar(options);
  try {
    grammar.parse(arguments);
  } catch (const CLI::Success& request) {  // --help, --version
    grammar.answer(request);
    return ExitStatus::kPassed;
  } catch (const CLI::ParseError& error) {
    reportError(grammar.explain(error) + " (diags --help tells more)");
    return ExitStatus::kUsage;
  }
  options.commandLine = arguments;
  options.commandLine.insert(options.commandLine.begin(), "diags");
  return options;
}

}  // namespace host
