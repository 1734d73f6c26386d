#pragma once

#include <string>
#include <string_view>

namespace reports {

/// The text for a message about it: its beginning where it is long, harmless for a terminal.
std::string excerpt(std::string_view text);

}  // namespace reports
