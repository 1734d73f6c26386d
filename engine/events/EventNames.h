#pragma once

#include <optional>
#include <string_view>

#include "engine/events/Event.h"

/// How the words of events are spelt in their lines.
namespace engine {

const char* nameOf(Stream stream) noexcept;
const char* nameOf(Severity severity) noexcept;
const char* nameOf(Verdict verdict) noexcept;
const char* nameOf(Cause cause) noexcept;
const char* nameOf(Outcome outcome) noexcept;
const char* nameOf(Source source) noexcept;

/// The word of that spelling; false where there is none, and `word` stays.
bool readName(std::string_view name, Stream& word) noexcept;
bool readName(std::string_view name, Severity& word) noexcept;
bool readName(std::string_view name, Verdict& word) noexcept;
bool readName(std::string_view name, Cause& word) noexcept;
bool readName(std::string_view name, Outcome& word) noexcept;
bool readName(std::string_view name, Source& word) noexcept;

/// The name of the kind of what happened: "run", "test", "step", "progress", "output", "log",
/// "message", "measurement", "diagnosis", "error" or "end".
const char* kindOf(const Body& body) noexcept;

}  // namespace engine
