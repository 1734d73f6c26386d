#pragma once

#include <boost/shared_ptr.hpp>
#include <string>

#include "diagsrunner/VendorMessageRecord.h"
#include "framework/ICIMInstance.h"

/// The vendor's own words about the outcome of a test.
namespace diagsrunner {

/// True for the tests of the vendors that have messages; decided on the whole test identifier.
bool isVendorTest(const std::string& testID);

/// Puts the vendor's messages for the outcome that `record` states in front of its "RecordData".
/// Without a message the property is set to its own text. Throws what the framework throws, and
/// `std::runtime_error` for a record without state or data property.
void addVendorMessages(const boost::shared_ptr<NZELVOR20::ICIMInstance>& record,
                       const std::string& testName, const VendorMessages& messages);

}  // namespace diagsrunner
