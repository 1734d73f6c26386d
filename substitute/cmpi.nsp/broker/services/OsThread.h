#pragma once

namespace cmpinsp::broker {

#if defined(_WIN32)
/// Windows does not unwind a thread that ends itself, so an exception of our own does. Whoever
/// catches what a provider throws lets it pass.
struct ThreadEnd {};
#endif

/// Starts a detached thread of the operating system; false when there can be none.
bool startOsThread(void (*run)(void*), void* argument) noexcept;

/// Ends the calling thread, which `startOsThread` has made. Automatic objects in its frames are
/// destroyed where the system unwinds them.
[[noreturn]] void endOsThread();

}  // namespace cmpinsp::broker
