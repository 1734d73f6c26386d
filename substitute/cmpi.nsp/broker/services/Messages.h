#pragma once

#include <cstdarg>
#include <string>

#include "substitute/cmpi.nsp/broker/lifetime/Tables.h"

namespace cmpinsp::broker {

/// The inserts of a message: pairs of a type and a value, read as providers pass them.
struct Inserts {
  static constexpr CMPICount kAtMost = 10;

  std::string texts[kAtMost];
  CMPICount count = 0;
};

/// Reads `count` pairs. Throws `Failure` (type mismatch) for a type that cannot be passed.
Inserts readInserts(CMPICount count, std::va_list& list);

/// `format` with `$0` to `$9` replaced.
std::string resolved(const char* format, const Inserts& inserts);

}  // namespace cmpinsp::broker
