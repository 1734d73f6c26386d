#pragma once

#include <boost/shared_ptr.hpp>
#include <initializer_list>
#include <string>

#include "framework/ICIMInstance.h"
#include "framework/ICIMNamespace.h"
#include "framework/Options.h"
#include "framework/TCIMReference.h"
#include "framework/TCIMValue.h"

/// How things read in the journal. Nothing here is itself recorded.
namespace support {

/// `entries`, each ended by a line break: what a part of the journal is compared with.
std::string lines(std::initializer_list<std::string> entries);

/// A log line at level 3, and one at level 0.
std::string trace(const std::string& text);
std::string error(const std::string& text);
std::string logLine(int level, const std::string& text);
/// A piece of standard output, and its flush.
std::string out(const std::string& text);
std::string flushed();
std::string sleptFor(unsigned int milliseconds);

/// The text between quotes, control characters as `\n`, `\t`, `\b`, `\xNN`. Backslashes stay.
std::string quoted(const std::string& text);

/// A string in quotes, a reference as its path, `null`, or the value's own text.
std::string describe(const NZELVOR20::TCIMValue& value);
/// The path; `(empty)` for a reference that names no class.
std::string describe(const NZELVOR20::TCIMReference& reference);
/// `{name=value, ...}`
std::string describe(const NZELVOR20::TOptionsMap& map);
/// `inst label` and `ns name`; `inst (empty)` and `ns (empty)`.
std::string describe(const boost::shared_ptr<NZELVOR20::ICIMInstance>& instance);
std::string describe(const boost::shared_ptr<NZELVOR20::ICIMNamespace>& ns);

}  // namespace support
