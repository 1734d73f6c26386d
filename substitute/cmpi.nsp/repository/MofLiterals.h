#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace cmpinsp {

/// Appends the text of a string literal to `out`, its escapes resolved (DSP0004, 4.11.2); an
/// unknown escape stays as it is written.
void appendUnescaped(std::string& out, std::string_view literal);

/// The code of a character literal, 0 to 65535; false when it is not exactly one UTF-16 unit.
bool readCharacter(std::string_view literal, std::uint64_t& code);

/// Reads the decimal, hexadecimal, octal and binary notations. False for what is none of them and
/// for what does not fit into 64 bits.
bool readInteger(std::string_view literal, bool& negative, std::uint64_t& magnitude);

/// Reads a number with a decimal point, whatever the process's locale. False for anything else.
bool readReal(std::string_view literal, double& value);

}  // namespace cmpinsp
