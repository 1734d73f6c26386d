#include "engine/worker/tasks/Tasks.h"
#include "engine/worker/wire/Wire.h"

namespace engine::tasks {
namespace {

ProviderFacts factsOf(const substitute::ProviderInfo& provider) {
  ProviderFacts facts;
  facts.name = provider.name;
  facts.library = provider.library;
  facts.state = wordFor(provider.state);
  facts.reason = provider.reason;
  for (const substitute::ServedClass& one : provider.classes) {
    facts.classes.push_back({one.name, one.namespaces});
  }
  for (const substitute::ServedInterface& one : provider.interfaces) {
    facts.interfaces.push_back({one.name, one.edition});
  }
  return facts;
}

}  // namespace

Done showProviders(Session& session) {
  bool hasAny = false;
  for (const substitute::ProviderInfo& provider : session.framework().providers(true)) {
    wire::send(factsOf(provider));
    hasAny = true;
  }
  return {hasAny ? DoneStatus::kOk : DoneStatus::kNothing, ""};
}

}  // namespace engine::tasks
