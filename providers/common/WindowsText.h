#pragma once

#include <string>

namespace providers {

/// UTF-8 text of a Windows text.
std::string toUtf8(const std::wstring& text);

}  // namespace providers
