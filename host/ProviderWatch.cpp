#include "host/ProviderWatch.h"

#include <new>

#include "host/Messages.h"

namespace host {

using substitute::ProviderInfo;
using substitute::ProviderState;

void ProviderWatch::report() {
  std::string list;
  for (const ProviderInfo& one : m_framework.providers(false)) {
    const bool isFine =
        one.state == ProviderState::kUsable || one.state == ProviderState::kNotLoaded;
    if (one.lacksMemory) throw std::bad_alloc();
    if (isFine || !m_named.insert(one.name).second) continue;
    list += (list.empty() ? "" : ", ") + one.name + " (" + wordFor(one.state) + ")";
  }
  if (list.empty()) return;
  reportError("not every provider can be used: " + list + "; diags providers says why");
}

const char* wordFor(ProviderState state) {
  switch (state) {
    case ProviderState::kUsable:
      return "usable";
    case ProviderState::kIncomplete:
      return "incomplete";
    case ProviderState::kMissing:
      return "missing";
    case ProviderState::kRefused:
      return "refused";
    case ProviderState::kBroken:
      return "broken";
    default:
      return "not loaded";
  }
}

}  // namespace host
