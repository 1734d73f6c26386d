#pragma once

#include <string_view>

namespace engine {

/// Whether the text has a sign of patterns: `*`, `?` or `[`.
bool isGlob(std::string_view text) noexcept;

/// Whether the whole of `text` fits the pattern: `*` stands for any signs or none, `?` for one
/// sign,
/// `[abc]`, `[a-z]` for one of these, `[!abc]` for one other than these; every other sign for
/// itself, and so does a `[` without its `]`. A `]` right behind the bracket, or its `!`, is one of
/// the signs; so `[*]` is a star, `[[]` a bracket. Upper and lower case differ. A sign is one of
/// Unicode's; a byte that is no UTF-8 is one, too.
bool matchesGlob(std::string_view pattern, std::string_view text) noexcept;

}  // namespace engine
