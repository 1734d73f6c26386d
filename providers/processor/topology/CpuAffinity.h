#pragma once

namespace providers {

/// Binds the calling thread to a CPU. False when the system does not allow it. On Linux, the thread
/// has a stack for the handling of signals from then on: where a processor is wrong, the pointer to
/// its own may be, and who handles the signal could not say any more on which CPU that was.
bool bindToCpu(unsigned cpu);

}  // namespace providers
