#pragma once

#include <string>
#include <vector>

namespace host {

/// With this character in front, CLI11 takes an argument as it stands. It would split one in
/// brackets at its commas, which a test identifier has too, and it forgets about "--" once a test
/// was named. An argument that begins with it gets another, so that this one alone comes off.
constexpr char kGuard = '\x01';

/// The arguments with guards where they are needed.
std::vector<std::string> guarded(const std::vector<std::string>& arguments);

/// Takes the guard off, where there is one.
void unguard(std::string& argument);

}  // namespace host
