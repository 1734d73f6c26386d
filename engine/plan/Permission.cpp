#include "engine/plan/Permission.h"

namespace engine {

std::string whyNotAllowed(const Plan& plan, const Characteristics& test) {
  if (test.isDestructive && !plan.allowDestructive) {
    return "it may destroy data, and allow-destructive is not set";
  }
  if (test.isRisky && !plan.allowDisruptive) {
    return "it may disturb the machine, and allow-disruptive is not set";
  }
  if (test.isInteractive && !plan.allowInteractive) {
    return "it asks the user for something, and interactive is false";
  }
  return {};
}

}  // namespace engine
