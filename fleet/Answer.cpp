#include "fleet/Answer.h"

namespace fleet {

const char* nameOf(Verdict verdict) noexcept {
  constexpr const char* kNames[kVerdicts] = {"none",   "skipped",    "passed",
                                             "warned", "unfinished", "failed"};
  return kNames[static_cast<std::size_t>(verdict)];
}

const char* nameOf(GroupKind kind) noexcept {
  constexpr const char* kNames[] = {"part", "model", "firmware", "batch", "test"};
  return kNames[static_cast<std::size_t>(kind)];
}

}  // namespace fleet
