#include "host/options/Grammar.h"

#include <iostream>

#include "host/Output.h"
#include "host/options/Examples.h"
#include "host/options/Guard.h"

namespace host {
namespace {

const char* const kExitStatuses =
    "Exit status:\n"
    "  0  every test passed, or the command did what it was asked\n"
    "  1  a test found faulty hardware\n"
    "  2  the command line is wrong\n"
    "  3  a test ended without a verdict or may be missing, the installation is faulty, or memory "
    "ran out\n"
    "  4  nothing was found to list, run or inspect\n"
    "  5  the installation cannot be used at all\n"
    "  130  the user ended the run\n\n";

/// An empty name, as of a variable that a script forgot to set, would pass for an option not given.
std::string whyNoName(const std::string& name) {
  return name.empty() ? "\"\" names nothing" : std::string();
}

std::string footerOf(const std::string& verb) { return kExitStatuses + examplesText(verb); }

}  // namespace

Grammar::Grammar(Options& options) : m_options(options) {
  m_app.require_subcommand(1);
  m_app.fallthrough();
  // "/name" is a file there too, as in a share's or an emulator's path.
  m_app.allow_windows_style_options(false);
  m_app.footer(footerOf(""));
  m_app.set_version_flag("--version", "diags " DIAGS_VERSION);
  addGlobalOptions();
  addList();
  addRun();
  addResults();
  addOthers();
  addReports();
  addHistory();
  addStreams();
  addFleet();
  addCompletion();
  addManual();
}

CLI::App* Grammar::addCommand(Command command, const char* name, const char* description) {
  CLI::App* added = m_app.add_subcommand(name, description);
  added->footer(footerOf(name));
  added->callback([this, command] { m_options.command = command; });
  return added;
}

CLI::Option* Grammar::addText(CLI::App& command, const char* name, std::string& text,
                              const char* description) {
  m_texts.push_back(&text);
  return command.add_option(name, text, description)->check(CLI::Validator(whyNoName, ""));
}

CLI::Option* Grammar::addText(CLI::App& command, const char* name, std::optional<std::string>& text,
                              const char* description) {
  m_choices.push_back(&text);
  return command.add_option(name, text, description);
}

void Grammar::answer(const CLI::Success& request) {
  m_app.exit(request, std::cout, std::cerr);
  flushOutput();
}

void Grammar::parse(const std::vector<std::string>& arguments) {
  m_arguments = guarded(arguments);
  m_app.parse(std::vector<std::string>(m_arguments.rbegin(), m_arguments.rend()));
  complete();
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

/// What is kept and written needs no installation, so that nothing of these would happen.
void Grammar::requireInstallation() const {
  const Command command = m_options.command;
  const bool hasNone = command == Command::kReport || command == Command::kHistory ||
                       command == Command::kVerify || command == Command::kRecover;
  if (!hasNone) return;
  for (const CLI::Option* option : {m_logOption, m_biosOption}) {
    if (option->count() > 0) {
      throw CLI::ValidationError(option->get_name(), "only where tests are looked for");
    }
  }
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
  requireInstallation();
  if (m_options.command == Command::kRun) requireSenseOfRun();
}

void Grammar::requireSenseOfRun() const {
  const bool isNothing = m_options.tests.empty() && !m_options.all && !m_options.run.quick &&
                         m_options.run.plan.empty();
  if (isNothing) throw CLI::ValidationError("run", "name a test, or give --all");
  if (m_options.threadedMinutes && m_options.tests.size() != 1) {
    throw CLI::ValidationError("run", "--threaded takes exactly one test");
  }
}

}  // namespace host
