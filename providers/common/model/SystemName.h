#pragma once

#include <string>

namespace providers {

/// The computer's name; "localhost" when it has none.
std::string systemName();

}  // namespace providers
