#pragma once

#include <expat.h>

namespace kfrxmlparser {

/// Fills `encoding` with the character table of the encoding `name` (without case): windows-1252
/// and iso-8859-15, which Expat does not know of itself. False for any other.
bool describeEncoding(const char* name, XML_Encoding& encoding) noexcept;

}  // namespace kfrxmlparser
