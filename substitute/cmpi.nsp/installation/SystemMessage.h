#pragma once

#include <string>
#include <system_error>

namespace cmpinsp {

/// What the system says of the error, in UTF-8. On Windows `error_code::message` has it in the
/// machine's code page, which a text with paths in UTF-8 must not be joined with. `language` is one
/// of Windows' numbers for them, 0 the user's choice; elsewhere it makes no difference.
std::string systemMessage(const std::error_code& error, unsigned short language = 0);

}  // namespace cmpinsp
