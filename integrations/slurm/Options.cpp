#include "integrations/slurm/Options.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>
#include <sstream>

#include "integrations/slurm/ConfigFile.h"
#include "integrations/slurm/SettingError.h"

namespace slurm {
namespace {

const char* const kFooter =
    "Exit status: 0 nothing speaks against the node, or there was nothing to do; 1 the node is\n"
    "faulty; of health, 2 wrong options or configuration, 3 the node could not be tested.\n"
    "The configuration has the same keys, at its top for all or in [health], [prolog], [epilog].\n"
    "Links named health, prolog and epilog that lead to this program need no argument.";

std::optional<Verb> verbNamed(const std::string& name) {
  for (const Verb verb : {Verb::kHealth, Verb::kProlog, Verb::kEpilog})
    if (name == nameOf(verb) || name == "diags-" + nameOf(verb)) return verb;
  return std::nullopt;
}

std::string helpOf(Verb verb) {
  if (verb == Verb::kHealth) return "Test the node from time to time (HealthCheckProgram)";
  return verb == Verb::kProlog ? "Test the node before a job (Prolog)"
                               : "Test the node after a job (Epilog)";
}

/// Options by the names of their keys: only those that were given.
class Grammar {
 public:
  Grammar() : m_app("Tests a node of a Slurm cluster and drains it where a part is faulty.") {
    m_app.name("diags-slurm");
    m_app.require_subcommand(1);
    m_app.set_version_flag("--version", "diags-slurm " DIAGS_VERSION);
    m_app.footer(kFooter);
    for (const Verb verb : {Verb::kHealth, Verb::kProlog, Verb::kEpilog}) add(verb);
  }

  void parse(std::vector<std::string> arguments) {
    // CLI11 wants them in reverse.
    std::reverse(arguments.begin(), arguments.end());
    m_app.parse(arguments);
  }

  std::string answerTo(const CLI::Error& call) {
    std::ostringstream text;
    m_app.exit(call, text, text);
    return text.str();
  }

  /// Nothing where it was not.
  std::optional<std::string> given(const std::string& name) const {
    const std::string& value = m_given.at(name);
    return m_app.get_subcommands().front()->count("--" + name) > 0 ? std::optional(value)
                                                                   : std::nullopt;
  }

 private:
  void add(Verb verb) {
    CLI::App* const command = m_app.add_subcommand(nameOf(verb), helpOf(verb));
    command->footer(kFooter);
    addOne(*command, "config", std::string("The configuration (") + kConfigFile + ")", false);
    for (const Key& key : settingKeys())
      addOne(*command, key.name, key.help, key.kind == Kind::kTruth);
  }

  void addOne(CLI::App& command, const std::string& name, const std::string& help, bool isTruth) {
    std::string& value = m_given[name];
    if (isTruth) {
      // "--drain=false", and "--drain" for true.
      command.add_flag("--" + name, value, help);
    } else {
      command.add_option("--" + name, value, help)->type_name("VALUE");
    }
  }

  CLI::App m_app;
  std::map<std::string, std::string> m_given;
};

void readConfiguration(const Grammar& grammar, Request& request) {
  if (const std::optional<std::string> config = grammar.given("config")) {
    if (config->empty() || config->front() != '/')
      throw SettingError("--config: \"" + *config + "\" is no absolute path");
    readConfigFile(*config, request.verb, request.settings);
  } else if (::access(kConfigFile, F_OK) == 0) {
    readConfigFile(kConfigFile, request.verb, request.settings);
  }
}

void takeOptions(const Grammar& grammar, Settings& settings) {
  for (const Key& key : settingKeys()) {
    const std::optional<std::string> value = grammar.given(key.name);
    if (!value) continue;
    try {
      set(settings, key, *value);
    } catch (const SettingError& error) {
      throw SettingError(std::string("--") + error.what());
    }
  }
}

/// The arguments behind the program's name, the verb the first of them.
std::vector<std::string> withVerb(std::vector<std::string> arguments, std::optional<Verb> verb) {
  if (!arguments.empty()) arguments.erase(arguments.begin());
  const bool isNamed = !arguments.empty() && verb && arguments.front() == nameOf(*verb);
  if (verb && !isNamed) arguments.insert(arguments.begin(), nameOf(*verb));
  const bool isOther = !verb && !arguments.empty() && arguments.front().rfind('-', 0) != 0;
  if (isOther) {
    throw SettingError("unknown verb \"" + arguments.front() +
                       "\"; there are health, prolog and epilog");
  }
  return arguments;
}

}  // namespace

std::optional<Verb> verbOf(const std::vector<std::string>& arguments) {
  if (arguments.empty()) return std::nullopt;
  const std::string& program = arguments.front();
  const std::size_t slash = program.rfind('/');
  const auto byName = verbNamed(slash == std::string::npos ? program : program.substr(slash + 1));
  if (byName || arguments.size() < 2) return byName;
  for (const Verb verb : {Verb::kHealth, Verb::kProlog, Verb::kEpilog})
    if (arguments[1] == nameOf(verb)) return verb;
  return std::nullopt;
}

Request requestFrom(std::vector<std::string> arguments) {
  Request request;
  const std::optional<Verb> verb = verbOf(arguments);
  Grammar grammar;
  try {
    grammar.parse(withVerb(std::move(arguments), verb));
  } catch (const CLI::Success& call) {
    request.answer = grammar.answerTo(call);
    return request;
  } catch (const CLI::ParseError& error) {
    throw SettingError(error.what());
  }
  request.verb = verb.value();
  request.settings = defaultsOf(request.verb);
  readConfiguration(grammar, request);
  takeOptions(grammar, request.settings);
  return request;
}

}  // namespace slurm
