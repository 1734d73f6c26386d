#pragma once

#include <cstdint>
#include <string>

namespace text {

/// A JSON text in valid UTF-8 with what a terminal would act on, or show nothing for, escaped:
/// `\u009b`. JSON leaves DEL, the second set of control characters and the signs that turn the
/// direction of writing as they are. They stand in its texts alone, so that a reader gets the same
/// back.
std::string safeJson(std::string json);

/// Adds a character as JSON escapes it: what lies beyond 16 bits in two halves.
void appendJsonEscape(std::string& json, std::uint32_t code);

}  // namespace text
