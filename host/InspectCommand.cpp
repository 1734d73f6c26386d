#include "framework/ICIMClass.h"
#include "framework/ICIMNamespace.h"
#include "framework/TVORException.h"
#include "host/Commands.h"

namespace host {
namespace {

bool isKnownClass(NZELVOR20::ICIMNamespace& objects, const std::string& name) {
  try {
    return objects.GetClass(name, NZELVOR20::TOptionsMap()) != nullptr;
  } catch (const NZELVOR20::TVORException&) {
    return false;
  }
}

}  // namespace

ExitStatus inspectClass(Session& session, const Options& options) {
  session.runner().EI(options.className);
  const bool known = isKnownClass(*session.framework().objectManager(), options.className);
  return known ? ExitStatus::kPassed : ExitStatus::kNothingToRun;
}

}  // namespace host
