#pragma once

/// An allocation that fails ends in an exception, which whoever calls a provider or reads a file
/// may take for an answer: that nothing is there. So it is noted where it happens.
namespace host {

/// Notes from now on that an allocation failed, and says so should the process be terminated after
/// that: an exception has no way out of some places. From one thread.
void watchMemory() noexcept;

/// Whether one did, whoever has caught its exception.
bool hasMemoryRunOut() noexcept;

}  // namespace host
