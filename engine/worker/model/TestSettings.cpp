#include "engine/worker/model/TestSettings.h"

#include <algorithm>
#include <set>
#include <string>

#include "engine/worker/model/CimText.h"
#include "framework/ICIMClass.h"
#include "framework/ICIMProperty.h"
#include "text/ArrayText.h"

namespace engine::worker {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::ICIMClass;
using NZELVOR20::ICIMProperty;
using NZELVOR20::TCIMReference;
using NZELVOR20::TCIMValue;
using ClassPtr = boost::shared_ptr<ICIMClass>;

constexpr const char* kSettingClass = "CIM_DiagnosticSettingData";

bool isSet(const PropertyPtr& property, const char* qualifier) {
  const TCIMValue value = property->GetQualifier(qualifier, {});
  return !value.IsNull() && !value.IsArray() && value.GetType() == ECIMType::eBoolean &&
         value.ToBoolean();
}

std::vector<PropertyPtr> propertiesOf(const ClassPtr& theClass) {
  std::vector<PropertyPtr> properties;
  theClass->EnumerateProperties(
      [&properties](const PropertyPtr& property) {
        if (property) properties.push_back(property);
        return true;
      },
      {});
  return properties;
}

/// What every kind of settings has: names and descriptions of the instance itself.
std::set<std::string> commonNames(const ClassPtr& theClass) {
  std::set<std::string> names;
  for (ClassPtr one = theClass; one; one = one->GetSuperclass({})) {
    if (!sameName(one->GetName(), "CIM_SettingData")) continue;
    for (const PropertyPtr& property : propertiesOf(one))
      names.insert(lowered(property->GetName()));
    break;
  }
  return names;
}

}  // namespace

std::vector<PropertyPtr> settableProperties(const InstancePtr& settings) {
  const ClassPtr theClass = settings->GetClass({});
  std::vector<PropertyPtr> all = propertiesOf(theClass);
  const bool isMarked = std::any_of(all.begin(), all.end(), [](const PropertyPtr& property) {
    return isSet(property, "Write") && !isSet(property, "Key");
  });
  const std::set<std::string> common = commonNames(theClass);
  const auto isFixed = [&](const PropertyPtr& property) {
    if (isSet(property, "Key")) return true;
    return isMarked ? !isSet(property, "Write") : common.count(lowered(property->GetName())) != 0;
  };
  all.erase(std::remove_if(all.begin(), all.end(), isFixed), all.end());
  return all;
}

namespace {

std::string canonical(const TCIMValue& value) {
  if (value.IsNull()) return {};
  if (!value.IsArray()) return value.ToString(10);
  std::vector<std::string> elements;
  for (const TCIMValue& element : value.GetElements()) elements.push_back(element.ToString(10));
  return text::arrayText(elements);
}

/// A qualifier that the standard has for whole numbers.
std::optional<std::int64_t> boundOf(ICIMProperty& property, const char* qualifier) {
  if (!isUnsigned(property.GetType()) && !isSigned(property.GetType())) return std::nullopt;
  const TCIMValue value = property.GetQualifier(qualifier, {});
  if (value.IsNull() || value.IsArray()) return std::nullopt;
  return readSigned(value.ToString(10), ECIMType::eSint64);
}

std::string typeOf(const ICIMProperty& property) {
  return std::string(typeName(property.GetType())) + (property.IsArray() ? "[]" : "");
}

}  // namespace

InstancePtr defaultSettingsOf(const Objects& objects, const InstancePtr& service) {
  constexpr std::uint64_t kIsDefault = 1;
  const TCIMReference path = service->GetObjectPath({});
  InstancePtr settings;
  forEach(objects, "CIM_ElementSettingData", [&](const InstancePtr& link) {
    if (settings || numberOf(link, "IsDefault", 0) != kIsDefault) return;
    try {
      if (!sameObject(valueOf(link, "ManagedElement").ToReference(), path)) return;
      const InstancePtr end = endOf(objects, link, "SettingData");
      // The settings of its jobs are tied to it in the same way.
      if (isBelow(end->GetClass({}), kSettingClass)) settings = end;
    } catch (const std::exception&) {
      // One link that leads nowhere does not hide the others.
    }
  });
  return settings;
}

std::vector<SettingDeclaration> declarationsOf(const InstancePtr& settings) {
  std::vector<SettingDeclaration> declarations;
  for (const PropertyPtr& property : settableProperties(settings)) {
    const std::string name = property->GetName();
    const TCIMValue description = property->GetQualifier("Description", {});
    declarations.push_back({name, typeOf(*property), canonical(valueOf(settings, name.c_str())),
                            description.IsNull() ? std::string() : description.ToString(10),
                            boundOf(*property, "MinValue"), boundOf(*property, "MaxValue")});
  }
  return declarations;
}

}  // namespace engine::worker
