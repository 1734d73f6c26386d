#pragma once

#include <string>
#include <string_view>

namespace engine {

/// Whether `text` is UTF-8 by the standard: no overlong form, no surrogate, nothing above U+10FFFF.
bool isUtf8(std::string_view text);

std::string hexOf(std::string_view bytes);

/// The bytes of such a text; false where it is none.
bool bytesFrom(std::string_view hex, std::string& bytes);

}  // namespace engine
