#pragma once

#include <boost/shared_ptr.hpp>
#include <string>

#include "framework/ICIMNamespace.h"
#include "framework/Options.h"

/// Some vendors' records do not carry the identifier of the job: it is found through the
/// association that ties a record to the element it is about.
namespace diagsrunner {

/// True for the tests of those vendors.
bool hasRecordVendor(const std::string& testName);

/// True for those of them whose records can be found through the association.
bool hasRecordAssociation(const std::string& testName);

/// The key of the last completion record in `ns` that is tied to the element `deviceID`; empty, and
/// logged, when there is none. Throws what the framework throws.
std::string findRecordKey(const boost::shared_ptr<NZELVOR20::ICIMNamespace>& ns,
                          const std::string& deviceID, const NZELVOR20::TOptionsMap& options);

}  // namespace diagsrunner
