#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace text {

/// Names, records, file names and messages come from providers, files and the command line. A
/// character among them that moves the cursor, ends the line, colours the screen or turns the
/// direction of writing could make them pass for something that the command or the log says itself.

/// Whether a character does something, or nothing, instead of being seen. Those that scripts need
/// to join their letters are seen in these.
bool actsUnseen(std::uint32_t code) noexcept;

/// `text` with such characters spelt out, as one line: ASCII control characters and bytes that are
/// no UTF-8 as `\x1b`, others as `\u009b` or `\U000e0041`. Everything else is left as it is; a
/// backslash too, so that names can be typed as they are printed.
std::string visible(std::string_view text);

/// The same for a text of several lines: its line breaks and tabs stay, and each line but the first
/// begins with `margin`, so that none looks like one of the writer's own.
std::string setApart(std::string_view text, const std::string& margin);

}  // namespace text
