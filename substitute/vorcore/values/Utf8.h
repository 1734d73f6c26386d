#pragma once

#include <string>

#include "framework/Export.h"

namespace vorcore {

/// The UTF-8 form of one UTF-16 code unit; half of a surrogate pair becomes U+FFFD.
VORCORE_API std::string utf8Of(char16_t unit);

/// The code unit that `text` (UTF-8) consists of; false when it is not exactly one character of the
/// basic plane.
VORCORE_API bool singleUnitOf(const std::string& text, char16_t& unit);

}  // namespace vorcore
