#pragma once

#include <functional>

#include "engine/protocol/Messages.h"

namespace engine::wire {

/// Waits for orders on a thread of its own, to the end of the process: calls `stop` at the order to
/// stop, once, and ends the process where the supervisor is gone.
void listen(std::function<void()> stop);

}  // namespace engine::wire
