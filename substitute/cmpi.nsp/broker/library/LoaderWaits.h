#pragma once

#include <thread>

namespace cmpinsp::broker {

/// Who waits for whom while providers' interfaces are being made: a factory may ask another
/// provider, and where that one's factory asks back on another thread, each would wait for the
/// other for ever. Safe to use from several threads.
///
/// Notes that `waiter` waits for `loader`, which is making the interfaces `awaited`. False, and
/// nothing noted, where `loader` waits for `waiter` already, directly or by way of others.
bool beginLoaderWait(std::thread::id waiter, const void* awaited, std::thread::id loader);

/// `waiter` goes on.
void endLoaderWait(std::thread::id waiter) noexcept;

/// `awaited` are made: nobody waits for them any longer, although some have yet to wake up.
void endLoaderWaits(const void* awaited) noexcept;

}  // namespace cmpinsp::broker
