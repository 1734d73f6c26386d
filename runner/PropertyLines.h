#pragma once

#include <boost/shared_ptr.hpp>
#include <string>

#include "framework/ICIMInstance.h"

namespace diagsrunner {

/// Appends a line "name : value" for each property of `instance` that is not null to `out`.
void appendPropertyLines(const boost::shared_ptr<NZELVOR20::ICIMInstance>& instance,
                         std::string& out);

}  // namespace diagsrunner
