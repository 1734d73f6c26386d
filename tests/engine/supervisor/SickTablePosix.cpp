#include "tests/engine/supervisor/SickTable.h"

namespace sick {

using engine::Cause;
using engine::Outcome;

const std::vector<Kind>& kindsOfThisSystem() {
  static const std::vector<Kind> kKinds = {
    {"blocked", Outcome::kBroken, Cause::kTimedOut, true},
    {"stubborn", Outcome::kBroken, Cause::kTimedOut, true},
    {"stop", Outcome::kBroken, Cause::kTimedOut, true},
    {"mute", Outcome::kPassed, std::nullopt, false},
    {"deaf", Outcome::kBroken, Cause::kExited, true},
    {"child", Outcome::kPassed, std::nullopt, false},
    {"daemon", Outcome::kPassed, std::nullopt, false},
    {"children", Outcome::kPassed, std::nullopt, false},
    {"faultychild", Outcome::kPassed, std::nullopt, false},
    {"garbage", Outcome::kBroken, Cause::kProtocol, true},
    {"forgestart", Outcome::kBroken, Cause::kProtocol, true},
    {"forgedone", Outcome::kBroken, Cause::kOther, false},
    {"lost", Outcome::kBroken, Cause::kCrashed, true},
    {"kill", Outcome::kBroken, Cause::kKilled, true},
    {"orphan", Outcome::kBroken, Cause::kKilled, true},
    {"orphans", Outcome::kBroken, Cause::kKilled, true},
#if DIAGS_SLOWNESS == 1  // a sanitizer needs more addresses than any limit leaves
    {"eat", Outcome::kBroken, Cause::kOutOfMemory, false},
#endif
  };
  return kKinds;
}

const std::vector<const char*>& listingKindsOfThisSystem() {
  static const std::vector<const char*> kKinds = {"blocked", "stubborn", "stop",   "kill",
                                                  "orphan",  "deaf",     "garbage"};
  return kKinds;
}

const std::vector<const char*>& survivedKindsOfThisSystem() {
  static const std::vector<const char*> kKinds = {"mute", "child", "daemon"};
  return kKinds;
}

const std::vector<const char*>& endlessKindsOfThisSystem() {
#if DIAGS_SLOWNESS == 1  // a sanitizer needs more addresses than any limit leaves
  static const std::vector<const char*> kKinds = {"eat", "endless"};
#else
  static const std::vector<const char*> kKinds;
#endif
  return kKinds;
}

}  // namespace sick
