#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace text {

/// The elements of an array as one text, with a comma between them; `\,` is a comma in an element
/// and `\\` a backslash. No elements make an empty text.
std::string arrayText(const std::vector<std::string>& elements);

/// The elements of such a text; none of an empty one.
std::vector<std::string> arrayElements(std::string_view text);

}  // namespace text
