#pragma once

#include "engine/events/Event.h"
#include "engine/process/ChildProcess.h"
#include "engine/protocol/Messages.h"

/// Why a worker did not answer, in words.
namespace engine {

Error crashError(const Crashed& crash);
/// Of a process that ended without a word.
Error endError(const ProcessEnd& end);
Error timedOutError();
/// The user had it ended before it could answer.
Error endedError();
Error outOfMemoryError();

}  // namespace engine
