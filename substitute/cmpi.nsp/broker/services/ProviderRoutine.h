#pragma once

#include <exception>

#include "substitute/cmpi.nsp/broker/services/CallGuard.h"

/// The routines that providers hand to the broker: those of their threads, what is done once, and
/// what tidies a thread's values up. No caller takes a status from them.
namespace cmpinsp::broker {

class Broker;

/// Writes to the core log what a routine threw. Its provider is the one that the thread works for,
/// else `provider`, which may be null.
void logThrown(const Broker* provider, const char* what) noexcept;

/// Runs a routine. False where it threw, which is logged. What ends the thread passes through.
template <typename Routine>
bool runRoutine(const char* operation, const Broker* provider, Routine routine) {
  try {
    guardedCall(operation, routine);
    return true;
  } catch (const std::exception& thrown) {
    logThrown(provider, thrown.what());
    return false;
  }
}

}  // namespace cmpinsp::broker
