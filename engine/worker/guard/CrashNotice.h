#pragma once

/// The last word of a worker that dies.
namespace engine::guard {

/// From now on, a signal (on Windows an exception of the system) that ends the process, its stack
/// overflowing included, is told to the supervisor with the place and the libraries of the stack. A
/// provider that installs handlers of its own takes that away; the end is noticed all the same.
void tellOfCrashes() noexcept;

/// This thread enters a provider, and leaves it again. The texts stay valid.
void enterPlace(const char* provider, const char* operation) noexcept;
void leavePlace() noexcept;

/// What `std::terminate` is called for, an exception that nobody caught for instance, is told with
/// its text before the process ends.
void tellOfTermination() noexcept;

}  // namespace engine::guard
