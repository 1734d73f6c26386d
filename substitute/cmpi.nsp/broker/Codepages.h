#pragma once

#include <string>

#include "substitute/cmpi.nsp/broker/Tables.h"

namespace cmpinsp::broker {

/// `text` in the bytes of `page`, its terminating zero included. Throws `Failure` (not in code
/// page) for what `page` cannot express.
std::string encode(const std::string& text, CMPICodepageID page);

/// The UTF-8 text of the zero-terminated `data` in `page`.
std::string decode(const char* data, CMPICodepageID page);

}  // namespace cmpinsp::broker
