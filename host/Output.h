#pragma once

#include <string>

/// Everything that the command writes to standard output itself: what comes from outside is made
/// safe here, whoever it came from, on a terminal and in a file alike.
namespace host {

/// Writes `line`, made `visible`, with a line end.
void printLine(const std::string& line);

/// Writes the lines of `text` behind a margin of two blanks.
void printApart(const std::string& text);

/// Writes "name : value"; further lines of the value stand behind a margin.
void printField(const std::string& name, const std::string& value);

/// What is said where standard output cannot be written.
inline constexpr const char* kNoOutput = "standard output cannot be written";

/// Hands over what is written so far. Throws `kNoOutput` when it could not be written.
void flushOutput();

}  // namespace host
