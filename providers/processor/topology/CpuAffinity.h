#pragma once

namespace providers {

/// Binds the calling thread to a CPU. False when the system does not allow it.
bool bindToCpu(unsigned cpu);

}  // namespace providers
