#include <algorithm>
#include <string_view>

#include "host/options/Grammar.h"
#include "host/options/Guard.h"
#include "text/CloseMatches.h"

namespace host {
namespace {

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

/// CLI11's own words for a wrong number of values, in plainer ones; others as they are.
std::string inPlainWords(const std::string& text) {
  constexpr std::string_view kReceived = " required but received ";
  for (const std::string_view kind : {"most", "least"}) {
    const std::string start = kind == "most" ? ": At Most " : ": At least ";
    const std::size_t at = text.find(start);
    const std::size_t received = text.find(kReceived);
    if (at == std::string::npos || received == std::string::npos || received < at) continue;
    const std::string count = text.substr(at + start.size(), received - at - start.size());
    return text.substr(0, at) + " takes at " + std::string(kind) + " " + count +
           (count == "1" ? " value" : " values") + ", not " +
           text.substr(received + kReceived.size());
  }
  return text;
}

}  // namespace

std::string Grammar::explain(const CLI::ParseError& error) const {
  const bool noCommand = m_app.get_subcommands().empty() && error.get_name() == "RequiredError";
  if (noCommand) return explainMissingCommand();
  if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) return explainExtras();
  std::string text = error.what();
  text.erase(std::remove(text.begin(), text.end(), kGuard), text.end());
  return inPlainWords(text);
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

}  // namespace host
