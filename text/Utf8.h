#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace text {

/// One character of UTF-8; `length` 0 where the bytes are none.
struct Character {
  std::uint32_t code = 0;
  std::size_t length = 0;
};

/// The one that begins at `at`, which lies within the text.
Character characterAt(std::string_view text, std::size_t at);

}  // namespace text
