#include "substitute/cmpi.nsp/manager/providers/ProviderReport.h"

#include <algorithm>

#include "framework/TVORException.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp {

namespace {

using substitute::ProviderInfo;
using substitute::ProviderState;

ProviderState stateAfter(const NZELVOR20::TVORException& error) {
  switch (error.GetStatus().GetStatusCode()) {
    case NZELVOR20::eVORNotFound:
      return ProviderState::kMissing;
    case NZELVOR20::eVORAccessDenied:
      return ProviderState::kRefused;
    default:
      return ProviderState::kBroken;
  }
}

void addReason(std::string& reasons, const std::string& reason) {
  reasons += (reasons.empty() ? "" : "; ") + reason;
}

/// Fills in the editions; what is registered but not there goes to the reason.
void compareInterfaces(const std::vector<OfferedInterface>& offered, ProviderInfo& info) {
  for (substitute::ServedInterface& wanted : info.interfaces) {
    const auto found = std::find_if(
        offered.begin(), offered.end(),
        [&](const OfferedInterface& one) { return vorcore::equalNames(one.name, wanted.name); });
    if (found == offered.end()) {
      addReason(info.reason, "the library has no factory for the " + wanted.name + " interface");
    } else if (!found->reason.empty()) {
      addReason(info.reason, found->reason);
    } else {
      wanted.edition = editionText(found->edition);
    }
  }
  info.state = info.reason.empty() ? ProviderState::kUsable : ProviderState::kIncomplete;
}

}  // namespace

std::string editionText(int edition) {
  if (edition <= 0) return std::string();
  const int minor = edition % 100;
  return std::to_string(edition / 100) + "." + std::to_string(minor % 10 == 0 ? minor / 10 : minor);
}

ProviderInfo describeProvider(ManagedProvider& provider, bool load) {
  ProviderInfo info;
  info.name = provider.registration().name;
  info.library = provider.libraryPath();
  unsigned interfaces = 0;
  for (const Registration& registration : provider.registration().classes) {
    info.classes.push_back({registration.className, registration.namespaces});
    interfaces |= registration.interfaces;
  }
  for (const std::string& name : interfaceNames(interfaces)) info.interfaces.push_back({name, {}});
  if (provider.registration().isLeftOut) {
    info.reason = "left out";
    return info;
  }
  try {
    Provider& loadable = provider.get();
    if (!load && !loadable.wasTried()) return info;
    loadable.load();
    compareInterfaces(loadable.offered(), info);
  } catch (const NZELVOR20::TVORException& error) {
    info.state = stateAfter(error);
    info.reason = error.what();
    info.lacksMemory = error.GetStatus().GetStatusCode() == NZELVOR20::eVOROutOfMemory;
  } catch (const std::exception& error) {
    info.state = ProviderState::kBroken;
    info.reason = error.what();
  }
  return info;
}

}  // namespace cmpinsp
