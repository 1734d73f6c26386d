#include "engine/worker/model/SettingsWriter.h"

#include <algorithm>

#include "engine/worker/model/CimText.h"
#include "engine/worker/model/TestSettings.h"
#include "framework/TVORException.h"
#include "text/ArrayText.h"

namespace engine::worker {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::ICIMProperty;
using NZELVOR20::TCIMValue;
using NZELVOR20::TVORException;

[[noreturn]] void refuse(const std::string& name, const std::string& reason) {
  throw SettingRefused(shortened(name) + ": " + reason);
}

/// Of the form at least; whether there is such a day the provider may say.
bool isDateTime(const std::string& text) {
  constexpr std::size_t kLength = 25, kPoint = 14, kSign = 21;
  return text.size() == kLength && text[kPoint] == '.' &&
         std::string("+-:").find(text[kSign]) != std::string::npos;
}

/// Of the type, or null where the text is none.
TCIMValue scalarOf(ECIMType type, const std::string& text) {
  if (isUnsigned(type)) {
    const auto number = readUnsigned(text, type);
    return number ? TCIMValue::Unsigned(type, *number) : TCIMValue();
  }
  if (isSigned(type)) {
    const auto number = readSigned(text, type);
    return number ? TCIMValue::Signed(type, *number) : TCIMValue();
  }
  if (isReal(type)) {
    const auto number = readReal(text);
    return number ? TCIMValue::Real(type, *number) : TCIMValue();
  }
  if (type == ECIMType::eBoolean) {
    const auto value = readBoolean(text);
    return value ? TCIMValue::Boolean(*value) : TCIMValue();
  }
  if (type == ECIMType::eDateTime)
    return isDateTime(text) ? TCIMValue::DateTime(text) : TCIMValue();
  return type == ECIMType::eString ? TCIMValue(text) : TCIMValue();
}

TCIMValue scalarOrRefuse(const ICIMProperty& property, const std::string& text) {
  const TCIMValue value = scalarOf(property.GetType(), text);
  if (value.IsNull())
    refuse(property.GetName(),
           "is no " + std::string(typeName(property.GetType())) + ": " + shortened(text));
  return value;
}

TCIMValue valueFrom(const ICIMProperty& property, const std::string& text) {
  if (text.empty()) return TCIMValue::Null(property.GetType(), property.IsArray());
  if (!property.IsArray()) return scalarOrRefuse(property, text);
  std::vector<TCIMValue> elements;
  for (const std::string& element : text::arrayElements(text))
    elements.push_back(scalarOrRefuse(property, element));
  return TCIMValue::Array(property.GetType(), std::move(elements));
}

InstancePtr serviceNamed(const Objects& objects, const std::string& name) {
  InstancePtr found;
  forEach(objects, "CIM_DiagnosticService", [&](const InstancePtr& service) {
    if (!found && textOf(service, "Name") == name) found = service;
  });
  return found;
}

InstancePtr settingsOrRefuse(const Objects& objects, const std::string& serviceName,
                             const SettingValues& values) {
  const InstancePtr service = serviceNamed(objects, serviceName);
  const InstancePtr settings = service ? defaultSettingsOf(objects, service) : nullptr;
  if (!settings)
    refuse(values.front().first, shortened(serviceName) + " has no default settings to change");
  return settings;
}

void setValue(const InstancePtr& settings, const std::vector<PropertyPtr>& settable,
              const std::pair<std::string, std::string>& value) {
  const auto found = std::find_if(settable.begin(), settable.end(), [&](const PropertyPtr& one) {
    return sameName(one->GetName(), value.first);
  });
  if (found == settable.end()) refuse(value.first, "the test has no such setting");
  settings->SetProperty((*found)->GetName(), valueFrom(**found, value.second), {});
}

std::string namesOf(const SettingValues& values) {
  std::string names;
  for (const auto& value : values) names += (names.empty() ? "" : ", ") + value.first;
  return names;
}

}  // namespace

void writeSettings(const Objects& objects, const std::string& serviceName,
                   const SettingValues& values) {
  if (values.empty()) return;
  try {
    const InstancePtr settings = settingsOrRefuse(objects, serviceName, values);
    const std::vector<PropertyPtr> settable = settableProperties(settings);
    for (const auto& value : values) setValue(settings, settable, value);
    objects->ModifyInstance(settings, {});
  } catch (const TVORException& error) {
    refuse(namesOf(values), error.what());
  }
}

}  // namespace engine::worker
