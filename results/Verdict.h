#pragma once

#include <boost/shared_ptr.hpp>
#include <string>

#include "framework/ICIMInstance.h"

namespace diagsrunner {

/// True for the vendor family whose warnings count as passed and whose tests share one entry of the
/// vendor messages. `loweredTestName` is in lower case.
bool isDiagServiceFamily(const std::string& loweredTestName);

/// "Pass", "Aborted", "Incomplete" or "Fail" from the completion state of `record`, which is not
/// empty. Throws what the framework throws, and `std::runtime_error` for a record without a state.
std::string verdictOf(const boost::shared_ptr<NZELVOR20::ICIMInstance>& record,
                      const std::string& testName);

}  // namespace diagsrunner
