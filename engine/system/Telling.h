#pragma once

#include <string>
#include <string_view>

/// What a maker's text tells.
namespace engine {

/// The text without blanks around it, of at most 256 bytes; empty where it is what makers write
/// instead of nothing, such as "To Be Filled By O.E.M.".
std::string telling(std::string_view text);

/// The same of a number that tells one piece from another: "00000000" does not either.
std::string tellingSerial(std::string_view text);

}  // namespace engine
