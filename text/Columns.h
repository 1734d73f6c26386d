#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace text {

/// How many columns of a terminal a text takes that is `visible`. Where terminals differ, the most.
std::size_t columnsOf(std::string_view text);

/// The text, or as much of its beginning as leaves room for an ellipsis behind it: never wider than
/// `columns`.
std::string fitted(std::string_view text, std::size_t columns);

/// The text in lines of at most `columns`, at least 1, that end between words where they can.
std::vector<std::string> wrapped(std::string_view text, std::size_t columns);

}  // namespace text
