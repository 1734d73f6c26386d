#pragma once

#include <boost/shared_ptr.hpp>
#include <string>

#include "framework/ICIMInstance.h"
#include "framework/ICIMProperty.h"
#include "framework/Options.h"

/// Reading the properties of an instance. An instance or property that comes back empty counts as
/// null where a null is asked about; elsewhere it throws `std::runtime_error`.
namespace diagsrunner {

using InstanceHandle = boost::shared_ptr<NZELVOR20::ICIMInstance>;
using PropertyHandle = boost::shared_ptr<NZELVOR20::ICIMProperty>;

/// The property, which must be there.
PropertyHandle requiredProperty(const InstanceHandle& instance, const char* name,
                                const NZELVOR20::TOptionsMap& options = {});

/// The property's value; null when there is no such property.
NZELVOR20::TCIMValue valueOrNull(const InstanceHandle& instance, const char* name,
                                 const NZELVOR20::TOptionsMap& options = {});

/// The text by which identifiers, names and matches are compared.
inline std::string identifierText(const NZELVOR20::TCIMValue& value) { return value.ToString(10); }

/// The `identifierText` of a property that must be there.
std::string propertyText(const InstanceHandle& instance, const char* name,
                         const NZELVOR20::TOptionsMap& options = {});

/// The property's own rendering for display, in which verdicts are found.
std::string renderedProperty(const InstanceHandle& instance, const char* name);

/// The reference that a property which must be there holds.
NZELVOR20::TCIMReference referenceProperty(const InstanceHandle& instance, const char* name);

}  // namespace diagsrunner
