#include <cstddef>
#include <string>
#include <vector>

#include "engine/worker/tasks/Tasks.h"
#include "engine/worker/tasks/TestNames.h"
#include "engine/worker/tasks/Thrown.h"
#include "engine/worker/wire/Wire.h"
#include "framework/ICIMNamespace.h"
#include "framework/TVORException.h"

namespace engine::tasks {
namespace {

std::size_t tell(Weight weight, const std::vector<substitute::Problem>& problems) {
  for (const substitute::Problem& problem : problems) wire::send(Finding{weight, problem.toText()});
  return problems.size();
}

/// The library's path and the reason, which may name that path as well: once is enough.
std::string faultOf(const substitute::ProviderInfo& provider) {
  const std::string path = provider.library + ": ";
  std::string reason = provider.reason;
  for (std::size_t at = reason.find(path); at != std::string::npos; at = reason.find(path)) {
    reason.erase(at, path.size());
  }
  return reason.find(provider.library) == std::string::npos ? path + reason : reason;
}

std::size_t tellFaulty(const std::vector<substitute::ProviderInfo>& providers) {
  std::size_t count = 0;
  for (const substitute::ProviderInfo& provider : providers) {
    if (provider.reason.empty()) continue;
    wire::send(Finding{Weight::kFault, faultOf(provider)});
    ++count;
  }
  return count;
}

bool offersTests(NZELVOR20::ICIMNamespace& objects) {
  try {
    return objects.GetClass("CIM_AvailableDiagnosticService", {}) != nullptr;
  } catch (const NZELVOR20::TVORException&) {
    return false;
  }
}

std::size_t tellTestNames(NZELVOR20::ICIMNamespace& objects) {
  if (!offersTests(objects)) return 0;
  const std::vector<std::string> lines = unnameableTests(objects);
  for (const std::string& line : lines) wire::send(Finding{Weight::kFault, line});
  return lines.size();
}

/// A library that is faulty may be why nothing is listed: then it was named.
std::size_t checkTestNames(NZELVOR20::ICIMNamespace& objects, bool hasFaultyLibrary) {
  try {
    return tellTestNames(objects);
  } catch (const NZELVOR20::TVORException& error) {
    if (hasFaultyLibrary) return 0;
    wire::send(Finding{Weight::kFault, error.what()});
    return 1;
  }
}

/// One that was asked for its tests and threw.
std::size_t tellThrown() {
  const std::vector<Thrown> all = allThrown();
  for (const Thrown& one : all) {
    wire::send(Finding{Weight::kFault, "provider " + one.provider + ": " + one.text});
  }
  return all.size();
}

}  // namespace

Done check(Session& session) {
  const substitute::Framework& framework = session.framework();
  tell(Weight::kNote, framework.notes());
  std::size_t faults = tell(Weight::kFault, framework.problems());
  faults += tell(Weight::kFault, framework.checkDataFiles());
  faults += tell(Weight::kFault, framework.checkRights());
  const std::size_t libraries = tellFaulty(framework.providers(true));
  faults += libraries + checkTestNames(session.objects(), libraries > 0);
  faults += tellThrown();
  return {faults > 0 ? DoneStatus::kFailed : DoneStatus::kOk, ""};
}

}  // namespace engine::tasks
