#pragma once

/// An allocation that fails ends in an exception, which whoever calls a provider or reads a file
/// may take for an answer: that nothing is there. So it is noted where it happens.
namespace engine::guard {

/// Notes from now on that an allocation failed. Once a process.
void watchMemory() noexcept;

/// Whether one did, whoever has caught its exception.
bool hasMemoryRunOut() noexcept;

/// Whether the process had so much by then that it was not short of it: somebody took it all.
bool wasMemoryAmple() noexcept;

/// In which provider and operation the first one did; empty texts for none. They stay valid.
const char* providerWithoutMemory() noexcept;
const char* operationWithoutMemory() noexcept;

}  // namespace engine::guard
