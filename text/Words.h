#pragma once

#include <string>
#include <string_view>

namespace text {

/// `text` without blanks and line ends around it; a view of the same bytes.
std::string_view trimmed(std::string_view text);

/// What the exception that is being handled has to say. To be called in a handler only.
std::string currentExceptionText();

}  // namespace text
