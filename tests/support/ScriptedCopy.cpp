#include "framework/TCIMCopy.h"
#include "tests/support/Script.h"
#include "tests/support/ScriptedInstance.h"
#include "tests/support/Text.h"

namespace NZELVOR20 {

/// Recorded as `TCIMCopy.CopyInstance(inst LABEL, ns NAME)`; answers a copy that nobody else holds.
boost::shared_ptr<ICIMInstance> TCIMCopy::CopyInstance(boost::shared_ptr<ICIMInstance> instance,
                                                       boost::shared_ptr<ICIMNamespace> target) {
  const std::string call = "TCIMCopy.CopyInstance(" + support::describe(instance) + ", " +
                           support::describe(target) + ")";
  if (support::Script::current().enter(call, support::Returns::handle)) {
    return {};
  }
  const auto* scripted = dynamic_cast<const support::ScriptedInstance*>(instance.get());
  if (scripted == nullptr) {
    return {};
  }
  return scripted->copyAs(scripted->label() + " copy")->handle();
}

}  // namespace NZELVOR20
