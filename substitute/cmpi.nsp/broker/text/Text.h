#pragma once

#include <string>
#include <string_view>

namespace cmpinsp::broker {

/// `text` as UTF-8: bytes that are no UTF-8 are read as Latin-1, since older providers hand out
/// text in the system's code page. The calling thread's state remembers that there were such.
std::string repaired(std::string_view text);

/// Whether `text` is well-formed UTF-8.
bool isUtf8(std::string_view text) noexcept;

/// Between UTF-8 and UTF-16; a lone surrogate becomes U+FFFD.
std::u16string utf16Of(std::string_view text);
std::string utf8Of(std::u16string_view text);

}  // namespace cmpinsp::broker
