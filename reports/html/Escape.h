#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Text from anywhere, as it may stand in a page: what acts instead of being seen is spelt out, and
/// what HTML takes for markup becomes entities, so that it is harmless between tags and in a quoted
/// attribute alike.
namespace reports::html {

/// As one line.
std::string escaped(std::string_view text);

/// Line breaks and tabs stay.
std::string escapedLines(std::string_view text);

/// `text`, or at most its first `bytes` bytes, cut between characters; how much is missing stands
/// behind them.
std::string shortened(std::string_view text, std::size_t bytes);

}  // namespace reports::html
