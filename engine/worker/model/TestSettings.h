#pragma once

#include <boost/shared_ptr.hpp>
#include <vector>

#include "engine/Offer.h"
#include "engine/worker/model/ObjectReading.h"
#include "framework/ICIMProperty.h"

namespace engine::worker {

/// The default settings of a diagnostic service: the one instance below CIM_DiagnosticSettingData
/// that a CIM_ElementSettingData whose IsDefault is 1 ties to it. Empty where it has none.
InstancePtr defaultSettingsOf(const Objects& objects, const InstancePtr& service);

/// What may be set: the properties that the class declares with the qualifier Write; where none has
/// it, all that the class has beyond CIM_SettingData, keys excepted. Values as `SettingDeclaration`
/// has them: numbers in decimal, the elements of an array as `text::arrayText` has them.
std::vector<SettingDeclaration> declarationsOf(const InstancePtr& settings);

/// The properties that `declarationsOf` tells of.
using PropertyPtr = boost::shared_ptr<NZELVOR20::ICIMProperty>;
std::vector<PropertyPtr> settableProperties(const InstancePtr& settings);

}  // namespace engine::worker
