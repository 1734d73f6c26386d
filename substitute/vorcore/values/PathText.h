#pragma once

#include <string>
#include <utility>
#include <vector>

#include "framework/Export.h"
#include "framework/TCIMValue.h"

namespace vorcore {

/// A key's name and value, which live elsewhere.
using KeyView = std::pair<const std::string*, const NZELVOR20::TCIMValue*>;

/// `nameSpace:className.Key="value",...` (DSP0207, 5.3 and DSP0004, 8.5): the keys in name order
/// without case; integers, reals and booleans bare, everything else in quotes with quotes and
/// backslashes escaped, a reference as its own path. Without a namespace there is no colon.
VORCORE_API std::string pathText(const std::string& nameSpace, const std::string& className,
                                 std::vector<KeyView> keys);

}  // namespace vorcore
