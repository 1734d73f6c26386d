#pragma once

#include <vector>

#include "engine/events/Event.h"
#include "engine/system/SystemFolder.h"
#include "engine/worker/counters/Rises.h"

namespace engine::counters {

/// What is to be told of errors of the machine, and whether it is enough to doubt that it is sound.
struct Finding {
  Diagnosis diagnosis;
  bool isSure = true;
};

/// What, where, from and to. The system is asked how it calls the part. A drive also ends a command
/// with an error that asks for what it does not have: that is a reason to doubt it only where the
/// kernel's log cannot be read, which would tell of another one.
Finding findingOf(const SystemFolder& root, const RisenPart& risen, bool hasKernelLog);

}  // namespace engine::counters
