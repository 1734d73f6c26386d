#include <algorithm>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include "engine/answers/AnswerJson.h"
#include "host/Messages.h"
#include "host/Output.h"
#include "host/verbs/Circumstances.h"
#include "host/verbs/Verbs.h"

namespace host {
namespace {

using engine::ProviderFacts;

void addWord(std::string& list, const std::string& word) {
  list += (list.empty() ? "" : ", ") + word;
}

/// The classes of each choice of namespaces together, in the order of registration.
void printClasses(const ProviderFacts& provider) {
  std::vector<std::pair<std::string, std::string>> groups;
  for (const ProviderFacts::Class& served : provider.classes) {
    std::string namespaces;
    for (const std::string& name : served.namespaces) addWord(namespaces, name);
    auto group = std::find_if(groups.begin(), groups.end(),
                              [&](const auto& known) { return known.first == namespaces; });
    if (group == groups.end()) group = groups.insert(groups.end(), {namespaces, std::string()});
    addWord(group->second, served.name);
  }
  for (const auto& [namespaces, classes] : groups) {
    printLine("  classes:    " + classes);
    printLine("  namespaces: " + namespaces);
  }
}

/// The edition of each interface once for those that have the same.
std::string editionsOf(const ProviderFacts& provider) {
  std::string list;
  std::vector<std::string> named;
  for (const ProviderFacts::Interface& served : provider.interfaces) {
    const bool isNew = std::find(named.begin(), named.end(), served.edition) == named.end();
    if (served.edition.empty() || !isNew) continue;
    named.push_back(served.edition);
    addWord(list, served.edition);
  }
  return list.empty() ? "unknown" : list;
}

void printProvider(const ProviderFacts& provider) {
  std::string interfaces;
  for (const ProviderFacts::Interface& served : provider.interfaces)
    addWord(interfaces, served.name);
  printLine(provider.name);
  printLine("  library:    " + provider.library);
  printClasses(provider);
  printLine("  interfaces: " + interfaces);
  printLine("  edition:    " + editionsOf(provider));
  printLine("  state:      " + provider.state);
  if (!provider.reason.empty()) printLine("  reason:     " + provider.reason);
}

}  // namespace

ExitStatus listProviders(engine::Engine& engine, const Options& options) {
  const engine::ProvidersAnswer answer = engine.providers();
  reportWarnings(answer.circumstances);
  if (answer.providers.empty()) {
    reportError("no provider is registered in " + options.root);
    return ExitStatus::kNothingToRun;
  }
  if (options.json) std::cout << engine::jsonOf(answer) << '\n';
  ExitStatus status = ExitStatus::kPassed;
  for (const ProviderFacts& provider : answer.providers) {
    if (!options.json) printProvider(provider);
    if (provider.state != "usable") status = ExitStatus::kCouldNotRun;
  }
  return status;
}

}  // namespace host
