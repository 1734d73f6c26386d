#pragma once

#include <boost/shared_ptr.hpp>

#include "substitute/vorcore/system/Configuration.h"

namespace vorcore {

/// What `configure` was last given; the defaults before that. Never empty.
boost::shared_ptr<const Configuration> currentConfiguration();

/// The core log, or null.
NZELVOR20::ILogger* currentLogger() noexcept;

}  // namespace vorcore
