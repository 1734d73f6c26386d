#pragma once

#include <string>

#include "substitute/cmpi.nsp/broker/lifetime/Tables.h"

namespace cmpinsp::broker {

/// Code pages are the numbers of `CMPICodepageID`.

/// `text` in the bytes of `page`, its terminating zero included. Throws `Failure` (not in code
/// page) for what `page` cannot express.
std::string encode(const std::string& text, int page);

/// The UTF-8 text of the zero-terminated `data` in `page`.
std::string decode(const char* data, int page);

}  // namespace cmpinsp::broker
