#pragma once

#include <boost/shared_ptr.hpp>
#include <string>
#include <vector>

#include "framework/ICIMInstance.h"
#include "framework/Options.h"

namespace diagsrunner {

/// True when `service` must not be offered: its name or class name occurs in an entry of
/// `excludedTests`, or it is a package of smaller tests. What cannot be read is logged and leaves
/// the decision as it stands.
bool isServiceExcluded(const boost::shared_ptr<NZELVOR20::ICIMInstance>& service,
                       const std::vector<std::string>& excludedTests,
                       const NZELVOR20::TOptionsMap& options);

}  // namespace diagsrunner
