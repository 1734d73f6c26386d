#include "runner/PropertyLines.h"

#include <vector>

#include "framework/ICIMProperty.h"
#include "framework/TAddToVectorCallback.h"
#include "runner/Handles.h"

namespace diagsrunner {

using NZELVOR20::ICIMProperty;
using NZELVOR20::TCIMValue;

namespace {

std::string valueText(const TCIMValue& value) {
  if (!value.IsArray()) {
    return value.ToString(10);
  }
  std::string text;
  const char* separator = "{";
  for (const TCIMValue& element : value.ToArray()) {
    text += separator + element.ToString(10);
    separator = ",";
  }
  return (text.empty() ? "{" : text) + "}";
}

}  // namespace

void appendPropertyLines(const boost::shared_ptr<NZELVOR20::ICIMInstance>& instance,
                         std::string& out) {
  std::vector<boost::shared_ptr<ICIMProperty>> properties;
  required(instance, "instance")
      ->EnumerateProperties(NZELVOR20::TAddToVectorCallback<ICIMProperty>(properties), {});
  for (const auto& property : properties) {
    const TCIMValue value = property ? property->GetValue({}) : TCIMValue();
    if (!value.IsNull()) {
      out += property->GetName() + " : " + valueText(value) + "\n";
    }
  }
}

}  // namespace diagsrunner
