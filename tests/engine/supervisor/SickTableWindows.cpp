#include "tests/engine/supervisor/SickTable.h"

namespace sick {

const std::vector<Kind>& kindsOfThisSystem() {
  static const std::vector<Kind> kKinds;
  return kKinds;
}

const std::vector<const char*>& listingKindsOfThisSystem() {
  static const std::vector<const char*> kKinds;
  return kKinds;
}

const std::vector<const char*>& survivedKindsOfThisSystem() {
  static const std::vector<const char*> kKinds;
  return kKinds;
}

const std::vector<const char*>& endlessKindsOfThisSystem() {
  static const std::vector<const char*> kKinds;
  return kKinds;
}

}  // namespace sick
