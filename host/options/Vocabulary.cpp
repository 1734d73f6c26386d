#include "host/options/Vocabulary.h"

#include "host/options/Grammar.h"

namespace host {
namespace {

/// The word alone: behind a colon CLI11 puts what is checked.
std::string kindOf(const std::string& shown) { return shown.substr(0, shown.find_first_of(": ")); }

bool canRepeat(const CLI::Option& option) {
  return option.get_expected_max() >= CLI::detail::expected_max_vector_size;
}

OptionWords optionWords(const CLI::Option& option) {
  OptionWords words;
  for (const std::string& name : option.get_snames()) words.names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) words.names.push_back("--" + name);
  words.description = option.get_description();
  words.repeats = canRepeat(option);
  const int most = option.get_items_expected_max();
  words.values = words.repeats ? 1 : most;
  if (most > 0) words.kind = kindOf(option.get_type_name());
  return words;
}

std::vector<OptionWords> optionsOf(const CLI::App& app) {
  std::vector<OptionWords> result;
  for (const CLI::Option* option : app.get_options()) {
    if (!option->get_positional()) result.push_back(optionWords(*option));
  }
  return result;
}

VerbWords verbWords(const CLI::App& app) {
  VerbWords verb;
  verb.name = app.get_name();
  verb.description = app.get_description();
  verb.options = optionsOf(app);
  for (const CLI::Option* option : app.get_options()) {
    if (!option->get_positional()) continue;
    verb.kind = option->get_name(true);
    verb.repeats = canRepeat(*option);
  }
  return verb;
}

}  // namespace

Vocabulary commandVocabulary() {
  Options unused;
  const Grammar grammar(unused);
  Vocabulary vocabulary;
  vocabulary.options = optionsOf(grammar.app());
  for (const CLI::App* verb : grammar.app().get_subcommands({})) {
    if (!verb->get_group().empty()) vocabulary.verbs.push_back(verbWords(*verb));
  }
  return vocabulary;
}

std::vector<std::string> levelNames() { return {"simple", "immediate", "extended"}; }

std::vector<std::string> shellNames() { return {"bash", "zsh"}; }

std::vector<std::string> shippedPlans() { return {"quick", "standard", "burn-in"}; }

}  // namespace host
