#pragma once

#include <stdexcept>
#include <string>

namespace cmpinsp {

/// Files above this size are refused: no schema or registration file comes near it.
constexpr unsigned long long kLargestSourceFile = 256ULL * 1024 * 1024;

/// Why a file cannot be read, without its path: who asked for it names that.
struct SourceError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The content of the text file at `path` (UTF-8), as UTF-8. Throws `SourceError`.
std::string readSourceText(const std::string& path);

/// `bytes` as UTF-8: a byte-order mark decides (UTF-8 and both UTF-16 orders) and is taken off;
/// without one, text that is not valid UTF-8 is taken for Latin-1.
std::string decodeSourceText(std::string bytes);

/// Appends `codePoint` to `text` as UTF-8; a lone surrogate becomes U+FFFD.
void appendUtf8(std::string& text, unsigned long codePoint);

}  // namespace cmpinsp
