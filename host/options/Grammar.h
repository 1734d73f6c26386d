#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <vector>

#include "host/options/Options.h"

namespace host {

/// The command line's grammar, bound to the options that it fills. What its verbs take is declared
/// in a file for each group of options.
class Grammar {
 public:
  explicit Grammar(Options& options);

  void parse(const std::vector<std::string>& arguments);
  /// Writes the help or the version.
  void answer(const CLI::Success& request);
  std::string explain(const CLI::ParseError& error) const;
  const CLI::App& app() const { return m_app; }

 private:
  void addGlobalOptions();
  void addList();
  void addRun();
  void addResults();
  void addOthers();
  void addReports();
  void addHistory();
  void addStreams();
  void addFleet();
  void addCompletion();
  void addManual();
  void addRunChoice(CLI::App& run);
  void addFiles(CLI::App& command);
  void addRedact(CLI::App& command);
  void addDetail(CLI::App& command);
  CLI::App* addCommand(Command command, const char* name, const char* description);
  void addLevel(CLI::App& command, const char* description);
  std::string explainExtras() const;
  std::string explainMissingCommand() const;
  void complete();
  void requireSense() const;
  void requireInstallation() const;
  void requireSenseOfRun() const;

  CLI::Option* addText(CLI::App& command, const char* name, std::string& text,
                       const char* description);
  CLI::Option* addText(CLI::App& command, const char* name, std::optional<std::string>& text,
                       const char* description);

  Options& m_options;
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

}  // namespace host
