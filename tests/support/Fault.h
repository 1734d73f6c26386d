#pragma once

#include <ostream>
#include <string>

namespace support {

/// The ways in which a call can fail.
enum class Fault {
  vorException,       ///< `TVORException`, status 1
  standardException,  ///< `std::runtime_error`
  otherException,     ///< an exception of no standard type: the number 42
  emptyHandle         ///< only for calls that return a handle
};

inline constexpr Fault kEveryFault[] = {Fault::vorException, Fault::standardException,
                                        Fault::otherException, Fault::emptyHandle};

/// What the scripted exceptions say: the whole text of the standard one, the detail in that of
/// `TVORException`.
inline constexpr char kScriptedFailure[] = "scripted failure";

std::string nameOf(Fault fault);

/// By its name where GoogleTest shows the row of a parameterised test.
void PrintTo(Fault fault, std::ostream* stream);

/// Throws what `fault` stands for; returns for `emptyHandle`.
void raise(Fault fault);

}  // namespace support
