#pragma once

/// An allocation that fails ends in an exception, which whoever calls a provider or reads a file
/// may take for an answer: that nothing is there. So it is noted where it happens.
namespace engine::guard {

/// Whether there is memory for others where an allocation failed.
using MemoryLeft = bool (*)() noexcept;

/// Notes from now on that an allocation failed for want of memory: one of a size that cannot be
/// had, while there is a block of an everyday size, is its caller's affair. Once a process; a test
/// says by itself what is left.
void watchMemory(MemoryLeft isLeft = nullptr) noexcept;

/// Whether one did, whoever has caught its exception.
bool hasMemoryRunOut() noexcept;

/// How often one did: each of them is somebody's who has got an exception for an answer.
unsigned failuresForWantOfMemory() noexcept;

/// Whether the process had so much by then that it was not short of it: somebody took it all.
bool wasMemoryAmple() noexcept;

/// In which provider and operation the first one did; empty texts for none. They stay valid.
const char* providerWithoutMemory() noexcept;
const char* operationWithoutMemory() noexcept;

}  // namespace engine::guard
