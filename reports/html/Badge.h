#pragma once

#include <iosfwd>
#include <string>

/// Signs for how something ended, which do without colour.
namespace reports::html {

/// A sign for "pass", "warn", "fail", "open" or "info".
std::string mark(const std::string& style);

/// The sign with a word, which is markup.
void writeBadge(std::ostream& out, const char* style, const char* word);

}  // namespace reports::html
