#pragma once

#include <boost/shared_ptr.hpp>
#include <string>
#include <vector>

#include "framework/ICIMClass.h"
#include "framework/ICIMInstance.h"
#include "framework/ICIMNamespace.h"
#include "framework/Options.h"

/// Finding the completion record of a test's last run.
namespace diagsrunner {

using Records = std::vector<boost::shared_ptr<NZELVOR20::ICIMInstance>>;

/// What a record must name to belong to the run.
struct RunKey {
  std::string testName;       ///< occurs in the record's "ServiceName"
  std::string jobIdentifier;  ///< occurs in the record's "InstanceID"
};

/// The class of completion records in `ns`; may be empty. Throws what the framework throws, and
/// `std::runtime_error` when `ns` is empty.
boost::shared_ptr<NZELVOR20::ICIMClass> completionRecordClass(
    const boost::shared_ptr<NZELVOR20::ICIMNamespace>& ns, const NZELVOR20::TOptionsMap& options);

/// Every instance of `recordClass` and its subclasses, in enumeration order; none for an empty
/// class.
Records enumerateRecords(const boost::shared_ptr<NZELVOR20::ICIMClass>& recordClass,
                         const NZELVOR20::TOptionsMap& options);

/// The first record of the run that `key` names, or an empty handle.
boost::shared_ptr<NZELVOR20::ICIMInstance> findRecord(const Records& records, const RunKey& key);

}  // namespace diagsrunner
