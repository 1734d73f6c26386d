#pragma once

namespace reports::html {

/// The style sheet, as it stands in each page.
extern const char* const kStyle;

/// Its SHA-256 as the page's security policy names it: no other style than this one holds.
extern const char* const kStyleHash;

}  // namespace reports::html
