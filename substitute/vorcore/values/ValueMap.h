#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "framework/TCIMValue.h"

namespace vorcore {

constexpr std::size_t kUnmapped = static_cast<std::size_t>(-1);

/// The position of the entry of a `ValueMap` that takes `value`, or `kUnmapped`. Integers match a
/// number (decimal, or hexadecimal with "0x"), else a closed range "a..b", else a half-open one,
/// else ".."; everything else matches an entry of the same text. Of several that match alike, the
/// first. Entries that are no strings match nothing.
std::size_t findInValueMap(const std::vector<NZELVOR20::TCIMValue>& valueMap,
                           const NZELVOR20::TCIMValue& value);

}  // namespace vorcore
