#pragma once

namespace reports {

/// A letter in lower case; any other byte as it is.
constexpr char folded(char byte) noexcept {
  return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

}  // namespace reports
