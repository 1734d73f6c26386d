#pragma once

#include <boost/shared_ptr.hpp>
#include <string>

#include "framework/ICIMClass.h"
#include "results/RecordSearch.h"

namespace diagsrunner {

/// Waits until a record of the test `testName` appears among the instances of `recordClass`, for
/// 50 seconds at the most, and returns the last enumeration. A record of an earlier run of the test
/// ends the wait too.
Records waitForRecords(const boost::shared_ptr<NZELVOR20::ICIMClass>& recordClass,
                       const std::string& testName);

}  // namespace diagsrunner
