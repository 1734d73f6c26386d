#include "tests/engine/supervisor/Sickness.h"

namespace sickness {

namespace {
const Kind kKinds[] = {{nullptr, nullptr}};
}  // namespace

const Kind* const kOfThisSystem = kKinds;

}  // namespace sickness
