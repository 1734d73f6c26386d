#pragma once

#include <cstddef>
#include <string>

/// What the tests of sick providers need of the system.
namespace sick {

/// Sets a variable of this process; an empty text takes it away.
void setVariable(const char* name, const std::string& value);

/// The processes below this one that have the mark of this process in their environment, which is
/// put there at the first call of `setVariable`.
std::size_t countMarked();

/// 10 ms.
void pauseBriefly();

}  // namespace sick
