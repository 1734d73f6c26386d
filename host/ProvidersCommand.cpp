#include <iostream>

#include "host/Commands.h"
#include "host/Messages.h"

namespace host {
namespace {

std::string joined(const std::vector<std::string>& texts) {
  std::string list;
  for (const std::string& text : texts) list += (list.empty() ? "" : ", ") + text;
  return list;
}

void printProvider(const substitute::ProviderInfo& provider) {
  std::cout << provider.name << '\n'
            << "  library:    " << provider.library << '\n'
            << "  classes:    " << joined(provider.classes) << '\n'
            << "  interfaces: " << joined(provider.interfaces) << '\n'
            << "  state:      " << (provider.usable ? "usable" : "not usable") << '\n';
  if (!provider.usable) std::cout << "  reason:     " << provider.reason << '\n';
}

}  // namespace

ExitStatus listProviders(Session& session, const Options&) {
  const std::vector<substitute::ProviderInfo> providers = session.framework().providers(true);
  if (providers.empty()) {
    reportError("no provider is registered in " + session.root());
    return ExitStatus::kNothingToRun;
  }
  ExitStatus status = ExitStatus::kPassed;
  for (const substitute::ProviderInfo& provider : providers) {
    printProvider(provider);
    if (!provider.usable) status = ExitStatus::kCouldNotRun;
  }
  return status;
}

}  // namespace host
