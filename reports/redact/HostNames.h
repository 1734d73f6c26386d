#pragma once

#include <cstddef>
#include <string_view>

namespace reports {

/// Whether a host's name, in lower case, is no more than a word that any report has, such as
/// "memory" or "test", or is too short to be told from one. To replace it wherever it stands would
/// spoil every text, and betray it: "DIAGS: host-1 Self Addressing".
bool isEverydayName(std::string_view name) noexcept;

/// Whether what stands in front of `position` says that the name of a host follows: "@", "//", or
/// a word such as "host" or "computer name", with "=", ":", quotes or blanks in between.
bool announcesHost(std::string_view text, std::size_t position) noexcept;

}  // namespace reports
