#pragma once

#include <string>

namespace providers {

/// UTF-8 text of a Windows text.
std::string toUtf8(const std::wstring& text);

/// The Windows text of a UTF-8 text.
std::wstring toWide(const std::string& text);

}  // namespace providers
